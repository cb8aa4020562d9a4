#pragma once

#include "greycard/types.h"

namespace greycard {

/// Wanted changes of the target chart: factors of chroma and hue rotations in degrees, per group of
/// red, green and blue patches.
struct TargetAdjustment {
  double saturationAll = 1.0;  ///< counts only when the three below equal it exactly
  double saturationR = 1.0, saturationG = 1.0, saturationB = 1.0;
  double hueR = 0.0, hueG = 0.0, hueB = 0.0;

  /// All factors within 0.0001 of 1 and all rotations within 0.001 degrees of 0.
  bool isNeutral() const;
};

/// The L*a*b* table that a fit aims at.
///
/// A neutral adjustment gives the chart's own reference `chartLab`; any other gives the table of
/// the light `lightLab` with the hues of the groups rotated, then their chroma scaled. A rotation
/// of up to 0.01 degrees leaves its group as it is, but still selects the light's table.
PatchTable prepareTarget(const PatchTable& lightLab, const PatchTable& chartLab,
                         const TargetAdjustment& adjustment);

}  // namespace greycard
