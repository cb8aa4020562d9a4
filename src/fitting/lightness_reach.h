#pragma once

#include <optional>

#include "nlopt_callbacks.h"

namespace greycard {

/// Smallest and largest factor on the test colour of a findMinSearch.
inline constexpr double kLeastFactor = 0.0, kMostFactor = 10.0;
/// Two L* that agree to this are the same to it.
inline constexpr double kLightnessTolerance = 1e-5;

/// When no factor gives the test colour the target's L*: the one that comes nearest. Empty when
/// one does, and a search can find it.
std::optional<double> nearestWhereNoneReaches(const MinSearchRun& run);

}  // namespace greycard
