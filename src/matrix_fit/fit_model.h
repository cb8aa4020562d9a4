#pragma once

// The model of a photograph of the chart that a fit works with, and its unknowns.
//
//   light    u = curve(measured) / (flat field * light field at the patch), per channel
//   balance  v = exposure * gains * u, per channel
//   colour   linear RGB = matrix * v

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "greycard/fit_options.h"
#include "greycard/types.h"
#include "tone_curve.h"

namespace greycard {

/// A patch of a photograph.
struct FitSample {
  std::size_t patch = 0, photograph = 0;
  Vector3 measured{};  ///< what the parametric curve is applied to
  Vector3 encoded{};   ///< sRGBEncode of it
  Vector3 flat{1.0, 1.0, 1.0};
  double weight = 0.0;  ///< 0 for a patch that takes no part; of all together 1
};

/// Coefficients of 1, then x, y, x^2, x y, y^2 over the chart: x from -1 (first column) to 1 (last
/// column), y in the same unit, downward, from the chart's centre.
inline constexpr std::size_t kMostLightTerms = 5;
using LightCoefficients = std::array<double, kMostLightTerms>;
/// How many of the coefficients a light has.
std::size_t lightTerms(FitLight light);
/// The light field at a patch.
double lightAt(const LightCoefficients& light, std::size_t patch);

/// All numbers of the model. What isn't free keeps its first value.
struct FitState {
  Matrix3 matrix{};
  Vector3 gains{1.0, 1.0, 1.0};
  ParametricCurve curve;
  std::vector<double> exposure;          ///< per photograph
  std::vector<LightCoefficients> light;  ///< per photograph
};

/// Which numbers of a FitState are free.
struct FitFreedom {
  FitEntries entries = FitEntries::nine;
  bool gains = false;               ///< of R and B
  std::size_t curveTerms = 0;       ///< numbers of the curve
  bool exposure = false;            ///< of each photograph ...
  bool firstExposureFixed = false;  ///< ... but for the first
  FitLight light = FitLight::even;
};

/// The vector of unknowns: the entries row by row (of six, the first two of each row), the log
/// gains of R and B, the curve's numbers, and photograph by photograph its log exposure and its
/// light.
class FitUnknowns {
 public:
  FitUnknowns(const FitFreedom& freedom, std::size_t photographs);

  /// Unknowns besides the entries that one patch depends on, at most.
  static constexpr std::size_t kMostOthers = 2 + 2 + 1 + kMostLightTerms;

  std::size_t count() const { return count_; }
  std::size_t perRow() const { return perRow_; }
  const FitFreedom& freedom() const { return freedom_; }
  bool exposureFree(std::size_t photograph) const {
    return freedom_.exposure && !(freedom_.firstExposureFixed && photograph == 0);
  }

  std::size_t gainsAt() const { return 3 * perRow_; }
  std::size_t curveAt() const { return gainsAt() + (freedom_.gains ? 2U : 0U); }
  std::size_t photographAt(std::size_t photograph) const;

  /// The state moved by a step of the unknowns.
  FitState moved(const FitState& state, std::span<const double> step) const;

 private:
  FitFreedom freedom_;
  std::size_t perRow_, count_;
};

/// The same model with the smallest gain 1, as the stated white balance has it, when gains and all
/// exposures are free; else the state.
FitState withUnitGain(const FitUnknowns& unknowns, const FitState& state);

/// A sample on its way to linear RGB, with the derivatives by the unknowns besides the entries.
struct ForwardSample {
  Vector3 balanced{}, linear{};
  std::size_t others = 0;
  std::array<std::size_t, FitUnknowns::kMostOthers> place{};  ///< in the vector of unknowns
  std::array<Vector3, FitUnknowns::kMostOthers> slope{};      ///< of linear RGB
};
/// \return false when there is no light at the patch, or no curve
bool forward(const FitState& state, const FitUnknowns& unknowns, const FitSample& sample,
             ForwardSample& out);

/// Linear RGB of a sample, without derivatives; NaN when there is no light at the patch.
Vector3 linearRgb(const FitState& state, const FitSample& sample);

}  // namespace greycard
