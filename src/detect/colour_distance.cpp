#include "colour_distance.h"

#include <cmath>
#include <opencv2/imgproc.hpp>

namespace greycard {

const std::array<cv::Scalar, kPatchCount> colorchecker_srgb = [] {
  std::array<cv::Scalar, kPatchCount> colours;
  for (std::size_t i = 0; i < colours.size(); ++i)
    colours[i] = {kChartBgr[i][0], kChartBgr[i][1], kChartBgr[i][2]};
  return colours;
}();

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
