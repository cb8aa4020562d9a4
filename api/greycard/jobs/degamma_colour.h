#pragma once
/// \file
/// \ingroup own

#include <array>
#include <string>
#include <vector>

#include "greycard/curve_tables.h"
#include "greycard/export.h"
#include "greycard/types.h"

namespace greycard {

/// The inputs behind an encoded colour.
struct DeGammaResult {
  static constexpr double kTableUnitsPerLevel = 4.0;

  std::string name;  ///< of the curve
  Vector3 colour{};  ///< R, G, B, 0..255
  /// Where the curve gives that colour, as entry numbers 1 to 256 of the tables, and beyond where
  /// it doesn't reach it; not-a-number where a flat stretch of the curve gives no single input.
  Vector3 positions{};
  /// Of R, G, B: 256 entries of 10 bits, which is kTableUnitsPerLevel to a level of the colour.
  std::array<std::vector<double>, 3> tables;
};

/// DeGamma::runDeGamma with each channel's table of the curve.
/// \throws JobError for a curve of other than 1024 entries; std::invalid_argument for a level
///         outside 0..255
GREYCARD_EXPORT DeGammaResult degammaColour(const GammaCurve& curve, const Vector3& colour);

}  // namespace greycard
