#include "matrix_cost.h"

#include <cmath>
#include <numeric>
#include <stdexcept>

#include "colour_space.h"
#include "greycard/delta_e.h"

namespace greycard {
namespace {

constexpr std::size_t kChromaticPatches = 18;  // the grey row takes no part in chroma
constexpr double kHueFloor = 0.1;  // a squared hue difference below it counts as 0: deliberate
constexpr double kNoiseWeightA = 0.1, kNoiseWeightB = 0.05;  // variances of a*, b* against L*'s

double square(double x) {
  return x * x;
}

double truncatedSum(const PatchColumn& weights) {
  return std::trunc(std::accumulate(weights.begin(), weights.end(), 0.0));
}

}  // namespace

Matrix3 matrixFromParameters(std::span<const double> p) {
  return {{{p[0], p[1], 1.0 - p[0] - p[1]},
           {p[2], p[3], 1.0 - p[2] - p[3]},
           {1.0 - p[4] - p[5], p[4], p[5]}}};
}

MatrixParameters parametersFromMatrix(const Matrix3& ccm) {
  return {ccm[0][0], ccm[0][1], ccm[1][0], ccm[1][1], ccm[2][1], ccm[2][2]};
}

MatrixCost::MatrixCost(const ForwardModel& model, const CostSetup& setup)
    : model_(model),
      mode_(setup.mode),
      gains_(setup.gains),
      white_(setup.white),
      lightnessFactor_(1.0 / square(setup.kL)),
      noiseRate_(setup.noiseRate),
      noiseScale_(setup.noiseScale) {
  const double weightSum = truncatedSum(setup.patchWeights);
  if (!(weightSum >= 1.0)) throw std::invalid_argument("the patch weights must sum to at least 1");
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    weight_[i] = setup.patchWeights[i] / weightSum;
    for (std::size_t c = 0; c < 3; ++c) variance_[c][i] = square(setup.noise[i][c]);

    Target& target = target_[i];
    target.L = setup.targetLab[i][0];
    target.a = setup.targetLab[i][1];
    target.b = setup.targetLab[i][2];
    target.chroma = std::sqrt(square(target.a) + square(target.b));
    const Vector3 through = XYZ_to_CIELab(CIELab_to_XYZ(setup.targetLab[i]), kLabWhite);
    target.throughA = through[1];
    target.throughB = through[2];
    target.throughChroma = std::sqrt(square(target.throughA) + square(target.throughB));
    target.chromaFactor = 1.0 / square(setup.kC * (1.0 + 0.045 * target.chroma));
    target.hueFactor = 1.0 / square(1.0 + 0.015 * target.chroma);
    if (i < kChromaticPatches) targetChromaSum_ += target.chroma;
  }
  for (std::size_t c = 0; c < 3; ++c)
    for (std::size_t k = 0; k < 3; ++k) rgbToXyz100_[c][k] = 100.0 * setup.rgbToXyz[c][k];
}

CostTerms MatrixCost::terms(std::span<const double> p) const {
  const Matrix3 ccm = matrixFromParameters(p);
  ModelColours colours;
  model_.evaluate(ccm, colours);
  CostTerms terms;
  if (noiseRate_ != 0.0) terms.noise = meanNoise(colours, ccm) * noiseScale_ * noiseRate_;
  terms.colour = (1.0 - noiseRate_) * meanColourError(colours);
  if (saturationPressure != 0.0) terms.pressure = saturationPressure * chromaPressure(colours);
  return terms;
}

double MatrixCost::chromaChange(std::span<const double> p) const {
  ModelColours colours;
  model_.evaluate(matrixFromParameters(p), colours);
  double sum = 0.0;
  for (std::size_t i = 0; i < kChromaticPatches; ++i) sum += colours.chroma(i);
  return (sum - targetChromaSum_) / targetChromaSum_;
}

double MatrixCost::meanColourError(const ModelColours& colours) const {
  double sum = 0.0;
  if (mode_ == OptimMode::Cie76)
    for (std::size_t i = 0; i < kPatchCount; ++i) sum += weight_[i] * cie76(colours, i);
  else
    for (std::size_t i = 0; i < kPatchCount; ++i) sum += weight_[i] * cie94(colours, i);
  return sum;
}

double MatrixCost::cie76(const ModelColours& colours, std::size_t patch) const {
  const Target& target = target_[patch];
  return std::sqrt(square(colours.L[patch] - target.L) + square(colours.a[patch] - target.a) +
                   square(colours.b[patch] - target.b));
}

// CIE 116:1995 with the target as reference. The hue difference is defined on colours that went
// through XYZ; the model's come from there and would return unchanged, so only the target's did.
double MatrixCost::cie94(const ModelColours& colours, std::size_t patch) const {
  const Target& target = target_[patch];
  const double chroma = colours.chroma(patch);
  const double hueSquared = square(colours.a[patch] - target.throughA) +
                            square(colours.b[patch] - target.throughB) -
                            square(chroma - target.throughChroma);
  double error = square(colours.L[patch] - target.L) * lightnessFactor_ +
                 square(chroma - target.chroma) * target.chromaFactor;
  if (!(hueSquared < kHueFloor)) error += hueSquared * target.hueFactor / square(hueWeight);
  return std::sqrt(error);
}

// Mean over the patches of the weighted deviation of L*, a*, b*: covariance of the measured noise
// through A = J (100 T) M W, with J the derivative of L*a*b* by XYZ. The gamma takes no part.
double MatrixCost::meanNoise(const ModelColours& colours, const Matrix3& ccm) const {
  Matrix3 toXyz{};  // (100 T) M W
  for (std::size_t c = 0; c < 3; ++c)
    for (std::size_t k = 0; k < 3; ++k) {
      for (std::size_t j = 0; j < 3; ++j) toXyz[c][k] += rgbToXyz100_[c][j] * ccm[j][k];
      toXyz[c][k] *= gains_[k];
    }
  double sum = 0.0;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    Vector3 slope;  // f'(t, tn), from the cube root that f already is
    for (std::size_t c = 0; c < 3; ++c) {
      const double f = colours.f[c][i];
      slope[c] = (f > kLabRootAbove ? 1.0 / (3.0 * f * f) : kLabLinearSlope) / white_[c];
    }
    double varianceL = 0.0, varianceA = 0.0, varianceB = 0.0;
    for (std::size_t k = 0; k < 3; ++k) {
      const double x = slope[0] * toXyz[0][k], y = slope[1] * toXyz[1][k],
                   z = slope[2] * toXyz[2][k];
      varianceL += square(116.0 * y) * variance_[k][i];
      varianceA += square(500.0 * (x - y)) * variance_[k][i];
      varianceB += square(200.0 * (y - z)) * variance_[k][i];
    }
    sum += std::sqrt(varianceL + kNoiseWeightA * varianceA + kNoiseWeightB * varianceB);
  }
  return sum / kPatchCount;
}

double MatrixCost::chromaPressure(const ModelColours& colours) const {
  double sum = 0.0;
  for (std::size_t i = 0; i < kChromaticPatches; ++i) {
    // A target without chroma exerts no pressure, the limit for any colour of the model.
    if (target_[i].chroma > 0.0) sum += std::exp(-colours.chroma(i) / target_[i].chroma);
  }
  return sum;
}

double meanCie76(const PatchTable& labA, const PatchTable& labB, const PatchColumn& weights) {
  double sum = 0.0;
  for (std::size_t i = 0; i < kPatchCount; ++i) sum += weights[i] * deltaE76(labA[i], labB[i]);
  return sum / truncatedSum(weights);
}

}  // namespace greycard
