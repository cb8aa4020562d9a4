#pragma once

#include <cstdint>
#include <span>

namespace greycard {

/// The bits that a table is taken for by its last entry: below 256 8, below 1024 10, below 4096 12,
/// else 14.
std::int32_t inferredDepth(std::int32_t lastEntry);

/// Converts a table of 64, 256, 512 or 1024 entries into 1024 entries of gammaBitSize bits.
///
/// The source's depth is inferred and src itself is rescaled in place when it differs from
/// gammaBitSize (both deliberate: a curve that ends low is taken for a shallower one). Entries are
/// then joined by straight lines, the last one with full scale.
/// \return false, with nothing written, for any other length, a dest that does not hold 1024
///         entries, or a gammaBitSize outside 0..31
bool makeGammaTable(std::int32_t gammaBitSize, std::span<std::int32_t> src,
                    std::span<std::int32_t> dest);

/// What is left once the depth is right: 1024 entries by straight lines, the last with full scale.
/// \param src  64, 256, 512 or 1024 entries of gammaBitSize bits
/// \param dest  1024 entries
void expandTable(std::span<const std::int32_t> src, std::int32_t gammaBitSize,
                 std::span<std::int32_t> dest);

/// trunc((i / (n - 1))^(1 / denominator) * maxY), n the length of dest. What does not fit 32 bits
/// saturates, not-a-number gives 0, a single entry is that of i / (n - 1) = 0.
void fillReferenceCurve(double denominator, std::span<std::int32_t> dest, std::int32_t maxY);

}  // namespace greycard
