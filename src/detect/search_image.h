#pragma once

#include <opencv2/core.hpp>

#include "greycard/mcc_detector.h"
#include "greycard/picture.h"

namespace greycard {

/// The picture as the search wants it: 8 bits, B, G, R. The picture is well-formed.
/// \throws std::invalid_argument when the encoding's levels are not finite or not in order.
cv::Mat searchImage(const Picture& picture, const SampleEncoding& encoding);

}  // namespace greycard
