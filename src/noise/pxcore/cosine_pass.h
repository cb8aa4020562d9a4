#pragma once

#include <functional>
#include <span>

#include "half_cosine.h"
#include "image.h"

namespace greycard::pxcore {

// One pass of a separable filter with a half-cosine, over an image mirrored at its border. The
// filter is a running sum, so that its cost does not grow with the count of taps:
//
//   y[j] = sum over i of t(i) x[j + i - n/2],  t(i) = a cos((i - (n - 1) / 2) w),  0 <= i < n.
//
// t obeys t(i + 1) + t(i - 1) = 2 cos(w) t(i), and so does y but for the ends of its window: with
// s = j - n/2 and t(n) = t(-1), t(n - 1) = t(0),
//
//   y[j + 1] = 2 cos(w) y[j] - y[j - 1] + t(0) (x[s - 1] + x[s + n]) - t(-1) (x[s] + x[s + n - 1]).
//
// It runs in double precision. A rounding error stays in the sum as a wave of at most 1/sin(w)
// times its size, so the sums are taken afresh from time to time.

/// Filters each row. Both images have the same size and may be the same one.
template <typename T>
void cosineRows(const HalfCosine& kernel, const TImageRoi<T>& in, TImageRoi<float>& out);

extern template void cosineRows(const HalfCosine&, const TImageRoi<float>&, TImageRoi<float>&);
extern template void cosineRows(const HalfCosine&, const TImageRoi<unsigned char>&,
                                TImageRoi<float>&);

/// Takes the filtered values of pixels (x, y), (x + 1, y), ... of one row.
using PixelSink =
    std::function<void(std::uint64_t x, std::uint64_t y, std::span<const float> values)>;

/// Filters each column; blocks of columns from left to right, rows from the top within a block. The
/// sink may write to the pixels that it is told of.
void cosineColumns(const HalfCosine& kernel, TImageRoi<float>& image, const PixelSink& sink);

}  // namespace greycard::pxcore
