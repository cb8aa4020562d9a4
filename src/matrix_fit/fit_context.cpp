#include "fit_context.h"

#include <algorithm>
#include <cmath>

#include "cholesky.h"
#include "colour_space.h"
#include "exposure_gain.h"
#include "greycard/delta_e.h"
#include "matrix_functions.h"
#include "srgb_transfer.h"
#include "table_conversion.h"

namespace greycard {
namespace {

constexpr double kGammaFull = 62.4 * 255.0;  // of a camera's table

FitFreedom freedomOf(const FitOptions& options) {
  const bool nine = options.entries == FitEntries::nine;
  const bool fitted = options.whiteBalance == FitWhiteBalance::fitted;
  FitFreedom freedom;
  // Nine entries are rows that sum to 1, gains and exposure: then written so.
  freedom.entries = fitted ? FitEntries::six : options.entries;
  freedom.gains = fitted;
  freedom.curveTerms = curveTerms(options.toneCurve);
  freedom.exposure = options.exposure == FitExposure::free || (nine && fitted);
  freedom.firstExposureFixed = nine && !fitted;
  return freedom;
}

std::optional<std::array<CameraCurve, 3>> gammaOf(const FitOptions& options) {
  if (options.cameraGamma[0].empty()) return std::nullopt;
  std::array<CameraCurve, 3> curves;
  for (std::size_t c = 0; c < 3; ++c)
    for (std::size_t i = 0; i < kGammaPoints; ++i)
      curves[c][i] = options.cameraGamma[c][i] / kGammaFull;
  return curves;
}

FitFreedom lightFreedomOf(const FitOptions& options) {
  FitFreedom freedom;
  freedom.curveTerms = curveTerms(options.toneCurve);
  freedom.exposure = freedom.firstExposureFixed = true;
  freedom.light = options.light;
  return freedom;
}

Vector3 whiteOf(const Matrix3& rgbToXyz) {
  Vector3 white;
  for (std::size_t c = 0; c < 3; ++c)
    white[c] = 100.0 * (rgbToXyz[c][0] + rgbToXyz[c][1] + rgbToXyz[c][2]);
  return white;
}

}  // namespace

bool isEnough(const FitUnknowns& unknowns, std::span<const FitSample> samples) {
  constexpr std::ptrdiff_t kLeastPatches = 6;
  PatchMask seen{};
  std::size_t numbers = 0;
  for (const FitSample& sample : samples)
    if (sample.weight > 0.0) {
      seen[sample.patch] = true;
      numbers += 3;
    }
  return std::count(seen.begin(), seen.end(), true) >= kLeastPatches && numbers > unknowns.count();
}

FitContext::FitContext(const MatrixFitSamples& samples, const FitOptions& fitOptions)
    : input(samples),
      options(fitOptions),
      unknowns(freedomOf(fitOptions), samples.photographs.size()),
      lightUnknowns_(lightFreedomOf(fitOptions), samples.photographs.size()),
      difference_(fitOptions.difference, samples.referenceLab, fitOptions.rgbToXyz),
      output_(gammaOf(fitOptions)),
      white_(whiteOf(fitOptions.rgbToXyz)),
      cam16_(white_) {
  const auto gamma = gammaOf(options);
  for (std::size_t i = 0; i < kGammaPoints; ++i)
    greenGamma_[i] = gamma ? (*gamma)[1][i] : sRGBEncode(static_cast<double>(i) / 255.0);
  for (std::size_t c = 0; c < 3; ++c)
    white_[c] = 100.0 * (options.rgbToXyz[c][0] + options.rgbToXyz[c][1] + options.rgbToXyz[c][2]);
  const Matrix3 toRgb = toMatrix3(minv(toMatrix(options.rgbToXyz)));
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    Vector3 xyz = CIELab_to_XYZ(samples.referenceLab[i], white_);
    for (double& value : xyz) value /= 100.0;
    target_[i] = multiply(toRgb, xyz);
    if (gamma)
      for (std::size_t c = 0; c < 3; ++c)
        target_[i][c] = invertCurve((*gamma)[c], sRGBEncode(target_[i][c]));
  }
}

