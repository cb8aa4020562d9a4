// MatrixFit against searches that know nothing of it: the formula of the cost written out, and
// Powell's search from sixty random starts.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>

#include "cam16.h"
#include "greycard/delta_e.h"
#include "known_chart.h"
#include "powell.h"

namespace greycard {
namespace {

using fixture::kWhite;
using fixture::labOf;
using fixture::seenBy;

/// The cost of nine entries, or of six and an exposure, straight from its definition.
struct SlowCost {
  const MatrixFitSamples& samples;
  FitOptions options;
  Vector3 gains;  // with the exposure, when it isn't free

  double differenceOf(std::size_t patch, const Vector3& lab) const {
    const Vector3& reference = samples.referenceLab[patch];
    if (options.difference == FitDifference::cie94) return deltaE94(reference, lab);
    if (options.difference == FitDifference::cie76) return deltaE76(reference, lab);
    if (options.difference == FitDifference::ciede2000) return deltaE2000(reference, lab);
    static const Cam16 model(kWhite);
    return deltaE76(model.ucs(CIELab_to_XYZ(reference, kWhite)),
                    model.ucs(CIELab_to_XYZ(lab, kWhite)));
  }
  Matrix3 matrixOf(std::span<const double> p) const {
    if (options.entries == FitEntries::nine)
      return {{{p[0], p[1], p[2]}, {p[3], p[4], p[5]}, {p[6], p[7], p[8]}}};
    Matrix3 matrix;
    for (std::size_t c = 0; c < 3; ++c)
      matrix[c] = {p[6] * p[2 * c], p[6] * p[2 * c + 1], p[6] * (1.0 - p[2 * c] - p[2 * c + 1])};
    return matrix;
  }
  double operator()(std::span<const double> p) const {
    const Matrix3 matrix = matrixOf(p);
    double sum = 0.0, weights = 0.0;
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      const Vector3& rgb = samples.photographs[0].rgb[i];
      const Vector3 lab =
          labOf(multiply(matrix, {rgb[0] * gains[0], rgb[1] * gains[1], rgb[2] * gains[2]}));
      sum += options.patchWeights[i] * std::pow(differenceOf(i, lab), options.norm);
      weights += options.patchWeights[i];
    }
    return std::pow(sum / weights, 1.0 / options.norm);
  }
};

double lowestOfSixty(const SlowCost& cost, const std::vector<double>& around) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> shift(-0.5, 0.5);
  std::vector<PowellResult> ends;
  for (int k = 0; k < 60; ++k) {
    std::vector<double> start = around;
    for (double& entry : start) entry += shift(random);
    ends.push_back(
        powell(cost, start, {.tolerance = 1e-3, .maxIterations = 500, .initialStep = 0.2}));
  }
  std::sort(ends.begin(), ends.end(),
            [](const auto& a, const auto& b) { return a.lastValue < b.lastValue; });
  double lowest = ends[0].lastValue;
  for (std::size_t k = 0; k < 4; ++k) {
    const PowellOptions fine{.tolerance = 1e-10, .maxIterations = 5000, .initialStep = 0.02};
    const PowellResult once = powell(cost, ends[k].point, fine);
    lowest = std::min(lowest, powell(cost, once.point, fine).lastValue);
  }
  return lowest;
}

struct Case {
  const char* name;
  ModelSensor sensor;
  Illum light;
  FitDifference difference;
  double norm;
  FitEntries entries = FitEntries::nine;
  PatchWeightPreset weights = PatchWeightPreset::even;
};
void PrintTo(const Case& c, std::ostream* os) {
  *os << c.name;
}
class BestFit : public testing::TestWithParam<Case> {};

TEST_P(BestFit, IsNotAboveTheBestOfSixtyRandomStarts) {
  const Case& c = GetParam();
  const MatrixFitSamples samples = seenBy(c.sensor, c.light);
  FitOptions options = fixture::fitAlone();
  options.difference = c.difference;
  options.norm = c.norm;
  options.entries = c.entries;
  options.patchWeights = patchWeights(c.weights);
  if (c.entries == FitEntries::six) options.exposure = FitExposure::free;
  const auto found = MatrixFit(options).fit(samples);
  EXPECT_TRUE(found->converged);

  SlowCost cost{samples, options, found->gains};
  std::vector<double> point;
  const double exposure = found->photographs[0].exposure;
  if (c.entries == FitEntries::nine) {
    for (double& gain : cost.gains) gain *= exposure;
    for (const Vector3& row : found->matrix) point.insert(point.end(), row.begin(), row.end());
  } else {
    for (const Vector3& row : found->matrix) point.insert(point.end(), {row[0], row[1]});
    point.push_back(exposure);
    for (const Vector3& row : found->matrix) EXPECT_NEAR(row[0] + row[1] + row[2], 1.0, 1e-12);
  }
  EXPECT_NEAR(cost(point), found->figures.objective, 1e-7);
  EXPECT_LT(found->figures.objective, lowestOfSixty(cost, point) + 1e-4);
}

