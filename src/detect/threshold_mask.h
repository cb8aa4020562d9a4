#pragma once

#include <opencv2/core.hpp>

namespace greycard {

/// Side of the neighbourhood that a pixel is compared with: a fiftieth of the shorter side, odd, at
/// least 3 (the smallest that the threshold takes; pictures under 75 pixels would ask for less).
int thresholdBlockSize(cv::Size image);

/// Side of the square that cleans the mask, from the block size.
int thresholdElementSize(int blockSize);

/// 255 where a pixel is at least 6 darker than its neighbourhood in any channel of an 8-bit B, G, R
/// image: the dark frame and the gaps of a chart, in which each patch is a hole. 0 elsewhere.
cv::Mat thresholdMask(const cv::Mat& image);

}  // namespace greycard
