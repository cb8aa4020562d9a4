#pragma once

#include <array>
#include <opencv2/core.hpp>

#include "greycard/types.h"

namespace greycard {

/// The chart's colours as 8-bit sRGB (B, G, R), row by row: natural colours first, neutrals last.
inline constexpr std::array<std::array<double, 3>, kPatchCount> kChartBgr{
    {{67, 81, 115},   {129, 149, 196}, {157, 123, 93}, {65, 108, 90},   {176, 129, 130},
     {171, 191, 99},  {45, 123, 220},  {168, 92, 72},  {98, 84, 195},   {105, 59, 91},
     {62, 189, 160},  {41, 161, 229},  {147, 62, 43},  {72, 149, 71},   {56, 48, 176},
     {22, 200, 238},  {150, 84, 188},  {166, 136, 0},  {240, 245, 245}, {201, 201, 200},
     {161, 161, 160}, {121, 121, 120}, {85, 84, 83},   {50, 50, 50}}};

/// The same as OpenCV's colours; made when the program starts, after which it may be used.
extern const std::array<cv::Scalar, kPatchCount> colorchecker_srgb;

/// Distance in components 0 to 2.
double euclidean_distance(const cv::Scalar& p1, const cv::Scalar& p2);
double euclidean_distance(cv::Point p1, cv::Point p2);

/// The distance of two B, G, R colours in OpenCV's 8-bit L*a*b* (L* scaled to 0..255, a* and b*
/// plus 128). The colours are rounded to 8 bits first; what is not a number counts as 0.
double euclidean_distance_lab(const cv::Scalar& p1, const cv::Scalar& p2);

}  // namespace greycard
