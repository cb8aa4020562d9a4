#pragma once

#include <opencv2/core.hpp>

#include "greycard/picture.h"

namespace greycard {

/// The picture as an image matrix of its own depth: one channel, or three in the order B, G, R.
/// Samples above an 8-bit picture's ceiling become 255. The picture is well-formed.
cv::Mat toMat(const Picture& picture);

/// The other way round; the matrix is CV_8U or CV_16U with 1 or 3 channels.
Picture fromMat(const cv::Mat& image);

}  // namespace greycard
