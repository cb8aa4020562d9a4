#pragma once

// The sRGB transfer curves (IEC 61966-2-1), odd-symmetric so that values below 0 pass through.
// Inline: they run once per channel of every patch in the optimiser's inner loop.

#include <cmath>

namespace greycard {

/// 1/2.4 shortened to seven digits. Deliberate, so encoding and decoding are not quite inverse.
inline constexpr double kSRgbEncodingExponent = 0.4166667;

/// Encoded (nominally 0..1) to linear.
inline double sRGBDecode(double v) {
  if (v > 0.04045) return std::pow((v + 0.055) / 1.055, 2.4);
  if (v < -0.04045) return -std::pow((0.055 - v) / 1.055, 2.4);
  return v / 12.92;
}

/// Slope of the decoding.
inline double sRGBDecodeSlope(double v) {
  const double size = std::fabs(v);
  return size > 0.04045 ? 2.4 / 1.055 * std::pow((size + 0.055) / 1.055, 1.4) : 1.0 / 12.92;
}

/// Linear (nominally 0..1) to encoded.
inline double sRGBEncode(double v) {
  if (v > 0.0031308) return 1.055 * std::pow(v, kSRgbEncodingExponent) - 0.055;
  if (v <= -0.0031308) return 0.055 - 1.055 * std::pow(-v, kSRgbEncodingExponent);
  return 12.92 * v;
}

}  // namespace greycard
