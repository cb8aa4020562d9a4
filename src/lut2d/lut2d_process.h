#pragma once

#include <cstdint>

#include "greycard/lut2d_cfg.h"

namespace greycard {

/// Applies the record's table to width * height pixels of 10 bits, in place, as one linear run.
/// Samples above 1023 count as 1023. \return 1
int processimage(std::uint16_t* r, std::uint16_t* g, std::uint16_t* b, std::uint16_t width,
                 std::uint16_t height, const lut2d_cfg& cfg);

}  // namespace greycard