FitState FitContext::evenedOut(const FitSetup& setup) const {
  constexpr double kNeutralWeight = 2.0, kSmoothing = 0.5;
  std::vector<FitSample> samples = setup.samples;
  double sum = 0.0;
  for (FitSample& sample : samples) {
    if (sample.patch >= kFirstGrey) sample.weight *= kNeutralWeight;
    sum += sample.weight;
  }
  for (FitSample& sample : samples) sample.weight /= sum;
  FitCost cost(difference_, output_, lightUnknowns_, samples, FitOptions::kMean);
  cost.smoothing = kSmoothing;
  FitState start = setup.start;
  start.matrix = leastSquares(start, samples, true, lightUnknowns_.perRow());
  return dampedSearch(cost, start).state;
}

Matrix3 FitContext::leastSquares(const FitState& state, std::span<const FitSample> samples,
                                 bool perceptual, std::size_t perRow) const {
  FitState identity = state;
  identity.matrix = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  const std::size_t n = perRow;
  std::vector<double> normal(n * n, 0.0), matrix;
  std::array<std::vector<double>, 3> right;
  for (auto& row : right) row.assign(n, 0.0);
  for (const FitSample& sample : samples) {
    if (!(sample.weight > 0.0)) continue;
    const Vector3 v = linearRgb(identity, sample);
    const Vector3& t = target_[sample.patch];
    const double mean = std::max((t[0] + t[1] + t[2]) / 3.0, 0.01);
    const double weight = sample.weight * (perceptual ? std::pow(mean, -4.0 / 3.0) : 1.0);
    const double last = n == 2 ? v[2] : 0.0;  // rows that sum to 1: of the differences from B
    for (std::size_t j = 0; j < n; ++j) {
      for (std::size_t k = 0; k < n; ++k)
        normal[j * n + k] += weight * (v[j] - last) * (v[k] - last);
      for (std::size_t c = 0; c < 3; ++c) right[c][j] += weight * (v[j] - last) * (t[c] - last);
    }
  }
  double trace = 0.0;
  for (std::size_t j = 0; j < n; ++j) trace += normal[j * n + j];
  for (std::size_t j = 0; j < n; ++j) normal[j * n + j] += 1e-9 * trace;  // grey charts too
  Matrix3 result = identity.matrix;
  for (std::size_t c = 0; c < 3; ++c) {
    matrix = normal;
    if (!solvePositiveDefinite(matrix, right[c])) return identity.matrix;
    for (std::size_t j = 0; j < n; ++j) result[c][j] = right[c][j];
    if (n == 2) result[c][2] = 1.0 - right[c][0] - right[c][1];
  }
  return result;
}

FitCost FitContext::cost(const FitSetup& setup) const {
  FitCost cost(difference_, output_, unknowns, setup.samples, options.norm);
  cost.limits.limit = options.rowNoiseLimits;
  return cost;
}

Vector3 FitContext::shownLab(const Vector3& linear) const {
  Vector3 shown;
  for (std::size_t c = 0; c < 3; ++c) shown[c] = output_.at(c, linear[c]).value;
  Vector3 xyz = multiply(options.rgbToXyz, shown);
  for (double& value : xyz) value *= 100.0;
  return XYZ_to_CIELab(xyz, white_);
}

double FitContext::cam16Between(const Vector3& referenceLab, const Vector3& lab) const {
  return deltaE76(cam16_.ucs(CIELab_to_XYZ(referenceLab, white_)),
                  cam16_.ucs(CIELab_to_XYZ(lab, white_)));
}

double FitContext::measureBetween(const Vector3& referenceLab, const Vector3& lab) const {
  switch (options.difference) {
    case FitDifference::cie76:
      return deltaE76(referenceLab, lab);
    case FitDifference::cie94:
      return deltaE94(referenceLab, lab);
    case FitDifference::cam16Ucs:
      return cam16Between(referenceLab, lab);
    default:
      return deltaE2000(referenceLab, lab);
  }
}

}  // namespace greycard
