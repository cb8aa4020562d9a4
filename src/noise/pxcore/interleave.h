#pragma once

#include <array>
#include <cstddef>

namespace greycard::pxcore {

/// Rows that are handled side by side.
constexpr std::size_t kRowLanes = 8;

/// Sample x of row r becomes pixels[x * kRowLanes + r].
template <typename T>
void interleave(const std::array<const T*, kRowLanes>& rows, std::size_t count, float* pixels);

/// The other way round; rows named more than once are written more than once.
void separate(const float* pixels, std::size_t count, const std::array<float*, kRowLanes>& rows);

extern template void interleave(const std::array<const float*, kRowLanes>&, std::size_t, float*);
extern template void interleave(const std::array<const unsigned char*, kRowLanes>&, std::size_t,
                                float*);

}  // namespace greycard::pxcore
