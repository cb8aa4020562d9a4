#pragma once

#include <array>
#include <vector>

#include "greycard/patch_quads.h"

namespace greycard {

/// Pixels left..right - 1 of one row of a picture, in one cell of a patch.
struct CellSpan {
  int cell, y, left, right;
};

/// The pixels whose centres lie in the middle of a patch, cut in 3 x 3 cells as the patch is seen,
/// cell by cell; each pixel once.
///
/// The unit square goes to the convex quadrilateral by the one homography that takes its corners
/// there (P. S. Heckbert, Fundamentals of Texture Mapping and Image Warping, 1989, section 2.2.3);
/// its square of side `share` in the middle is what is cut.
void cellSpans(const PatchQuad& quad, double share, int width, int height,
               std::vector<CellSpan>& spans);

/// The corners of that square in the middle.
PatchQuad middleOf(const PatchQuad& quad, double share);

inline constexpr int kQuadCells = 9;

}  // namespace greycard
