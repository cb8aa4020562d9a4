#pragma once

#include <vector>

#include "greycard/types.h"
#include "lattice/flat_regions.h"

namespace greycard {

/// A region at a whole-number place of a lattice.
struct LatticeNode {
  int i = 0, j = 0;
  int region = 0;  ///< its number
};

/// Regions that repeat along two directions. From i to j the lattice turns clockwise in the
/// picture.
struct RegionLattice {
  std::vector<LatticeNode> nodes;
  bool endless = false;  ///< more nodes than a chart can have: tiles, a facade; not all are listed
};

/// The lattices among the regions (in the order of flatRegions), those of the largest regions
/// first.
///
/// A lattice starts from a region and two neighbours whose steps a, b suit the region's shape: the
/// covariance of a parallelogram spanned by a and b is proportional to a aT + b bT, and patches are
/// such parallelograms at any turn, slant and lean. It grows in all four directions by local steps,
/// so that perspective and lens distortion do not matter. At least 7 nodes in 2 rows and columns.
std::vector<RegionLattice> growLattices(const std::vector<FlatRegion>& regions);

}  // namespace greycard
