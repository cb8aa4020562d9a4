#pragma once

#include <cstdint>

namespace greycard::pxcore {

/// A rectangle of an image; x to the right, y downward.
template <typename T>
struct TRect2D {
  T x = 0, y = 0, width = 0, height = 0;
};

using Rect = TRect2D<std::uint64_t>;

}  // namespace greycard::pxcore
