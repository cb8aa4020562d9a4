#pragma once

#include <opencv2/core.hpp>
#include <optional>

#include "greycard/patch_sampler.h"
#include "greycard/picture.h"

namespace greycard {

/// The picture as the search wants it: 8 bits, B, G, R. The picture is well-formed.
/// \throws std::invalid_argument when the levels are not finite or not in order.
cv::Mat searchImage(const Picture& picture, const std::optional<SampleLevels>& levels);

}  // namespace greycard
