#include "chart_marks.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <string>
#include <vector>

namespace greycard::present {
namespace {

const cv::Scalar kRim(0, 0, 0), kFigure(255, 255, 255);
constexpr int kFont = cv::FONT_HERSHEY_SIMPLEX;
constexpr double kNumberShare = 0.35;    // height of a number, of the side it stands in
constexpr double kSmallestNumber = 8.0;  // pixels; below it digits run together
constexpr double kStrokeShare = 0.02;    // width of a stroke, of a side
constexpr int kWidestStroke = 1000;      // pixels; OpenCV takes up to 32767

// The corners in whole pixels; empty when OpenCV could not draw them.
std::vector<cv::Point> pixelsOf(const PatchQuad& quad) {
  constexpr double kFarthest = 30000.0;
  std::vector<cv::Point> points;
  for (const Point2& p : quad) {
    // Written so that NaN is left out too: every comparison with it is false.
    if (!(std::fabs(p.x) < kFarthest && std::fabs(p.y) < kFarthest)) return {};
    points.emplace_back(static_cast<int>(std::lround(p.x)), static_cast<int>(std::lround(p.y)));
  }
  return points;
}

}  // namespace

int strokeWidth(double side) {
  const double width = std::clamp(kStrokeShare * side, 1.0, static_cast<double>(kWidestStroke));
  return static_cast<int>(std::lround(width));
}

void drawNumber(cv::Mat& image, cv::Point centre, double side, int number) {
  const auto text = std::to_string(number);
  int baseline = 0;
  const auto unit = cv::getTextSize(text, kFont, 1.0, 1, &baseline);
  const double height = std::max(kSmallestNumber, kNumberShare * side);
  const double scale = height / unit.height;
  const cv::Point origin(centre.x - static_cast<int>(unit.width * scale / 2.0),
                         centre.y + static_cast<int>(height / 2.0));
  const int stroke = strokeWidth(side);
  cv::putText(image, text, origin, kFont, scale, kRim, 3 * stroke, cv::LINE_AA);
  cv::putText(image, text, origin, kFont, scale, kFigure, stroke, cv::LINE_AA);
}

void drawQuad(cv::Mat& image, const PatchQuad& quad, const cv::Scalar& colour, int stroke) {
  const auto points = pixelsOf(quad);
  if (points.empty()) return;
  cv::polylines(image, points, true, kRim, 3 * stroke, cv::LINE_AA);
  cv::polylines(image, points, true, colour, stroke, cv::LINE_AA);
}

void crossOut(cv::Mat& image, const PatchQuad& quad, const cv::Scalar& colour, int stroke) {
  const auto points = pixelsOf(quad);
  if (points.empty()) return;
  for (const std::size_t k : {0U, 1U}) {
    cv::line(image, points[k], points[k + 2], kRim, 3 * stroke, cv::LINE_AA);
    cv::line(image, points[k], points[k + 2], colour, stroke, cv::LINE_AA);
  }
}

}  // namespace greycard::present
