#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "greycard/picture.h"

namespace greycard::cli {

using Rgb8 = std::array<std::uint16_t, 3>;

/// Pixels of a digit with its gap, for laying out.
inline constexpr int kDigitWidth = 12, kDigitHeight = 15;

/// Draws digits and points from the upper left corner on, in a colour picture; other characters are
/// gaps, and what lies outside is left out.
void drawDigits(Picture& picture, int left, int top, std::string_view text, const Rgb8& colour);

}  // namespace greycard::cli
