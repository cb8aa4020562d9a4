#pragma once

#include <opencv2/core.hpp>
#include <optional>

#include "greycard/patch_sampler.h"
#include "greycard/picture.h"

namespace greycard {

/// The levels given or, where there are none: encoded, from 0 to 255 or, for 16 bits, to the
/// smallest of 1023, 4095, 16383 and 65535 that no sample exceeds. The picture is well-formed.
/// \throws std::invalid_argument when the levels are not finite or not in order.
SampleLevels searchLevels(const Picture& picture, const std::optional<SampleLevels>& levels);

/// Whether samples are the 8-bit encoded values that the search works on as they stand.
bool holdsEncoded8Bit(const Picture& picture, const SampleLevels& levels);

/// A sample's encoded value, 0..1: between the levels, linear ones raised to 1 / 2.2.
double encodedShare(double code, const SampleLevels& levels);

/// The picture as the search wants it: 8 bits, B, G, R. The picture is well-formed.
/// \throws std::invalid_argument when the levels are not finite or not in order.
cv::Mat searchImage(const Picture& picture, const std::optional<SampleLevels>& levels);

}  // namespace greycard
