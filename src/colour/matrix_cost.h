#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "forward_model.h"
#include "greycard/types.h"

namespace greycard {

/// Colour error that is minimised.
enum class OptimMode : std::int32_t { Cie76 = 0, Cie94 = 1 };

/// The six free entries of a colour matrix whose rows sum to 1.
using MatrixParameters = std::array<double, 6>;

/// Rows (p1, p2, 1-p1-p2), (p3, p4, 1-p3-p4), (1-p5-p6, p5, p6). The last row's free entries are
/// its second and third, unlike the others': deliberate.
Matrix3 matrixFromParameters(std::span<const double> p);
/// Takes the six entries and drops the other three.
MatrixParameters parametersFromMatrix(const Matrix3& ccm);

/// What a cost is made of besides the model.
struct CostSetup {
  PatchTable targetLab{};
  PatchColumn patchWeights{};  ///< their sum counts truncated to an integer
  PatchTable noise{};          ///< standard deviation of measured R, G, B
  Vector3 gains{};             ///< of white balance, take measured to balanced RGB
  Matrix3 rgbToXyz{};          ///< linear RGB to XYZ on the 0..1 scale
  Vector3 white{};             ///< XYZ of the white of L*a*b*, 0..100
  OptimMode mode = OptimMode::Cie94;
  double kL = 1.0, kC = 1.0;  ///< of CIE94
  double noiseRate = 0.0;     ///< 0..1, weight of the noise against the colour error
  double noiseScale = 0.0;    ///< brings noise to the scale of the colour error
};

/// The terms of a cost as they are summed.
struct CostTerms {
  double noise = 0.0, colour = 0.0, pressure = 0.0;
  double sum() const { return noise + colour + pressure; }
};

/// The function that a colour-matrix fit minimises: the weighted mean colour error of the patches,
/// their mean noise after correction, and a pressure towards chroma.
///
///   cost = N * noiseScale * r + (1 - r) * E + g * sum over patches 1..18 of exp(-C / Cref)
///
/// Owns all that a run needs, so runs never meet; an evaluation allocates nothing.
class MatrixCost {
 public:
  /// \throws std::invalid_argument when the weights sum to less than 1
  MatrixCost(const ForwardModel& model, const CostSetup& setup);

  double operator()(std::span<const double> p) const { return terms(p).sum(); }
  CostTerms terms(std::span<const double> p) const;

  /// (sum of C - sum of Cref) / (sum of Cref) over patches 1..18: 0.1 is 10 % more chroma than the
  /// target's. Not finite when the target has no chroma.
  double chromaChange(std::span<const double> p) const;

  double saturationPressure = 0.0;  ///< g
  double hueWeight = 1.0;           ///< kH of CIE94

 private:
  double meanColourError(const ModelColours& colours) const;
  double cie76(const ModelColours& colours, std::size_t patch) const;
  double cie94(const ModelColours& colours, std::size_t patch) const;
  double meanNoise(const ModelColours& colours, const Matrix3& ccm) const;
  double chromaPressure(const ModelColours& colours) const;

  // All about one patch's target that doesn't depend on the parameters.
  struct Target {
    double L, a, b, chroma;
    double throughA, throughB, throughChroma;  // after L*a*b* to XYZ and back
    double chromaFactor, hueFactor;            // 1 / (kC SC)^2, 1 / SH^2
  };

  const ForwardModel& model_;
  std::array<Target, kPatchCount> target_;
  PatchColumn weight_;  // over the truncated sum of all
  std::array<PatchColumn, 3> variance_;
  Matrix3 rgbToXyz100_;
  OptimMode mode_;
  Vector3 gains_, white_;
  double lightnessFactor_;  // 1 / kL^2
  double noiseRate_, noiseScale_;
  double targetChromaSum_ = 0.0;
};

/// Weighted mean CIE76 difference of two tables; the sum of the weights is truncated to an integer
/// before it divides.
double meanCie76(const PatchTable& labA, const PatchTable& labB, const PatchColumn& weights);

}  // namespace greycard
