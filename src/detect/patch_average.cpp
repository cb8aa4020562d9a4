#include "patch_average.h"

#include <opencv2/imgproc.hpp>

namespace greycard {
namespace {

// Sum over pixels and their number.
struct PixelSum {
  double sums[3] = {0.0, 0.0, 0.0};
  int count = 0;

  void add(const cv::Vec3b& pixel) {
    for (int i = 0; i < 3; ++i) sums[i] += pixel[i];
    ++count;
  }
  cv::Scalar mean() const { return {sums[0] / count, sums[1] / count, sums[2] / count, 0.0}; }
};

cv::Rect insideOf(const cv::Mat& image, const cv::Rect& rect) {
  return rect & cv::Rect({0, 0}, image.size());
}

}  // namespace

cv::Rect contained_rectangle(const cv::RotatedRect& box) {
  return {static_cast<int>(box.center.x - box.size.width * 0.25),
          static_cast<int>(box.center.y - box.size.height * 0.25),
          static_cast<int>(box.size.width * 0.5), static_cast<int>(box.size.height * 0.5)};
}

cv::Scalar rect_average(const cv::Rect& rect, const cv::Mat& image) {
  PixelSum sum;
  const auto part = insideOf(image, rect);
  for (int y = part.y; y < part.y + part.height; ++y) {
    const auto* row = image.ptr<cv::Vec3b>(y);
    for (int x = part.x; x < part.x + part.width; ++x) sum.add(row[x]);
  }
  return sum.mean();
}

cv::Scalar contour_average(const std::vector<cv::Point>& contour, const cv::Mat& image) {
  constexpr double kTaken = 100.0;  // see the header
  PixelSum sum;
  const auto part = insideOf(image, cv::boundingRect(contour));
  for (int y = part.y; y < part.y + part.height; ++y)
    for (int x = part.x; x < part.x + part.width; ++x)
      if (cv::pointPolygonTest(contour, cv::Point2f(cv::Point(x, y)), false) == kTaken)
        sum.add(image.at<cv::Vec3b>(y, x));
  return sum.mean();
}

}  // namespace greycard
