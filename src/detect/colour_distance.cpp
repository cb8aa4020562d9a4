#include "colour_distance.h"

#include <cmath>
#include <opencv2/imgproc.hpp>

namespace greycard {

const std::array<cv::Scalar, kPatchCount> colorchecker_srgb{
    {{67, 81, 115},   {129, 149, 196}, {157, 123, 93}, {65, 108, 90},   {176, 129, 130},
     {171, 191, 99},  {45, 123, 220},  {168, 92, 72},  {98, 84, 195},   {105, 59, 91},
     {62, 189, 160},  {41, 161, 229},  {147, 62, 43},  {72, 149, 71},   {56, 48, 176},
     {22, 200, 238},  {150, 84, 188},  {166, 136, 0},  {240, 245, 245}, {201, 201, 200},
     {161, 161, 160}, {121, 121, 120}, {85, 84, 83},   {50, 50, 50}}};

double euclidean_distance(const cv::Scalar& p1, const cv::Scalar& p2) {
  double sum = 0.0;
  for (int i = 0; i < 3; ++i) sum += (p1[i] - p2[i]) * (p1[i] - p2[i]);
  return std::sqrt(sum);
}

double euclidean_distance(cv::Point p1, cv::Point p2) {
  return euclidean_distance(cv::Scalar(p1.x, p1.y), cv::Scalar(p2.x, p2.y));
}

double euclidean_distance_lab(const cv::Scalar& p1, const cv::Scalar& p2) {
  cv::Mat_<cv::Vec3b> pixels(1, 2);
  for (int i = 0; i < 3; ++i) {
    pixels(0, 0)[i] = std::isnan(p1[i]) ? uchar{0} : cv::saturate_cast<uchar>(p1[i]);
    pixels(0, 1)[i] = std::isnan(p2[i]) ? uchar{0} : cv::saturate_cast<uchar>(p2[i]);
  }
  cv::cvtColor(pixels, pixels, cv::COLOR_BGR2Lab);
  const auto scalar = [](const cv::Vec3b& v) { return cv::Scalar(v[0], v[1], v[2]); };
  return euclidean_distance(scalar(pixels(0, 0)), scalar(pixels(0, 1)));
}

}  // namespace greycard
