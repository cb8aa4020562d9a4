#include "drawing.h"

#include <opencv2/imgproc.hpp>

#include "colour_distance.h"

namespace greycard {

void draw_colorchecker(const cv::Mat_<cv::Vec3f>& values, const cv::Mat_<cv::Vec2f>& points,
                       cv::Mat& image, int size) {
  for (int patch = 0; patch < kPatchCount; ++patch) {
    const int y = patch / kChartColumns, x = patch % kChartColumns;
    const cv::Point centre(static_cast<int>(points(y, x)[0]), static_cast<int>(points(y, x)[1]));
    cv::circle(image, centre, size, colorchecker_srgb[static_cast<std::size_t>(patch)], cv::FILLED);
    // Outside the picture nothing was measured.
    auto measured = values(y, x);
    cv::patchNaNs(measured);
    cv::circle(image, centre, size / 2, cv::Scalar(measured[0], measured[1], measured[2]),
               cv::FILLED);
  }
}

}  // namespace greycard
