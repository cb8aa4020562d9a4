#pragma once

#include <cstdint>

namespace greycard::pxcore {

/// The sample that stands for position i of a signal of `length` samples mirrored at both ends,
/// again and again, the end samples repeated: ... p1 p0 | p0 p1 ... pn | pn ...
constexpr std::uint64_t mirrored(std::int64_t i, std::uint64_t length) {
  if (i >= 0 && static_cast<std::uint64_t>(i) < length) return static_cast<std::uint64_t>(i);
  const auto distance = static_cast<std::uint64_t>(i < 0 ? -(i + 1) : i) % (2 * length);
  return distance < length ? distance : 2 * length - 1 - distance;
}

}  // namespace greycard::pxcore
