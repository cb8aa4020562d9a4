#include "fit_model.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "colour_space.h"

namespace greycard {
namespace {

constexpr std::size_t kColumns = 6;     // of the chart
constexpr double kDarkestLight = 0.02;  // a light field stays above it

// Chart coordinates and their products at a patch.
LightCoefficients lightBasis(std::size_t patch) {
  const double x = (static_cast<double>(patch % kColumns) - 2.5) / 2.5;
  const double y = (static_cast<double>(patch / kColumns) - 1.5) / 2.5;
  return {x, y, x * x, x * y, y * y};
}

Vector3 scaled(const Vector3& v, double factor) {
  return {v[0] * factor, v[1] * factor, v[2] * factor};
}
Vector3 columnOf(const Matrix3& m, std::size_t k) {
  return {m[0][k], m[1][k], m[2][k]};
}

// Factors on the curve's values; false without light.
bool lightFactors(const FitState& state, const FitSample& sample, Vector3& factor, double& field) {
  field = lightAt(state.light[sample.photograph], sample.patch);
  if (!(field > kDarkestLight)) return false;
  for (std::size_t c = 0; c < 3; ++c)
    factor[c] = state.exposure[sample.photograph] * state.gains[c] / (field * sample.flat[c]);
  return true;
}

}  // namespace

std::size_t lightTerms(FitLight light) {
  return light == FitLight::even ? 0 : light == FitLight::plane ? 2 : kMostLightTerms;
}

double lightAt(const LightCoefficients& light, std::size_t patch) {
  const LightCoefficients basis = lightBasis(patch);
  double field = 1.0;
  for (std::size_t j = 0; j < kMostLightTerms; ++j) field += light[j] * basis[j];
  return field;
}

FitUnknowns::FitUnknowns(const FitFreedom& freedom, std::size_t photographs)
    : freedom_(freedom), perRow_(freedom.entries == FitEntries::six ? 2 : 3), count_(0) {
  count_ = photographAt(photographs);
}

std::size_t FitUnknowns::photographAt(std::size_t photograph) const {
  const std::size_t exposures =
      !freedom_.exposure ? 0 : photograph - (freedom_.firstExposureFixed && photograph > 0 ? 1 : 0);
  return curveAt() + freedom_.curveTerms + exposures + photograph * lightTerms(freedom_.light);
}

FitState FitUnknowns::moved(const FitState& state, std::span<const double> step) const {
  FitState next = state;
  for (std::size_t c = 0; c < 3; ++c)
    for (std::size_t j = 0; j < perRow_; ++j) {
      next.matrix[c][j] += step[perRow_ * c + j];
      if (perRow_ == 2) next.matrix[c][2] -= step[2 * c + j];
    }
  if (freedom_.gains) {
    next.gains[0] *= std::exp(step[gainsAt()]);
    next.gains[2] *= std::exp(step[gainsAt() + 1]);
  }
  for (std::size_t j = 0; j < freedom_.curveTerms; ++j)
    next.curve.numbers[j] += step[curveAt() + j];
  for (std::size_t k = 0; k < next.exposure.size(); ++k) {
    std::size_t at = photographAt(k);
    if (exposureFree(k)) next.exposure[k] *= std::exp(step[at++]);
    for (std::size_t j = 0; j < lightTerms(freedom_.light); ++j) next.light[k][j] += step[at + j];
  }
  return next;
}

FitState withUnitGain(const FitUnknowns& unknowns, const FitState& state) {
  FitState same = state;
  if (!unknowns.freedom().gains || !unknowns.freedom().exposure) return same;
  const double least = std::min({state.gains[0], state.gains[1], state.gains[2]});
  for (double& gain : same.gains) gain /= least;
  for (double& exposure : same.exposure) exposure *= least;
  return same;
}

bool forward(const FitState& state, const FitUnknowns& unknowns, const FitSample& sample,
             ForwardSample& out) {
  Vector3 factor;
  double field = 1.0;
  if (!lightFactors(state, sample, factor, field) || !isCurve(state.curve)) return false;
  std::array<CurvePoint, 3> curve;
  for (std::size_t c = 0; c < 3; ++c) {
    curve[c] = curvePoint(state.curve, sample.measured[c], sample.encoded[c]);
    out.balanced[c] = factor[c] * curve[c].value;
  }
  out.linear = multiply(state.matrix, out.balanced);

  out.others = 0;
  const auto add = [&out](std::size_t at, const Vector3& slope) {
    out.place[out.others] = at;
    out.slope[out.others++] = slope;
  };
  if (unknowns.freedom().gains) {
    add(unknowns.gainsAt(), scaled(columnOf(state.matrix, 0), out.balanced[0]));
    add(unknowns.gainsAt() + 1, scaled(columnOf(state.matrix, 2), out.balanced[2]));
  }
  for (std::size_t j = 0; j < unknowns.freedom().curveTerms; ++j)
    add(unknowns.curveAt() + j,
        multiply(state.matrix, {factor[0] * curve[0].slope[j], factor[1] * curve[1].slope[j],
                                factor[2] * curve[2].slope[j]}));
  std::size_t at = unknowns.photographAt(sample.photograph);
  if (unknowns.exposureFree(sample.photograph)) add(at++, out.linear);
  const std::size_t terms = lightTerms(unknowns.freedom().light);
  if (terms > 0) {
    const LightCoefficients basis = lightBasis(sample.patch);
    for (std::size_t j = 0; j < terms; ++j) add(at + j, scaled(out.linear, -basis[j] / field));
  }
  return true;
}

Vector3 linearRgb(const FitState& state, const FitSample& sample) {
  Vector3 factor, balanced;
  double field = 1.0;
  if (!lightFactors(state, sample, factor, field)) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    return {kNaN, kNaN, kNaN};
  }
  for (std::size_t c = 0; c < 3; ++c)
    balanced[c] = factor[c] * curvePoint(state.curve, sample.measured[c], sample.encoded[c]).value;
  return multiply(state.matrix, balanced);
}

}  // namespace greycard
