#pragma once
/// \file
/// \ingroup own

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "greycard/curve_tables.h"
#include "greycard/export.h"

namespace greycard {

/// The shapes of gamma_lut.h: every fourth entry of a curve; of a 14-bit curve, divided by 62.4; of
/// an 8-bit curve, divided by 255; and 4096 codes of 12 bits made from an 8-bit curve.
enum class LutKind { Plain, Of14Bits, Norm, To12Bits };
/// Their names, in that order.
inline constexpr std::array kLutKindNames{"255", "255-14bit", "norm", "12bit"};

struct CurveLutOptions {
  LutKind kind = LutKind::Plain;
  CurveChannel channel = CurveChannel::All;
  /// Bits that the curve is shifted to first, 8 or 14; else what the kind expects: 14 for Of14Bits
  /// and 8 for the others.
  std::optional<int> bits{};
};

/// A look-up table made of one channel of a curve.
struct CurveLut {
  std::string name;  ///< of the curve
  CurveChannel channel = CurveChannel::All;
  LutKind kind = LutKind::Plain;
  int curveBits = 8;           ///< of the codes that the values were made from
  std::vector<double> values;  ///< 256, or 4096 of To12Bits, of which the last four are equal
};

/// \throws JobError for a curve of other than 1024 entries; std::invalid_argument for bits other
///         than 8 and 14, and for 14 where the kind is To12Bits
GREYCARD_EXPORT CurveLut buildCurveLut(const GammaCurve& curve,
                                       const CurveLutOptions& options = {});

/// The values for a file, one a line: whole numbers of Plain and To12Bits, else 6 decimals.
GREYCARD_EXPORT std::string lutText(const CurveLut& lut);

}  // namespace greycard
