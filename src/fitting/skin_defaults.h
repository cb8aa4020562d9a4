#pragma once

// What a calibration starts from until the camera's own values are set.

#include <array>
#include <cstdint>

#include "greycard/luma.h"

namespace greycard {

/// Colour-correction matrix, row by row.
inline constexpr std::array<double, 9> kDefaultSkinCcm{2.1638,  -0.8773, -0.2865, -0.1237, 1.4006,
                                                       -0.2769, 0.0197,  -0.5489, 1.5292};

/// RGB to YCbCr for a row vector (R, G, B): the columns give Y, Cb, Cr.
inline constexpr std::array<double, 9> kDefaultRgbToYCbCr{kLumaShares[0], -0.1497, 0.3945,
                                                          kLumaShares[1], -0.2122, -0.3444,
                                                          kLumaShares[2], 0.3619,  -0.0501};
/// The same by ITU-R BT.601 for full-range signals (ITU-T T.871, clause 7).
inline constexpr std::array<double, 9> kFullRangeBt601{
    kLumaShares[0], -0.1687, 0.5, kLumaShares[1], -0.3313, -0.4187, kLumaShares[2], 0.5, -0.0813};

/// Tone curve: 8-bit codes at 256 equal steps of linear input.
inline constexpr std::array<std::uint8_t, 256> kDefaultSkinGamma{
    0,   5,   10,  15,  20,  24,  29,  33,  37,  41,  45,  49,  53,  57,  60,  64,  67,  70,  73,
    77,  80,  83,  85,  88,  91,  94,  96,  99,  101, 104, 106, 108, 111, 113, 115, 117, 119, 121,
    123, 125, 127, 129, 131, 133, 134, 136, 138, 140, 141, 143, 144, 146, 147, 149, 150, 152, 153,
    155, 156, 157, 159, 160, 161, 163, 164, 165, 166, 167, 169, 170, 171, 172, 173, 174, 175, 176,
    177, 178, 179, 180, 181, 182, 183, 184, 185, 186, 187, 188, 188, 189, 190, 191, 192, 193, 193,
    194, 195, 196, 196, 197, 198, 199, 199, 200, 201, 201, 202, 203, 203, 204, 205, 205, 206, 207,
    207, 208, 209, 209, 210, 210, 211, 211, 212, 213, 213, 214, 214, 215, 215, 216, 216, 217, 217,
    218, 218, 219, 219, 220, 220, 221, 221, 222, 222, 223, 223, 224, 224, 224, 225, 225, 226, 226,
    227, 227, 227, 228, 228, 229, 229, 229, 230, 230, 231, 231, 231, 232, 232, 232, 233, 233, 233,
    234, 234, 235, 235, 235, 236, 236, 236, 237, 237, 237, 237, 238, 238, 238, 239, 239, 239, 240,
    240, 240, 241, 241, 241, 241, 242, 242, 242, 243, 243, 243, 243, 244, 244, 244, 244, 245, 245,
    245, 245, 246, 246, 246, 246, 247, 247, 247, 247, 248, 248, 248, 248, 249, 249, 249, 249, 250,
    250, 250, 250, 250, 251, 251, 251, 251, 252, 252, 252, 252, 252, 253, 253, 253, 253, 253, 254,
    254, 254, 254, 254, 255, 255, 255, 255, 255};

}  // namespace greycard
