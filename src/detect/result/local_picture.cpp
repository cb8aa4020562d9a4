#include "result/local_picture.h"

#include <algorithm>
#include <cmath>

namespace greycard {
namespace {

constexpr double kWorkingLength = 24.0;
constexpr double kMargin = 1.5;  // lengths round the points

struct Span {
  double low = HUGE_VAL, high = -HUGE_VAL;
  void take(double value) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
};

// First pixel and number of pixels of a span with a margin, within 0 .. size.
std::pair<int, int> pixelsOf(const Span& span, double margin, int size) {
  const auto pixel = [size](double x) {
    return static_cast<int>(std::clamp(x, 0.0, double(size)));
  };
  const int first = pixel(std::floor(span.low - margin)),
            end = pixel(std::ceil(span.high + margin) + 1.0);
  return {first, end - first};
}

}  // namespace

std::optional<WorkingPicture> localPicture(const Picture& picture,
                                           const std::optional<SampleLevels>& levels,
                                           std::span<const Point2> points, double length) {
  Span x, y;
  for (const auto& p : points) {
    x.take(p.x);
    y.take(p.y);
  }
  const double margin = kMargin * length;
  if (!std::isfinite(x.low + x.high) || !std::isfinite(y.low + y.high) || !std::isfinite(margin))
    return std::nullopt;
  const auto [left, width] = pixelsOf(x, margin, picture.width);
  const auto [top, height] = pixelsOf(y, margin, picture.height);
  if (width <= 0 || height <= 0) return std::nullopt;
  const double shorter = std::min(width, height);
  const auto factor =
      static_cast<int>(std::clamp(std::floor(length / kWorkingLength), 1.0, shorter));
  return WorkingPictures(picture, {left, top, width, height}, levels).reduced(factor);
}

}  // namespace greycard
