// The page about a fit to a photograph of 12 megapixels, beside the correction of the photograph
// itself, which the page needs at its own size only; and the page's bytes.

#include <benchmark/benchmark.h>

#include <cstdint>

#include "greycard/jobs/simulate.h"
#include "greycard/present/chart.h"

namespace {

using namespace greycard;

struct FittedPhotograph {
  SimulatedChart photograph;
  ChartFit fit;
};

const FittedPhotograph& fitted() {
  static const FittedPhotograph made = [] {
    SimulationSettings settings;
    settings.width = 4000;
    settings.height = 3000;
    settings.shotNoise = 0.01;
    FittedPhotograph both{*simulateChart(settings), {}};
    both.fit = *fitChart(both.photograph.picture);
    return both;
  }();
  return made;
}

void BM_Report(benchmark::State& state) {
  const FittedPhotograph& both = fitted();
  std::size_t bytes = 0;
  for (auto _ : state) bytes = present::fitReport(both.fit, both.photograph.picture).size();
  state.counters["bytes"] = static_cast<double>(bytes);
}

void BM_CorrectedPhotograph12(benchmark::State& state) {
  const FittedPhotograph& both = fitted();
  for (auto _ : state)
    benchmark::DoNotOptimize(correctedPhotograph(both.photograph.picture, both.fit));
}

BENCHMARK(BM_Report)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CorrectedPhotograph12)->Unit(benchmark::kMillisecond);

}  // namespace
