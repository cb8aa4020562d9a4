#pragma once

// Floating-point numbers to integers, defined for every input.

#include <cstdint>

namespace greycard {

/// Truncated towards zero; what lies outside low..high becomes the nearest end, not-a-number
/// becomes 0.
template <typename Integer>
Integer truncatedWithin(double value, Integer low, Integer high) {
  const auto lowest = static_cast<double>(low), highest = static_cast<double>(high);
  double inside = value == value ? value : 0.0;
  inside = inside < highest ? inside : highest;
  inside = inside > lowest ? inside : lowest;
  return static_cast<Integer>(inside);
}

/// The same for all that 32 bits hold.
inline std::int32_t saturatingTruncate(double value) {
  return truncatedWithin<std::int32_t>(value, INT32_MIN, INT32_MAX);
}

}  // namespace greycard
