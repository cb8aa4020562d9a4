#pragma once

#include <string>

#include "greycard/lut2d_config.h"

namespace greycard::cli {

/// The table as a wheel in SVG: hue round the centre, saturation outward, each node in its colour
/// (at half lightness) with an arrow to where its change takes that colour.
std::string lut2dWheel(const std::string& title, const Lut2DConfig& config);

}  // namespace greycard::cli
