#pragma once
/// \file
/// \ingroup own

#include <array>
#include <optional>

#include "greycard/export.h"
#include "greycard/text_view.h"

namespace greycard {

/// Colours of a sensor's upper left 2x2 cell, row by row.
enum class BayerPattern { RGGB, BGGR, GRBG, GBRG };

/// The pattern of that name, letter case ignored.
GREYCARD_EXPORT std::optional<BayerPattern> bayerPatternFromName(TextView name);
GREYCARD_EXPORT const char* bayerPatternName(BayerPattern pattern);
/// Channel (0 R, 1 G, 2 B) at each of the cell's places: upper left, upper right, lower left, lower
/// right.
GREYCARD_EXPORT std::array<int, 4> cellChannels(BayerPattern pattern);

}  // namespace greycard
