#pragma once

#include <opencv2/core.hpp>

#include "greycard/picture.h"

namespace greycard::present {

/// The picture in 8 bits a channel, R, G, B, to be drawn into.
/// \throws std::invalid_argument when its size and samples disagree or it is empty
cv::Mat canvasOf(const Picture& picture);

/// What was drawn, as an 8-bit R, G, B picture.
Picture pictureOf(const cv::Mat& canvas);

}  // namespace greycard::present
