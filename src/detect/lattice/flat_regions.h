#pragma once

#include <vector>

#include "greycard/types.h"
#include "lattice/contrast_map.h"

namespace greycard {

/// A flat, compact, convex piece of the picture: what a patch looks like. All in pixels of the
/// picture, not of the working picture.
struct FlatRegion {
  Point2 centre;
  double area = 0.0;
  double xx = 0.0, xy = 0.0, yy = 0.0;  ///< covariance of its points
};

/// The regions whose contrast stays below the threshold, largest first.
///
/// A region is a 4-connected set of pixels in runs of at least 3 along a row. It is kept when its
/// area, its box and its second moments are those of a parallelogram or something near it: 16
/// working pixels up to a thirtieth of the picture, and filled: area / (12 sqrt(det covariance)) is
/// 1 for every parallelogram at any turn and slant, 1.05 for an ellipse, less for branches, bites
/// and L shapes. Of very many the largest are kept.
/// \param picture  whose contrast this is; gives scale and place.
std::vector<FlatRegion> flatRegions(const ContrastMap& contrast, int threshold,
                                    const WorkingPicture& picture);

/// The same in a part of it, in working pixels: what reaches beyond is cut off.
std::vector<FlatRegion> flatRegions(const ContrastMap& contrast, int threshold,
                                    const WorkingPicture& picture, const PixelWindow& part);

}  // namespace greycard
