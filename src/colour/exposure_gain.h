#pragma once

#include "gamma_stage.h"

namespace greycard {

/// The smallest position (0..1) at which a curve over the gamma grid reaches `value`, linear
/// between its points; 0 when it starts there or above, 1 when it never does.
double invertCurve(const CameraCurve& curve, double value);

/// Factor on measured RGB that brings the second grey patch (chart patch 20) to the exposure of its
/// reference: its L* as a neutral sRGB colour, taken back through the camera's gamma, at most 0.65
/// of full scale, over the measured G.
///
/// \param referenceL  L* of the patch's reference
/// \param gammaG      the camera's G curve, full scale 1
/// \param measuredG   G of the patch, 0..1
/// \throws std::invalid_argument when the measured G isn't above 0, or the gain would be 0 or not
///         a number
double exposureGain(double referenceL, const CameraCurve& gammaG, double measuredG);

}  // namespace greycard
