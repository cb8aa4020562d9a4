#include "greycard/jobs/standard_curve.h"

#include <algorithm>
#include <stdexcept>

#include "greycard/gamma_curve_model.h"

namespace greycard {
namespace {

constexpr int kLowestPeak = 1, kHighestPeak = 10000;
constexpr int kInputStep = 16, kInputMax = (1 << StandardCurve::kInputBits) - 1;

}  // namespace

StandardCurve standardCurve(const StandardCurveOptions& options) {
  GammaCurveModel model(false);
  StandardCurve result;
  result.kind = options.kind;
  if (options.kind == StandardCurveKind::HDR10) {
    if (options.nits < kLowestPeak || options.nits > kHighestPeak)
      throw std::invalid_argument("the peak luminance of HDR10 lies in 1 to 10000 cd/m2, not " +
                                  std::to_string(options.nits));
    result.peak = options.nits;
    result.table = *model.GenerateHDRCurve(options.nits)->Data();
  } else {
    result.table = *model.GenerateHLGCurve()->Data();
  }
  for (std::size_t i = 0; i < result.table.size(); ++i)
    result.inputs.push_back(std::min(static_cast<int>(i) * kInputStep, kInputMax));
  return result;
}

std::string codesText(const StandardCurve& curve) {
  std::string text;
  for (const std::int32_t code : curve.table) text += std::to_string(code) + '\n';
  return text;
}

}  // namespace greycard
