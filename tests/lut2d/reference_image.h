#pragma once

// The picture path as it is defined, one pixel at a time in 64-bit integers, straight from the
// record: the slow truth that the library is compared with.

#include <cstdint>

#include "greycard/lut2d_cfg.h"

namespace greycard::reference {

/// In place; samples are 0..1023. \return 1, or 0 when the table of reciprocals can't be built
int processimage(std::uint16_t* r, std::uint16_t* g, std::uint16_t* b, std::uint16_t width,
                 std::uint16_t height, const lut2d_cfg& cfg);

}  // namespace greycard::reference
