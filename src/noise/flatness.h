#pragma once

#include <optional>

#include "image.h"

namespace greycard {

/// How far a field is from an even one: the root mean square of what its means over blocks leave
/// over the best radial fall-off, as a share of their mean. The blocks are a 12 x 9 grid, coarser
/// where they would be under 24 pixels wide; the fall-off is a + b r^2 + c r^4, by least squares.
/// \return empty for a black field and one with room for fewer than 4 x 3 blocks
std::optional<double> unflatness(const pxcore::TImage<unsigned char>& image);

}  // namespace greycard
