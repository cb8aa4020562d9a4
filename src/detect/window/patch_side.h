#pragma once

#include "lattice/plane_map.h"
#include "lattice/working_picture.h"

namespace greycard {

/// Half the side of the chart's patches in pitches: the median, over the sides of all patches, of
/// where the colour is half way between the patch and the gap beside it. 0.42 where too few sides
/// show a gap.
double halfPatchSide(const WorkingPicture& picture, const PlaneMap& map);

}  // namespace greycard
