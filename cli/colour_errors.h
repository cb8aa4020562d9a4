#pragma once

#include <array>

#include "greycard/types.h"

namespace greycard::cli {

/// Colour differences of one chart to its reference by one formula.
struct ErrorColumn {
  std::array<double, kPatchCount> patch{};
  double mean = 0.0;
  double worst = 0.0;
  int worstPatch = 0;  ///< 0-based
};

/// By all three formulas.
struct ColourErrors {
  ErrorColumn cie76, cie94, ciede2000;
};

ColourErrors colourErrors(const PatchTable& referenceLab, const PatchTable& lab);

}  // namespace greycard::cli
