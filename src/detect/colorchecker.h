#pragma once

#include <array>
#include <opencv2/core.hpp>
#include <span>

#include "colour_distance.h"
#include "greycard/types.h"

namespace greycard {

/// Result of one detection attempt, in chart order.
struct ColorChecker {
  /// Orientation error; lower is better, not a number when nothing was sampled.
  double error = 0.0;
  cv::Mat_<cv::Vec3f> values;  ///< 4 x 6: mean colour of each patch, B, G, R
  cv::Mat_<cv::Vec2f> points;  ///< 4 x 6: centre of each patch in whole pixels
  double size = 0.0;           ///< half the mean patch side in whole pixels
  cv::Size2d spacing;          ///< distance of neighbouring columns and rows in pixels
};

/// Hangs the 4 x 6 grid on the box round the centres of the candidate patches and turns it so that
/// the colours match best. A grid it always finds; whether it is on the chart is another question.
/// \param boxes  one per candidate, at least one; angles in [-90, 0).
/// \param originalImage  8-bit B, G, R.
ColorChecker find_colorchecker(std::span<const cv::RotatedRect> boxes,
                               const cv::Mat& originalImage);

/// Sum over the 24 patches of the squared differences to colorchecker_srgb.
double check_colorchecker(const cv::Mat_<cv::Vec3f>& values);

/// Moves the corners on by one place: the last becomes the first.
void rotate_box(std::array<cv::Point2f, 4>& corners);

/// The square of one and a half sizes round each point.
PatchRegions patchRegions(const ColorChecker& checker);

}  // namespace greycard
