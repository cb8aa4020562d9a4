#include "threshold_mask.h"

#include <algorithm>
#include <array>
#include <opencv2/imgproc.hpp>

#include "channels.h"

namespace greycard {
namespace {

constexpr double kBlockShare = 0.02;
constexpr int kSmallestBlock = 3;
constexpr double kMaskOn = 255.0;
constexpr double kDarkerBy = 6.0;

}  // namespace

int thresholdBlockSize(cv::Size image) {
  return std::max(kSmallestBlock, cvRound(std::min(image.width, image.height) * kBlockShare) | 1);
}

int thresholdElementSize(int blockSize) {
  return blockSize / 10 + 2;
}

cv::Mat thresholdMask(const cv::Mat& image) {
  const int blockSize = thresholdBlockSize(image.size());
  printError("Using %d as block size\n", blockSize);

  std::array<cv::Mat, 3> planes;
  cv::split(image, planes.data());
  cv::Mat mask, dark;
  for (const auto& plane : planes) {
    cv::adaptiveThreshold(plane, dark, kMaskOn, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY_INV,
                          blockSize, kDarkerBy);
    if (mask.empty())
      cv::swap(mask, dark);
    else
      cv::bitwise_or(mask, dark, mask);
  }

  const int side = thresholdElementSize(blockSize);
  printError("Using %d as element size\n", side);
  const cv::Point anchor(side / 2, side / 2);
  const auto element = cv::getStructuringElement(cv::MORPH_RECT, {side, side}, anchor);
  cv::morphologyEx(mask, mask, cv::MORPH_OPEN, element, anchor);
  return mask;
}

}  // namespace greycard
