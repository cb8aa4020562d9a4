#pragma once

#include <array>
#include <optional>

#include "cam16.h"
#include "greycard/fit_options.h"
#include "greycard/types.h"

namespace greycard {

/// The difference of one colour from its reference as a vector whose length is dE, and how the
/// vector changes with the linear RGB of the colour.
struct DifferenceVector {
  Vector3 value{};
  Matrix3 slope{};  ///< slope[i][c] = d value[i] / d linear RGB[c]
};

/// Colour differences of the chart's patches from their references, with derivatives, in the
/// measure of a fit. Everything about the references is worked out once.
///
/// The measures have kinks: a hue that jumps across 180 degrees, a colour without chroma. The
/// slopes are those of one side there, or 0; they are finite everywhere.
class PatchDifference {
 public:
  /// \param rgbToXyz  linear RGB to XYZ on the 0..1 scale; its white is that of the references
  PatchDifference(FitDifference measure, const PatchTable& referenceLab, const Matrix3& rgbToXyz);

  DifferenceVector evaluate(std::size_t patch, const Vector3& linearRgb) const;

 private:
  struct Reference {
    Vector3 lab{}, ucs{};
    double chroma = 0.0;
  };
  DifferenceVector inCam16(const Reference& reference, const Vector3& linearRgb) const;

  FitDifference measure_;
  Matrix3 rgbToXyz100_{}, rgbToRelativeXyz_{};
  std::optional<Cam16> cam16_;
  std::array<Reference, kPatchCount> reference_;
};

}  // namespace greycard
