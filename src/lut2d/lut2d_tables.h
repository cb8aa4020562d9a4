#pragma once

// The integers that one picture is processed with, built from the record once per call.

#include <array>
#include <cstdint>

#include "greycard/lut2d_cfg.h"

namespace greycard {

// Scales: hue 2048 per 60 degrees, saturation 2048 = 1.0, lightness sum (largest plus smallest
// sample) 0..2046, weights across hue 2^14 = 1.0, weights across saturation and of the fade
// 2^11 = 1.0.
inline constexpr std::int32_t kSampleMax = 1023, kSatMax = 2048, kLightnessSumMax = 2046;
inline constexpr std::int32_t kSextant = 2048, kThirdOfCircle = 4096, kHueCircle = 12288;
inline constexpr int kHueWeightBits = 14, kSatWeightBits = 11;

struct LutTables {
  std::array<std::int32_t, kLut2dHueRows + 1> hueNode;
  /// Of the cell above each row's node: weight per unit, rounded up; 0 for a cell of no width.
  std::array<std::int32_t, kLut2dHueRows> hueRecip;
  std::array<std::int32_t, kLut2dSatColumns> satNode;
  std::array<std::int32_t, kLut2dSatColumns - 1> satRecip;

  /// Entries in hue and saturation units: quantised to 10 bits and shifted back.
  struct Entry {
    std::int64_t h, s;
  };
  std::array<std::array<Entry, kLut2dSatColumns>, kLut2dHueRows + 1> entry;

  std::int32_t yBlend;  ///< 16 = luma kept; -2^15..2^15

  static constexpr std::uint8_t kNoRow = 255, kUntouchedColumn = 16;
  /// Row of each hue, or kNoRow.
  std::array<std::uint8_t, kHueCircle> rowOfHue;
  /// Column of each saturation; kUntouchedColumn below the first node.
  std::array<std::uint8_t, kSatMax + 1> columnOfSat;
  /// Strength of the effect for each lightness sum.
  std::array<std::int16_t, kLightnessSumMax + 1> fade;
};

/// Any record gives tables, whatever its numbers: they are brought into ranges that the arithmetic
/// holds, and not-a-number counts as 0.
void buildTables(const lut2d_cfg& record, LutTables& tables);

}  // namespace greycard
