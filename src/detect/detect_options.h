#pragma once

#include "greycard/mcc_detector.h"
#include "lattice/working_picture.h"

namespace greycard {

/// The whole pixels of the region of interest that lie in the picture, or all of it.
/// \throws std::invalid_argument when there are none, or another option is out of its range.
PixelWindow checkedWindow(const Picture& picture, const DetectOptions& options);

}  // namespace greycard
