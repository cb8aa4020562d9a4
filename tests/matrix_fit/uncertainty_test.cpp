// Standard errors against the scatter over five hundred simulated photographs.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "known_chart.h"

namespace greycard {
namespace {

constexpr int kPhotographs = 500;  // their scatter is known to 3 %
constexpr int kJudged = 20;        // photographs whose predictions are averaged

class NoisyCamera {
 public:
  NoisyCamera(ModelSensor sensor, Illum light) {
    chart_.LoadMCCCIELAB(light);
    SimulationSettings& settings = simulator_.m_settings;
    settings.sensor = sensor;
    settings.light = light;
    settings.width = 120;
    settings.height = 90;
    settings.sizeShare = 0.95;
    settings.bits = 16;
    settings.encoding = SampleEncoding::linear;
    settings.blackLevel = 2000;  // so that noise doesn't clip at black
    settings.shotNoise = 0.006;
    settings.readNoise = 0.001;
  }

  MatrixFitSamples photograph(int seed) {
    simulator_.m_settings.seed = static_cast<std::uint64_t>(seed);
    simulator_.Simulate();
    const SimulationTruth& truth = simulator_.m_truth;
    const double side = 0.6 * truth.patchSide;
    PatchRegions regions;
    for (std::size_t i = 0; i < kPatchCount; ++i)
      regions[i] = {truth.centres[i].x - side / 2, truth.centres[i].y - side / 2, side, side};
    const SamplingReport report = chart_.CollectRGBData(
        simulator_.m_picture, regions, {2000.0, 65535.0, 1.0, SampleEncoding::linear});
    return {{FitPhotograph(chart_, report)}, chart_.m_RefLab};
  }

 private:
  MacbethChartData chart_;
  ChartSimulator simulator_;
};

/// A number of the result and its standard error.
struct Quantity {
  std::string name;
  double value = 0.0, error = 0.0;
};

std::vector<Quantity> quantitiesOf(const MatrixFitResult& result) {
  const FitUncertainty errors = result.uncertainty.value_or(
      FitUncertainty{.exposure = {0.0}, .lightRange = {0.0}, .dE2000 = {{}}});
  std::vector<Quantity> all;
  for (std::size_t r = 0; r < 3; ++r)
    for (std::size_t c = 0; c < 3; ++c)
      all.push_back({"entry " + std::to_string(r) + std::to_string(c), result.matrix[r][c],
                     errors.matrix[r][c]});
  all.push_back({"gain of R", result.gains[0], errors.gains[0]});
  all.push_back({"gain of B", result.gains[2], errors.gains[2]});
  all.push_back({"exposure", result.photographs[0].exposure, errors.exposure[0]});
  all.push_back({"curve", result.curveNumbers[0], errors.curve[0]});
  all.push_back({"light", result.photographs[0].lightRange, errors.lightRange[0]});
  for (std::size_t i = 0; i < kPatchCount; ++i)
    all.push_back({"dE of patch " + std::to_string(i + 1), result.photographs[0].dE2000[i],
                   errors.dE2000[0][i]});
  return all;
}

void expectErrorsOfTheScatter(NoisyCamera camera, FitOptions options) {
  std::vector<Quantity> sum, squares;
  for (int k = 0; k < kPhotographs; ++k) {
    options.uncertainty = k < kJudged;
    const auto result = MatrixFit(options).fit(camera.photograph(k + 1));
    ASSERT_TRUE(result->uncertainty || k >= kJudged);
    const std::vector<Quantity> found = quantitiesOf(*result);
    sum.resize(found.size());
    squares.resize(found.size());
    for (std::size_t q = 0; q < found.size(); ++q) {
      sum[q].name = found[q].name;
      sum[q].value += found[q].value;
      squares[q].value += found[q].value * found[q].value;
      squares[q].error += found[q].error * found[q].error / kJudged;
    }
  }
  for (std::size_t q = 0; q < sum.size(); ++q) {
    const double mean = sum[q].value / kPhotographs;
    const double scatter = std::sqrt(std::max(0.0, squares[q].value / kPhotographs - mean * mean));
    const double predicted = std::sqrt(squares[q].error);
    if (scatter <= 1e-9 * std::fabs(mean) && predicted < 1e-9) continue;  // it is not free
    // A dE near 0 has no symmetric scatter to predict.
    if (sum[q].name[0] == 'd' && mean < 5.0 * scatter) continue;
    EXPECT_NEAR(predicted / scatter, 1.0, 0.15) << sum[q].name << ": " << mean << " +- " << scatter;
  }
}

TEST(Uncertainty, OfTheDefaultFit) {
  FitOptions options = fixture::fitAlone();
  expectErrorsOfTheScatter(NoisyCamera(ModelSensor::Ordinary, illum_A), options);
}

TEST(Uncertainty, WithGainsFromTheFitAndOtherMeasures) {
  FitOptions options = fixture::fitAlone();
  options.whiteBalance = FitWhiteBalance::fitted;
  options.difference = FitDifference::cam16Ucs;
  expectErrorsOfTheScatter(NoisyCamera(ModelSensor::Narrow, illum_TL84), options);
}

TEST(Uncertainty, OfCurveAndLight) {
  FitOptions options = fixture::fitAlone();
  options.entries = FitEntries::six;
  options.exposure = FitExposure::stated;
  options.toneCurve = FitToneCurve::power;
  options.light = FitLight::plane;
  expectErrorsOfTheScatter(NoisyCamera(ModelSensor::Ordinary, illum_D65), options);
}

// More colours than unknowns are needed for an error; without noise there is none.
TEST(Uncertainty, NoNoiseNoError) {
  FitOptions options = fixture::fitAlone();
  options.uncertainty = true;
  const auto result = MatrixFit(options).fit(fixture::seenBy(ModelSensor::Ordinary, illum_A));
  for (const Quantity& quantity : quantitiesOf(*result)) EXPECT_LT(quantity.error, 1e-6);
}

}  // namespace
}  // namespace greycard
