#include "patch_average.h"

#include <opencv2/imgproc.hpp>

#include "mat_view.h"

namespace greycard {
namespace {

using Pixels = PlaneView<const cv::Vec3b>;

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

Pixels partOf(const cv::Mat& image, const cv::Rect& rect) {
  const auto size = [](int pixels) { return static_cast<std::size_t>(pixels); };
  return pixelsOf<cv::Vec3b>(image).part(size(rect.x), size(rect.y), size(rect.width),
                                         size(rect.height));
}

}  // namespace

cv::Rect contained_rectangle(const cv::RotatedRect& box) {
  return {static_cast<int>(box.center.x - box.size.width * 0.25),
          static_cast<int>(box.center.y - box.size.height * 0.25),
          static_cast<int>(box.size.width * 0.5), static_cast<int>(box.size.height * 0.5)};
}

cv::Scalar rect_average(const cv::Rect& rect, const cv::Mat& image) {
  PixelSum sum;
  const Pixels part = partOf(image, insideOf(image, rect));
  for (std::size_t y = 0; y < part.height(); ++y)
    for (const cv::Vec3b& pixel : part.row(y)) sum.add(pixel);
  return sum.mean();
}

cv::Scalar contour_average(const std::vector<cv::Point>& contour, const cv::Mat& image) {
  constexpr double kTaken = 100.0;  // see the header
  PixelSum sum;
  const auto rect = insideOf(image, cv::boundingRect(contour));
  const Pixels part = partOf(image, rect);
  for (int y = 0; y < rect.height; ++y)
    for (int x = 0; x < rect.width; ++x)
      if (cv::pointPolygonTest(contour, cv::Point2f(rect.tl() + cv::Point(x, y)), false) == kTaken)
        sum.add(part(static_cast<std::size_t>(x), static_cast<std::size_t>(y)));
  return sum.mean();
}

}  // namespace greycard
