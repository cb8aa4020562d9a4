#pragma once
/// \file
/// \ingroup own

#include <array>

#include "greycard/export.h"
#include "greycard/types.h"

namespace greycard {

/// Corners of a patch in a picture: upper left, upper right, lower right, lower left of the upright
/// chart, in pixels.
using PatchQuad = std::array<Point2, 4>;
/// In chart order.
using PatchQuads = std::array<PatchQuad, kPatchCount>;

/// The corners of upright rectangles.
GREYCARD_EXPORT PatchQuads quadsOf(const PatchRegions& regions);

/// Where the chart's plane is seen in the picture.
///
/// The plane's unit is the pitch, the distance of neighbouring patches; its origin is the outer
/// corner of the cell of patch 1, u runs along the rows and v down the columns of the upright
/// chart: patch row r, column c has its centre at (c + 0.5, r + 0.5), and the 24 cells fill 0..6 by
/// 0..4.
struct GREYCARD_EXPORT ChartMapping {
  /// (x w, y w, w) = homography * (u, v, 1): the place (x, y) in pixels in a picture without lens
  /// distortion.
  Matrix3 homography{};
  /// What is at distance r from the lens centre, as a share of the lens radius, would be at
  /// r (1 + radial r^2) without distortion. 0 where none was found.
  double radial = 0.0;
  Point2 lensCentre;        ///< the picture's centre
  double lensRadius = 1.0;  ///< half the picture's diagonal

  /// Where a point of the plane is seen, lens distortion included.
  Point2 toPicture(const Point2& plane) const;
};

}  // namespace greycard
