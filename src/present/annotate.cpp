#include <algorithm>
#include <cmath>
#include <cstdint>
#include <opencv2/imgproc.hpp>
#include <optional>
#include <stdexcept>
#include <string>

#include "greycard/present/chart.h"

namespace greycard::present {
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

// Full scale of an encoded picture: that of its bits or, for 16, of the fewest bits that hold it.
int fullScale(const Picture& picture) {
  if (picture.bits == 8) return 255;
  const int brightest = *std::ranges::max_element(picture.samples);
  for (const int scale : {1023, 4095, 16383})
    if (brightest <= scale) return scale;
  return 65535;
}

// In 8 bits a channel, R, G, B.
cv::Mat canvasOf(const Picture& picture) {
  const int white = fullScale(picture);
  cv::Mat canvas(picture.height, picture.width, CV_8UC3);
  const std::uint16_t* sample = picture.samples.data();
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x, sample += picture.channels)
      for (int c = 0; c < 3; ++c) {
        const int code = std::min<int>(sample[picture.channels == 3 ? c : 0], white);
        canvas.at<cv::Vec3b>(y, x)[c] =
            static_cast<std::uint8_t>((510 * code + white) / (2 * white));
      }
  return canvas;
}

Picture pictureOf(const cv::Mat& canvas) {
  Picture picture(canvas.cols, canvas.rows, 3, 8);
  std::copy(canvas.datastart, canvas.dataend, picture.samples.begin());
  return picture;
}

}  // namespace

Picture annotateRegions(const Picture& picture, const PatchRegions& regions) {
  if (!isWellFormed(picture))
    throw std::invalid_argument(
        "the picture to annotate is empty or its size and samples disagree");
  cv::Mat canvas = canvasOf(picture);
  for (std::size_t i = 0; i < regions.size(); ++i) {
    const auto rect = visibleRect(regions[i], canvas.size());
    if (!rect) continue;
    const int stroke = std::max(
        1, static_cast<int>(std::lround(kStrokeShare * std::min(rect->width, rect->height))));
    cv::rectangle(canvas, *rect, kRim, 3 * stroke);
    cv::rectangle(canvas, *rect, kStroke, stroke);
    drawNumber(canvas, *rect, static_cast<int>(i) + 1, stroke);
  }
  return pictureOf(canvas);
}

}  // namespace greycard::present