INSTANTIATE_TEST_SUITE_P(
    Cameras, BestFit,
    testing::Values(
        Case{"Default", ModelSensor::Ordinary, illum_A, FitDifference::ciede2000, 2},
        Case{"Mean", ModelSensor::Narrow, illum_TL84, FitDifference::ciede2000, 1},
        Case{"SoftMaximum", ModelSensor::Broad, illum_D65, FitDifference::ciede2000, 8},
        Case{"Cie94Six", ModelSensor::Narrow, illum_D50, FitDifference::cie94, 2, FitEntries::six},
        Case{"Cie76Skin", ModelSensor::Broad, illum_A, FitDifference::cie76, 2, FitEntries::nine,
             PatchWeightPreset::skin},
        Case{"Cam16Mean", ModelSensor::Ordinary, illum_Horizon, FitDifference::cam16Ucs, 1}),
    [](const auto& p) { return std::string(p.param.name); });

// A row no noisier than allowed: as good as a slow search that pays for excess noise.
TEST(BestFitWithin, NoiseLimitsAreKeptAndNothingIsGivenAway) {
  const MatrixFitSamples samples = seenBy(ModelSensor::Broad, illum_D65);
  FitOptions options = fixture::fitAlone();
  const auto noisy = MatrixFit(options).fit(samples);
  options.rowNoiseLimits = {1.2, FitOptions::kUnlimited, 1.5};
  options.tradeOffSteps = 5;
  const auto quiet = MatrixFit(options).fit(samples);
  ASSERT_GT(noisy->rowNoise[0], 1.3);
  EXPECT_LT(quiet->rowNoise[0], 1.2 + 1e-6);
  EXPECT_LT(quiet->rowNoise[2], 1.5 + 1e-6);
  EXPECT_GT(quiet->figures.objective, noisy->figures.objective);

  Vector3 gains = quiet->gains;
  for (double& gain : gains) gain *= quiet->photographs[0].exposure;
  const SlowCost cost{samples, options, gains};
  std::vector<double> point;
  for (const Vector3& row : quiet->matrix) point.insert(point.end(), row.begin(), row.end());
  const auto paying = [&](std::span<const double> p) {
    double excess = 0.0;
    const Matrix3 matrix = cost.matrixOf(p);
    for (const std::size_t c : {0U, 2U}) {
      const double noise = std::hypot(matrix[c][0], matrix[c][1], matrix[c][2]);
      excess += std::max(0.0, noise - options.rowNoiseLimits[c]);
    }
    return cost(p) + 100.0 * excess;
  };
  double lowest = paying(point);
  std::mt19937 random(4);
  std::uniform_real_distribution<double> shift(-0.1, 0.1);
  for (int k = 0; k < 10; ++k) {
    std::vector<double> start = point;
    for (double& entry : start) entry += shift(random);
    lowest = std::min(lowest,
                      powell(paying, start, {.tolerance = 1e-9, .maxIterations = 2000}).lastValue);
  }
  EXPECT_LT(quiet->figures.objective, lowest + 1e-4);

  ASSERT_EQ(quiet->tradeOff.size(), 5U);
  EXPECT_DOUBLE_EQ(quiet->tradeOff.back().limit, 0.6);
  for (std::size_t k = 1; k < 5; ++k) {
    EXPECT_LT(quiet->tradeOff[k].limit, quiet->tradeOff[k - 1].limit);
    EXPECT_GT(quiet->tradeOff[k].figures.objective, quiet->tradeOff[k - 1].figures.objective);
    for (const double noise : quiet->tradeOff[k].rowNoise)
      EXPECT_LT(noise, quiet->tradeOff[k].limit + 1e-6);
  }
}

}  // namespace
}  // namespace greycard
