#pragma once

#include <span>

#include "lattice/contrast_map.h"
#include "window/chart_window.h"

namespace greycard {

/// The window moved to the patches that are seen: flat regions at each of the thresholds within so
/// many pitches of a patch's place and of its size, averaged per patch, make the map anew, twice.
/// Its samples, support and gate are those of the new map. What too few patches support comes back
/// as it was.
ChartWindow refineWindow(const WorkingPicture& picture, const ContrastMap& contrast,
                         std::span<const int> thresholds, const ChartWindow& window,
                         double within = 0.33);

}  // namespace greycard
