#pragma once
/// \file
/// \ingroup own

#include <cstdint>

#include "greycard/types.h"

namespace greycard {

/// Shares of R, G and B in luma: Rec. ITU-R BT.601-7, section 2.5.1.
inline constexpr Vector3 kLumaShares{0.299, 0.587, 0.114};

/// Luma of an encoded colour, on the colour's own scale.
constexpr double luma601(const Vector3& rgb) {
  return kLumaShares[0] * rgb[0] + kLumaShares[1] * rgb[1] + kLumaShares[2] * rgb[2];
}

/// The same of a pixel's three samples, as a sample: computed in whole numbers, halves up.
constexpr std::uint16_t luma601(const std::uint16_t* rgb) {
  constexpr std::uint32_t kRed = 299, kGreen = 587, kBlue = 114, kAll = kRed + kGreen + kBlue;
  return static_cast<std::uint16_t>((kRed * rgb[0] + kGreen * rgb[1] + kBlue * rgb[2] + kAll / 2) /
                                    kAll);
}

}  // namespace greycard
