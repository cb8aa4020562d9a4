#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <optional>

#include "chart_marks.h"
#include "greycard/present/chart.h"
#include "picture_canvas.h"

namespace greycard::present {
namespace {

const cv::Scalar kRegionRim(0, 0, 0), kRegionStroke(255, 255, 255);

// The region in whole pixels; empty when it shows nothing.
std::optional<cv::Rect> visibleRect(const PatchRegion& region, cv::Size image) {
  const double right = region.left + region.width, bottom = region.top + region.height;
  // Written so that NaN is refused too: every comparison with it is false.
  const bool shows = region.width > 0.0 && region.height > 0.0 && right > 0.0 && bottom > 0.0 &&
                     region.left < image.width && region.top < image.height;
  if (!shows) return std::nullopt;
  // One pixel of margin keeps a side that lies outside the picture invisible.
  const auto pixel = [](double value, int end) {
    return static_cast<int>(std::lround(std::clamp(value, -1.0, end + 1.0)));
  };
  return cv::Rect(cv::Point(pixel(region.left, image.width), pixel(region.top, image.height)),
                  cv::Point(pixel(right, image.width), pixel(bottom, image.height)));
}

}  // namespace

Picture annotateRegions(const Picture& picture, const PatchRegions& regions) {
  cv::Mat canvas = canvasOf(picture);
  for (std::size_t i = 0; i < regions.size(); ++i) {
    const auto rect = visibleRect(regions[i], canvas.size());
    if (!rect) continue;
    const double side = std::min(rect->width, rect->height);
    const int stroke = strokeWidth(side);
    cv::rectangle(canvas, *rect, kRegionRim, 3 * stroke);
    cv::rectangle(canvas, *rect, kRegionStroke, stroke);
    drawNumber(canvas, (rect->tl() + rect->br()) / 2, side, static_cast<int>(i) + 1);
  }
  return pictureOf(canvas);
}

}  // namespace greycard::present
