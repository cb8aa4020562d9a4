#pragma once

#include <array>

#include "lattice/plane_map.h"
#include "lattice/working_picture.h"

namespace greycard {

/// What the working picture shows in the middle of one place of a lattice.
struct PlaceSample {
  bool inside = false;           ///< all of it lies in the picture; the rest is 0 otherwise
  std::array<double, 3> mean{};  ///< 8-bit levels per plane
  double scatter =
      0.0;  ///< largest difference, in any plane, of the mean of one of 3 x 3 cells to mean
};

/// Samples 6 x 6 points over +-0.24 round the centre (u, v) of a place of size 1.
PlaceSample samplePlace(const WorkingPicture& picture, const PlaneMap& map, double u, double v);

}  // namespace greycard
