#pragma once

#include <cstdint>
#include <vector>

#include "double_matrix.h"

namespace greycard {

/// White-balance gains that make the listed grey patches neutral on average.
///
/// With the sums over the patches, the gains are (G/R, 1, G/B), then all divided by the smallest
/// when R's or B's is below 1, so that no gain is below 1 and G's may rise above it. A sum of R or
/// B of exactly 0 (an empty list too) gives gains of 1. Other sums are taken as they are: negative
/// or NaN ones give gains of no use.
///
/// \param rgb      24 x 3, measured R, G, B
/// \param patches  rows of rgb, 0..23; one listed twice counts twice
/// \return 3 x 3, the gains on the diagonal
/// \throws ShapeError unless rgb is 24 x 3, std::out_of_range naming an index that isn't a patch
CDoubleMatrix M_white_balance(const CDoubleMatrix& rgb, const std::vector<std::int32_t>& patches);

}  // namespace greycard
