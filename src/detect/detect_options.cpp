#include "detect_options.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "text.h"

namespace greycard {
namespace {

void checkLimits(const DetectOptions& options) {
  // Written so that NaN is refused too: every comparison with it is false.
  if (!(options.smallestGate >= 0.0 && options.smallestGate <= 1.0))
    throw std::invalid_argument("the smallest gate " + formatGeneral(options.smallestGate) +
                                " must be from 0 to 1; charts reach 0.8 and more");
  if (options.mostCharts < 1)
    throw std::invalid_argument("the number of charts to look for, " +
                                std::to_string(options.mostCharts) + ", must be 1 or more");
  if (options.finestPixels < 1)
    throw std::invalid_argument("the pixels of the finest working picture, " +
                                std::to_string(options.finestPixels) + ", must be 1 or more");
}

}  // namespace

PixelWindow checkedWindow(const Picture& picture, const DetectOptions& options) {
  checkLimits(options);
  if (!options.regionOfInterest) return {0, 0, picture.width, picture.height};
  const auto& r = *options.regionOfInterest;
  const auto inside = [](double edge, int size) {
    return static_cast<int>(std::clamp(edge, 0.0, static_cast<double>(size)));
  };
  const double right = r.left + r.width, bottom = r.top + r.height;
  if (std::isfinite(r.left + right) && std::isfinite(r.top + bottom)) {
    const PixelWindow window{inside(std::floor(r.left), picture.width),
                             inside(std::floor(r.top), picture.height), 0, 0};
    const int width = inside(std::ceil(right), picture.width) - window.left;
    const int height = inside(std::ceil(bottom), picture.height) - window.top;
    if (width > 0 && height > 0) return {window.left, window.top, width, height};
  }
  throw std::invalid_argument("the region of interest (left " + formatGeneral(r.left) + ", top " +
                              formatGeneral(r.top) + ", " + formatGeneral(r.width) + " x " +
                              formatGeneral(r.height) + ") has no pixel in the picture of " +
                              std::to_string(picture.width) + " x " +
                              std::to_string(picture.height));
}

}  // namespace greycard
