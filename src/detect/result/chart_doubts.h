#pragma once

#include <string>
#include <vector>

#include "window/chart_window.h"

namespace greycard {

/// Uneven patches that raise no doubt: a hard shadow's edge crosses as many.
inline constexpr int kMostUneven = 3;

/// Signs that the places of a window are not a chart's patches, each one sentence: outside the
/// picture, neutrals that don't darken, uneven places, colours unlike the chart's, tiny patches.
/// \param smallestGate  the score from which colours are the chart's.
/// \param patchSide  the shortest side of any patch in pixels.
std::vector<std::string> chartDoubts(const ChartWindow& window, double smallestGate,
                                     double patchSide);

/// "patch 7" or "patches 7, 8 and 12"; numbers from 1.
std::string patchWords(const std::vector<int>& numbers);

}  // namespace greycard
