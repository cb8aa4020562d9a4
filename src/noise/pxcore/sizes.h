#pragma once

#include <cstdint>
#include <limits>

namespace greycard::pxcore {

/// minSz <= sz < maxSz.
constexpr bool ValidSize(std::uint64_t sz, std::uint64_t minSz = 1,
                         std::uint64_t maxSz = std::numeric_limits<std::uint64_t>::max()) {
  return minSz <= sz && sz < maxSz;
}

/// Whether mul1 * mul2 fits 64 bits.
constexpr bool ValidMultipliers(std::uint64_t mul1, std::uint64_t mul2) {
  constexpr std::uint64_t kSmall = 65535;
  if (mul1 <= kSmall && mul2 <= kSmall) return true;
  return mul1 == 0 || std::numeric_limits<std::uint64_t>::max() / mul1 >= mul2;
}

/// sz rounded up to a multiple of a power of two; sz + multiple - 1 must fit.
constexpr std::uint64_t roundedUp(std::uint64_t sz, std::uint64_t multiple) {
  return (sz + multiple - 1) & ~(multiple - 1);
}

/// \throws ExceptionRuntime, before anything is allocated, when w * h samples with `pad` more on
/// every side overflow 64 bits, or `bytesPerSample` for each exceed this machine's memory
void requireMemory(std::uint64_t w, std::uint64_t h, std::uint64_t pad,
                   std::uint64_t bytesPerSample);

}  // namespace greycard::pxcore
