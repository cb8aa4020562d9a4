#pragma once
/// \file
/// \ingroup contract own

#include <array>
#include <functional>

namespace greycard {

/// \ingroup contract
/// Patches of the colour chart: 4 rows of 6 in chart order, patch 1 (dark skin) at row 0 of a
/// table, patch 19 (white) at row 18, patch 24 (black) at row 23.
inline constexpr int kChartRows = 4, kChartColumns = 6;
inline constexpr int kPatchCount = kChartRows * kChartColumns;

using Vector3 = std::array<double, 3>;
/// \ingroup contract
/// Row by row. A colour is a row vector, so a transform M maps colour c to c * transpose(M).
using Matrix3 = std::array<Vector3, 3>;
/// \ingroup contract
/// One colour per row, in chart order.
using PatchTable = std::array<Vector3, kPatchCount>;

/// \ingroup own
/// A point in a picture in pixels: x to the right, y downward, the centre of the top-left pixel is
/// (0, 0).
struct Point2 {
  double x = 0.0, y = 0.0;
  bool operator==(const Point2&) const = default;
};

/// \ingroup own
/// An upright rectangle in a picture, in pixels.
struct PatchRegion {
  double left = 0.0, top = 0.0, width = 0.0, height = 0.0;
  bool operator==(const PatchRegion&) const = default;
};
using PatchRegions = std::array<PatchRegion, kPatchCount>;

/// \ingroup own
/// Called now and then by a long search with the fraction done, 0..1; returning false cancels it.
using ProgressCallback = std::function<bool(double fraction)>;

}  // namespace greycard
