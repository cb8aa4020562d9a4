#pragma once

#include <opencv2/core.hpp>
#include <vector>

namespace greycard {

/// The upright rectangle of half the box's width and height round its centre, in whole pixels
/// (truncated). The box's angle is not looked at: boxes of patches are nearly square.
cv::Rect contained_rectangle(const cv::RotatedRect& box);

/// Mean of the pixels of the rectangle that lie inside the image (8-bit, three channels); not a
/// number when none does.
cv::Scalar rect_average(const cv::Rect& rect, const cv::Mat& image);

/// Not a number in components 0 to 2 for every contour: the pixels taken are those for which the
/// point test without distance gives 100, and it gives -1, 0 or 1. Kept so on purpose; it only
/// feeds a diagnostic.
cv::Scalar contour_average(const std::vector<cv::Point>& contour, const cv::Mat& image);

}  // namespace greycard
