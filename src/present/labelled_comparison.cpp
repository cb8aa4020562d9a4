#include <algorithm>
#include <opencv2/imgproc.hpp>

#include "greycard/present/lut2d.h"
#include "picture_canvas.h"

namespace greycard::present {
namespace {

constexpr int kTitleFont = cv::FONT_HERSHEY_SIMPLEX;
constexpr double kStripShare = 0.05;  // of the picture's height
constexpr int kLeastStrip = 20;       // pixels, for letters that can be read

// In the middle of a part of the strip, as large as it holds.
void writeTitle(cv::Mat& strip, int left, int width, const char* text) {
  int baseline = 0;
  const cv::Size unit = cv::getTextSize(text, kTitleFont, 1.0, 1, &baseline);
  const double scale = std::min(0.6 * strip.rows / unit.height, 0.9 * width / unit.width);
  const cv::Point origin(left + static_cast<int>((width - scale * unit.width) / 2.0),
                         static_cast<int>((strip.rows + scale * unit.height) / 2.0));
  cv::putText(strip, text, origin, kTitleFont, scale, {0, 0, 0}, std::max(1, strip.rows / 16),
              cv::LINE_AA);
}

}  // namespace

Picture labelledComparison(const AppliedLut2d& applied) {
  const cv::Mat both = canvasOf(applied.comparison());
  const int half = applied.before.width;
  const int strip = std::max(kLeastStrip, static_cast<int>(kStripShare * both.rows));
  cv::Mat canvas(both.rows + strip, both.cols, CV_8UC3, {255, 255, 255});
  both.copyTo(canvas.rowRange(strip, canvas.rows));
  cv::Mat titles = canvas.rowRange(0, strip);
  writeTitle(titles, 0, half, "before");
  writeTitle(titles, both.cols - half, half, "after");
  return pictureOf(canvas);
}

}  // namespace greycard::present
