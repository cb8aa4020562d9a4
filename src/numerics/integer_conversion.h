#pragma once

// Doubles to 32-bit integers, defined for every input.

#include <cstdint>

namespace greycard {

/// Truncated towards zero; what lies outside 32 bits becomes the nearest end, not-a-number becomes
/// 0.
inline std::int32_t saturatingTruncate(double value) {
  constexpr double kLowest = -2147483648.0, kHighest = 2147483647.0;
  double inside = value == value ? value : 0.0;
  inside = inside < kHighest ? inside : kHighest;
  inside = inside > kLowest ? inside : kLowest;
  return static_cast<std::int32_t>(inside);
}

}  // namespace greycard
