#pragma once

#include <optional>

#include "greycard/mcc_detector.h"
#include "lattice/working_picture.h"

namespace greycard {

/// The stated search in a window of the picture, reduced by a whole number; the result is in pixels
/// of the picture.
/// \param factor  1 up to the window's shorter side.
/// \throws std::invalid_argument when the levels are not finite or not in order.
ChartDetection detectStated(const Picture& picture, const PixelWindow& window,
                            const std::optional<SampleLevels>& levels, int factor);

}  // namespace greycard
