#pragma once

#include <opencv2/core.hpp>

namespace greycard {

/// Draws a detection into an 8-bit B, G, R image: at each point a disc of radius `size` in the
/// chart's colour and over it one of half the radius in the measured colour.
void draw_colorchecker(const cv::Mat_<cv::Vec3f>& values, const cv::Mat_<cv::Vec2f>& points,
                       cv::Mat& image, int size);

}  // namespace greycard
