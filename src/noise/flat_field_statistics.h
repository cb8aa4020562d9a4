#pragma once

#include <cstdint>
#include <span>

#include "greycard/sigma_lut.h"
#include "image.h"

namespace greycard {

/// Takes the low bytes of the samples, row by row, and counts what that and clipping lose.
void takeLowBytes(std::span<const std::uint16_t> samples, pxcore::TImage<unsigned char>& image,
                  SigmaReport& report);

/// Fills centreMean and cornerMean.
void measureFallOff(const pxcore::TImage<unsigned char>& image, SigmaReport& report);

}  // namespace greycard
