#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "tone_curve.h"

namespace greycard {

/// A grey patch: what was measured, and the linear RGB that it should have.
struct GreySample {
  std::size_t photograph = 0;
  Vector3 measured{}, target{};
};

/// What the greys say about the curve from measured values to light.
struct GreyCurve {
  ParametricCurve curve;      ///< of a family with numbers
  std::vector<double> table;  ///< of a monotone curve: light over 256 sRGB-encoded values
  /// Root mean square of L* by which the greys miss the curve, every channel of every photograph
  /// scaled to fit best; of a monotone curve, which goes through the greys, by which those between
  /// the ends miss the curve through the others.
  double residual = 0.0;
};

/// Fits a curve of the family to the greys, three or more of each photograph. A monotone curve goes
/// through those of the photograph with the largest measured values.
/// \throws std::invalid_argument when the greys of a photograph don't rise with their targets
GreyCurve greyCurve(std::span<const GreySample> greys, FitToneCurve family);

}  // namespace greycard
