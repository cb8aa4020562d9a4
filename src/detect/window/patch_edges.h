#pragma once

#include "lattice/plane_map.h"
#include "lattice/working_picture.h"

namespace greycard {

/// Of the 38 pairs of neighbouring patches, how many show no edge between their centres: neither a
/// gap nor two colours. On a chart hardly any, under a sheet of paper many.
int missingEdges(const WorkingPicture& picture, const PlaneMap& map);

}  // namespace greycard
