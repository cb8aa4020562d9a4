#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <optional>
#include <stdexcept>
#include <string>

#include "greycard/chart_regions.h"
#include "picture_mat.h"
#include "search_image.h"

namespace greycard {
namespace {

const cv::Scalar kRim(0, 0, 0), kStroke(255, 255, 255);
constexpr int kFont = cv::FONT_HERSHEY_SIMPLEX;
constexpr double kNumberShare = 0.35;    // height of a number, of the region's shorter side
constexpr double kSmallestNumber = 8.0;  // pixels; below it digits run together
constexpr double kStrokeShare = 0.02;    // width of a stroke, of the region's shorter side

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

void drawNumber(cv::Mat& image, const cv::Rect& rect, int number, int stroke) {
  const auto text = std::to_string(number);
  int baseline = 0;
  const auto unit = cv::getTextSize(text, kFont, 1.0, 1, &baseline);
  const double height = std::max(kSmallestNumber, kNumberShare * std::min(rect.width, rect.height));
  const double scale = height / unit.height;
  const cv::Point centre = (rect.tl() + rect.br()) / 2;
  const cv::Point origin(centre.x - static_cast<int>(unit.width * scale / 2.0),
                         centre.y + static_cast<int>(height / 2.0));
  cv::putText(image, text, origin, kFont, scale, kRim, 3 * stroke, cv::LINE_AA);
  cv::putText(image, text, origin, kFont, scale, kStroke, stroke, cv::LINE_AA);
}

}  // namespace

Picture annotateRegions(const Picture& picture, const PatchRegions& regions) {
  if (!isWellFormed(picture))
    throw std::invalid_argument(
        "the picture to annotate is empty or its size and samples disagree");
  auto image = searchImage(picture, {});
  for (std::size_t i = 0; i < regions.size(); ++i) {
    const auto rect = visibleRect(regions[i], image.size());
    if (!rect) continue;
    const int stroke = std::max(
        1, static_cast<int>(std::lround(kStrokeShare * std::min(rect->width, rect->height))));
    cv::rectangle(image, *rect, kRim, 3 * stroke);
    cv::rectangle(image, *rect, kStroke, stroke);
    drawNumber(image, *rect, static_cast<int>(i) + 1, stroke);
  }
  return fromMat(image);
}

}  // namespace greycard
