// The cost of a colour-matrix fit beside the powers and roots that it can't avoid, on the same
// values, and whole fits.

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "color_matrix_opt.h"
#include "colour/chart_fixture.h"
#include "forward_model.h"
#include "greycard/color_correction_utils.h"
#include "matrix_cost.h"

namespace greycard {
namespace {

OptimMode modeOf(const benchmark::State& state) {
  return state.range(0) == 0 ? OptimMode::Cie76 : OptimMode::Cie94;
}

/// A filled optimiser, and matrices around a good one: they vary, so that no branch is learnt by
/// heart.
struct Fit {
  Fit() {
    const std::vector<std::int32_t> gamma = fixture::srgbGammaTable();
    const MacbethChartData chart = fixture::seenBySensor(illum_D50).m_macbethData;
    cm.SetGamma(gamma, gamma, gamma);
    cm.SetRGB(chart.m_RGB);
    cm.SetNoise(chart.m_Noise);
    cm.LoadRefLab(OptimLight::D50, chart.m_RefLab);
    cm.Normalize();
    cm.ColorMatrix_WB({19, 20, 21});
    for (std::size_t i = 0; i < matrices.size(); ++i)
      for (std::size_t k = 0; k < 6; ++k)
        matrices[i][k] = (k == 0 || k == 3 || k == 5 ? 1.5 : -0.3) +
                         0.002 * static_cast<double>((i * 7919 + k * 104729) % 101);
  }

  MatrixCost cost(const ForwardModel& model, OptimMode mode, double noiseRate) const {
    return MatrixCost(model, {.targetLab = cm.m_RefLab,
                              .patchWeights = cm.m_patchWeights,
                              .noise = cm.m_Noise,
                              .gains = {1.5, 1.0, 1.4},
                              .rgbToXyz = kRgbToXyz,
                              .white = kWhite,
                              .mode = mode,
                              .kL = 1.25,
                              .kC = 1.0,
                              .noiseRate = noiseRate,
                              .noiseScale = 1.0});
  }
  ForwardModel model() const {
    return ForwardModel(cm.m_balancedRGB, GammaStage(cm.normalisedGamma()), kRgbToXyz, kWhite);
  }

  static constexpr Vector3 kWhite{95.05, 100.0, 108.9};
  ColorMatrixOpt cm;
  std::array<MatrixParameters, 64> matrices;
};

// The arguments of the powers and roots of one evaluation.
struct Arguments {
  std::array<double, 72> powers, roots;
};

std::vector<Arguments> argumentsOf(const Fit& fit) {
  std::vector<Arguments> all(fit.matrices.size());
  const ForwardModel model = fit.model();
  const GammaStage gamma(fit.cm.normalisedGamma());
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Matrix3 ccm = matrixFromParameters(fit.matrices[i]);
    ModelColours colours;
    model.evaluate(ccm, colours);
    for (std::size_t patch = 0; patch < kPatchCount; ++patch) {
      const Vector3 mixed = multiply(ccm, fit.cm.m_balancedRGB[patch]);
      for (std::size_t c = 0; c < 3; ++c) {
        const double clipped = std::min(std::max(mixed[c], 0.0), 1.0);
        all[i].powers[3 * patch + c] = (gamma.at(c, clipped) + 0.055) / 1.055;
        all[i].roots[3 * patch + c] = std::pow(colours.f[c][patch], 3.0);
      }
    }
  }
  return all;
}

void BM_PowersAndRootsOnly(benchmark::State& state) {
  static const Fit fit;
  const std::vector<Arguments> arguments = argumentsOf(fit);
  const int rounds = modeOf(state) == OptimMode::Cie76 ? 1 : 2;
  std::size_t next = 0;
  for (auto _ : state) {
    const Arguments& args = arguments[next++ % arguments.size()];
    double sum = 0.0;
    for (const double value : args.powers) sum += std::pow(value, 2.4);
    for (int round = 0; round < rounds; ++round)
      for (const double value : args.roots) sum += std::cbrt(value + round);
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(BM_PowersAndRootsOnly)->ArgName("mode")->Arg(0)->Arg(1);

void evaluateCost(benchmark::State& state, double noiseRate, double saturationPressure) {
  static const Fit fit;
  const ForwardModel model = fit.model();
  MatrixCost cost = fit.cost(model, modeOf(state), noiseRate);
  cost.saturationPressure = saturationPressure;
  std::size_t next = 0;
  for (auto _ : state) benchmark::DoNotOptimize(cost(fit.matrices[next++ % fit.matrices.size()]));
}
void BM_Cost(benchmark::State& state) {
  evaluateCost(state, 0.0, 0.0);
}
BENCHMARK(BM_Cost)->ArgName("mode")->Arg(0)->Arg(1);
void BM_CostWithNoiseAndPressure(benchmark::State& state) {
  evaluateCost(state, 0.3, 1.0);
}
BENCHMARK(BM_CostWithNoiseAndPressure)->ArgName("mode")->Arg(0)->Arg(1);

void optimize(benchmark::State& state, double saturation) {
  const std::vector<std::int32_t> gamma = fixture::srgbGammaTable();
  ColorCorrectionSettings settings = fixture::seenBySensor(illum_D65);
  settings.m_nDeltaEMode = static_cast<std::int32_t>(state.range(0));
  settings.m_fSaturation = saturation;
  ColorCorrectionUtils utils;
  utils.SetGammaTable(gamma, gamma, gamma);
  for (auto _ : state) benchmark::DoNotOptimize(utils.Optimize(settings, 0));
  state.counters["evaluations"] = static_cast<double>(utils.m_fit.m_evaluations);
  state.counters["runs"] = utils.m_fit.m_powellRuns;
}
void BM_Optimize(benchmark::State& state) {
  optimize(state, -1.0);
}
BENCHMARK(BM_Optimize)->ArgName("mode")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
void BM_OptimizeWithSaturationSearch(benchmark::State& state) {
  optimize(state, 1.1);
}
BENCHMARK(BM_OptimizeWithSaturationSearch)
    ->ArgName("mode")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace greycard
