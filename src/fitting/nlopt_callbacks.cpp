#include "nlopt_callbacks.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>

#include "channels.h"
#include "colour_space.h"
#include "greycard/luma.h"
#include "luma_target_run.h"

namespace greycard {
namespace {

double squared(double v) {
  return v * v;
}

}  // namespace

void debugPrint(const char* format, ...) {
  if (!debugLogHasListener()) return;
  char text[512];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  writeDebug(0, "DebugPrint", text);
}

double GA_Utility(unsigned /*n*/, const double* x, double* /*gradient*/, void* data) {
  GaParameters parameters;
  std::copy_n(x, kGaParameters, parameters.begin());
  return static_cast<LumaTargetRun*>(data)->errorFunc_LumaTarget(parameters);
}

double GAinconstraint1(unsigned /*n*/, const double* x, double* /*gradient*/, void* /*data*/) {
  return x[8] - x[4] + 0.005;
}
double GAinconstraint2(unsigned /*n*/, const double* x, double* /*gradient*/, void* /*data*/) {
  return x[9] - x[5] + 0.005;
}
double GAinconstraint3(unsigned /*n*/, const double* x, double* /*gradient*/, void* /*data*/) {
  return x[3] - x[2] + 40.0;
}
double GAinconstraint4(unsigned /*n*/, const double* x, double* /*gradient*/, void* /*data*/) {
  return x[10] - x[11] + 0.08;
}

double lightness(const Vector3& rgb255) {
  return sRGB_to_CIELab({rgb255[0] / 255.0, rgb255[1] / 255.0, rgb255[2] / 255.0})[0];
}

double minSearch_Utility(unsigned /*n*/, const double* x, double* /*gradient*/, void* data) {
  const auto& run = *static_cast<const MinSearchRun*>(data);
  const double s = x[0];
  const Vector3& test = run.m_testRGB;
  const double scaled = lightness({s * test[0], s * test[1], s * test[2]});
  const double target = lightness(run.m_targetRGB);
  const double d = scaled - target;
  debugPrint("(min = %f, %f %f %f)  \n", d, scaled, s, target);
  debugPrint("(%f %f)  \n", luma601(test), luma601(run.m_targetRGB));
  return d * d;
}

double utility1(unsigned /*n*/, const double* x, double* /*gradient*/, void* /*data*/) {
  return squared(x[0] * x[0] + 3.0 * x[1] * x[1] + x[2] - 100.0);
}
double inconstraint(unsigned /*n*/, const double* x, double* /*gradient*/, void* /*data*/) {
  return x[1] - x[0] + 5.0;
}
double inconstraint1(unsigned /*n*/, const double* x, double* /*gradient*/, void* /*data*/) {
  return x[0] - x[2] + 10.0;
}

double utility(unsigned /*n*/, const double* x, double* gradient, void* /*data*/) {
  if (gradient != nullptr) {
    gradient[0] = 1.0 / x[0];
    gradient[1] = 1.0 / x[1];
  }
  return std::log(x[0]) + std::log(x[1]);
}

double constraint(unsigned /*n*/, const double* x, double* gradient, void* data) {
  const auto* a = static_cast<const double*>(data);
  if (gradient != nullptr) std::copy_n(a, 2, gradient);
  return x[0] * a[0] + x[1] * a[1] - 5.0;
}

}  // namespace greycard
