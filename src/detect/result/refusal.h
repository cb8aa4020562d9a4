#pragma once

#include "greycard/mcc_detector.h"
#include "lattice/lattice_search.h"

namespace greycard {

/// What is true of a picture in which the lattice search accepted nothing, and what to do: the
/// detection with its reason, the best candidate and all places that look like a patch. The attempt
/// that came furthest is looked at once more, now also for mirrored and for cut charts.
ChartDetection refusalOf(const Picture& picture, const PixelWindow& window,
                         const LatticeSearch& search, const LatticeLimits& limits);

}  // namespace greycard
