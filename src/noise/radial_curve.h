#pragma once

#include <span>
#include <vector>

namespace greycard {

/// q[0] = 1, q[i] = ring[i] / ring[0].
std::vector<float> ringRatios(std::span<const float> ringSigma);

/// The ratio curve smoothed through its increments: a drop by more than 0.1 from one ring to the
/// next is discarded, the increments are filtered with a half-cosine of 11 taps, and summed up.
std::vector<float> smoothedRatios(std::span<const float> ratios);

}  // namespace greycard
