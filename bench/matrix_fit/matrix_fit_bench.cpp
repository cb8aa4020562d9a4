// One evaluation of a fit's cost with its derivatives beside the colour differences it can't avoid,
// and whole fits beside the stated one on the same samples.

#include <benchmark/benchmark.h>

#include <vector>

#include "fit_search.h"
#include "greycard/color_correction_utils.h"
#include "greycard/delta_e.h"
#include "matrix_fit/known_chart.h"

namespace greycard {
namespace {

const MatrixFitSamples& samples() {
  static const MatrixFitSamples seen = [] {
    MatrixFitSamples chart = fixture::seenBy(ModelSensor::Narrow, illum_TL84);
    chart.photographs[0].noise.fill({0.002, 0.002, 0.002});
    chart.photographs[0].pixels.fill(400);
    return chart;
  }();
  return seen;
}

// 24 values without derivatives, of colours that vary.
void BM_Ciede2000Values(benchmark::State& state) {
  std::vector<PatchTable> labs(64, samples().referenceLab);
  for (std::size_t k = 0; k < labs.size(); ++k)
    for (std::size_t i = 0; i < kPatchCount; ++i)
      for (std::size_t c = 0; c < 3; ++c)
        labs[k][i][c] += 0.1 * static_cast<double>((k * 7919 + i * 104729 + c * 31) % 41);
  std::size_t next = 0;
  for (auto _ : state) {
    const PatchTable& lab = labs[next++ % labs.size()];
    double sum = 0.0;
    for (std::size_t i = 0; i < kPatchCount; ++i)
      sum += deltaE2000(samples().referenceLab[i], lab[i]);
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(BM_Ciede2000Values);

void BM_EvaluationWithDerivatives(benchmark::State& state) {
  FitOptions options;
  options.difference = static_cast<FitDifference>(state.range(0));
  const FitContext context(samples(), options);
  const FitSetup setup = context.setup(samples().photographs, {}, nullptr);
  const FitCost cost = context.cost(setup);
  std::vector<FitState> states(64, setup.start);
  for (std::size_t k = 0; k < states.size(); ++k)
    for (Vector3& row : states[k].matrix) row[k % 3] += 0.002 * static_cast<double>(k % 17);
  LocalModel model;
  std::size_t next = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(cost.evaluate(states[next++ % states.size()], model));
}
BENCHMARK(BM_EvaluationWithDerivatives)->ArgName("measure")->DenseRange(0, 3);

void fitWith(benchmark::State& state, const FitOptions& options) {
  const MatrixFit fit(options);
  std::int64_t evaluations = 0;
  for (auto _ : state) {
    const auto result = fit.fit(samples());
    evaluations = result->evaluations;
    benchmark::DoNotOptimize(result->figures.objective);
  }
  state.counters["evaluations"] = static_cast<double>(evaluations);
}
void BM_AllStarts(benchmark::State& state) {
  fitWith(state, fixture::fitAlone());
}
BENCHMARK(BM_AllStarts)->Unit(benchmark::kMillisecond);
void BM_AllStartsWithCurveAndLight(benchmark::State& state) {
  FitOptions options = fixture::fitAlone();
  options.toneCurve = FitToneCurve::powerOffset;
  options.light = FitLight::quadratic;
  fitWith(state, options);
}
BENCHMARK(BM_AllStartsWithCurveAndLight)->Unit(benchmark::kMillisecond);
void BM_AllStartsWithinNoiseLimits(benchmark::State& state) {
  FitOptions options = fixture::fitAlone();
  options.rowNoiseLimits.fill(1.0);
  fitWith(state, options);
}
BENCHMARK(BM_AllStartsWithinNoiseLimits)->Unit(benchmark::kMillisecond);
void BM_WithAllThatTellsHowFarToBelieve(benchmark::State& state) {
  fitWith(state, {});
}
BENCHMARK(BM_WithAllThatTellsHowFarToBelieve)->Unit(benchmark::kMillisecond);

void BM_StatedFit(benchmark::State& state) {
  ColorCorrectionSettings settings(0, illum_TL84, 0);
  settings.m_macbethData.m_RGB = samples().photographs[0].rgb;
  std::vector<std::int32_t> gamma(256);
  for (std::size_t i = 0; i < gamma.size(); ++i)
    gamma[i] =
        static_cast<std::int32_t>(62.4 * 255.0 * std::pow(static_cast<double>(i) / 255, 0.45));
  ColorCorrectionUtils facade;
  facade.SetGammaTable(gamma, gamma, gamma);
  for (auto _ : state) benchmark::DoNotOptimize(facade.Optimize(settings, 0));
}
BENCHMARK(BM_StatedFit)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace greycard
