#include "greycard/jobs/match_luma.h"

#include <cmath>

#include "greycard/image_utils_ex.h"

namespace greycard {
namespace {

double lightness(const Vector3& rgb, double factor) {
  Vector3 lab;
  ImageUtilsEx::sRGBToCIELab(
      lab, {factor * rgb[0] / 255.0, factor * rgb[1] / 255.0, factor * rgb[2] / 255.0});
  return lab[0];
}

}  // namespace

bool LumaMatch::reached() const {
  constexpr double kWorthTelling = 0.01;
  return !(std::abs(scaledL - targetL) > kWorthTelling);
}

LumaMatch matchLuma(const LumaMatchOptions& options) {
  const double factor = NLoptHelper().findMinSearch(options.test, options.target, options.search);
  return {factor, lightness(options.test, 1.0), lightness(options.test, factor),
          lightness(options.target, 1.0)};
}

}  // namespace greycard
