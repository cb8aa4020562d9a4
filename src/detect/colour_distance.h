#pragma once

#include <array>
#include <opencv2/core.hpp>

#include "greycard/types.h"

namespace greycard {

/// The chart's colours as 8-bit sRGB (B, G, R, 0), row by row: natural colours first, neutrals
/// last.
extern const std::array<cv::Scalar, kPatchCount> colorchecker_srgb;

/// Distance in components 0 to 2.
double euclidean_distance(const cv::Scalar& p1, const cv::Scalar& p2);
double euclidean_distance(cv::Point p1, cv::Point p2);

/// The distance of two B, G, R colours in OpenCV's 8-bit L*a*b* (L* scaled to 0..255, a* and b*
/// plus 128). The colours are rounded to 8 bits first; what is not a number counts as 0.
double euclidean_distance_lab(const cv::Scalar& p1, const cv::Scalar& p2);

}  // namespace greycard
