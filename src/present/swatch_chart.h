#pragma once

#include <string>

#include "greycard/types.h"

namespace greycard::present {

/// The chart's 24 patches in their layout as an SVG: around the edge the reference colour, inside
/// it the corrected colour (upper left) and the colour before correction (lower right). L*a*b*
/// tables for D65; what lies outside sRGB is clipped.
std::string swatchChart(const PatchTable& referenceLab, const PatchTable& correctedLab,
                        const PatchTable& beforeLab);

}  // namespace greycard::present
