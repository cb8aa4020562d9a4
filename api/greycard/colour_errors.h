#pragma once
/// \file
/// \ingroup own

#include <array>

#include "greycard/export.h"
#include "greycard/types.h"

namespace greycard {

/// Colour differences of one chart to its reference by one formula.
struct ErrorColumn {
  std::array<double, kPatchCount> patch{};
  double mean = 0.0;
  double worst = 0.0;
  int worstPatch = 0;  ///< 0-based; the first of equals
};

/// By three formulas: deltaE76, deltaE94 and deltaE2000 of delta_e.h.
struct ColourErrors {
  ErrorColumn cie76, cie94, ciede2000;
  PatchTable split{};  ///< differenceSplit of each patch: dL*, dC*, dH*
  /// CIEDE2000 without the mean of dL* over the chart: what is left when only brightness is off.
  ErrorColumn levelled2000;
};

/// The differences between two charts in L*a*b*. What is not a number stays one in its patch and in
/// the mean, and is never the worst.
GREYCARD_EXPORT ColourErrors colourErrors(const PatchTable& referenceLab, const PatchTable& lab);

}  // namespace greycard
