#pragma once

#include <optional>

#include "greycard/mcc_detector.h"

namespace greycard {

/// What the grid of the stated search says in the terms of a placement: a plane through its points,
/// judged as the lattice search judges its windows. The patches that carry the grid count as
/// support.
ChartPlacement placementOfGrid(const Picture& picture, const std::optional<SampleLevels>& levels,
                               const ChartDetection& detection);

}  // namespace greycard
