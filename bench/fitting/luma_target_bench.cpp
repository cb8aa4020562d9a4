// One evaluation of the luma-target rule, beside the same computed plainly from scratch; and a
// whole search, beside one whose objective is empty: the share of NLopt's own bookkeeping.

#include <benchmark/benchmark.h>

#include <random>

#include "luma_target_run.h"
#include "luma_task.h"
#include "nlopt_callbacks.h"
#include "nlopt_search.h"

namespace greycard {
namespace {

constexpr int kSearchEvaluations = 5000;

// Points within the bounds, so that every evaluation searches its percentiles anew.
std::vector<GaParameters> variedPoints(const LumaTask& task) {
  std::mt19937 random(3);
  std::vector<GaParameters> points(257);
  for (GaParameters& x : points)
    for (std::size_t k = 0; k < kGaParameters; ++k)
      x[k] = std::uniform_real_distribution(task.lower[k], task.upper[k])(random);
  return points;
}

template <typename Evaluate>
void evaluateAll(benchmark::State& state, const LumaTask& task, Evaluate evaluate) {
  const auto points = variedPoints(task);
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(evaluate(points[i]));
    i = (i + 1) % points.size();
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_PlainObjective(benchmark::State& state) {
  const LumaTask task(static_cast<int>(state.range(0)), 1);
  evaluateAll(state, task, [&](const GaParameters& x) { return evaluatePlainly(task, x).error; });
}
BENCHMARK(BM_PlainObjective)->Arg(50)->Arg(299);

void BM_Objective(benchmark::State& state) {
  const LumaTask task(static_cast<int>(state.range(0)), 1);
  LumaTargetRun run = runOf(task);
  evaluateAll(state, task, [&](const GaParameters& x) { return run.errorFunc_LumaTarget(x); });
}
BENCHMARK(BM_Objective)->Arg(50)->Arg(299);

// Only the numerators are fitted: the statistics stay what they are.
void BM_ObjectiveWithFixedRanges(benchmark::State& state) {
  LumaTask task(static_cast<int>(state.range(0)), 1);
  task.enable = {1, 1, 1, 1, 1, 1, 0, 0, 0};
  LumaTargetRun run = runOf(task);
  evaluateAll(state, task, [&](const GaParameters& x) { return run.errorFunc_LumaTarget(x); });
}
BENCHMARK(BM_ObjectiveWithFixedRanges)->Arg(50);

double emptyObjective(unsigned /*n*/, const double* x, double* /*gradient*/, void* /*data*/) {
  return x[0];
}

void search(benchmark::State& state, NloptFunction objective) {
  const LumaTask task(50, 1);
  LumaTargetRun run = runOf(task);
  constexpr NloptFunction kConstraints[] = {GAinconstraint1, GAinconstraint2, GAinconstraint3,
                                            GAinconstraint4};
  SearchOptions options;
  options.maxSeconds = 0.0;
  options.maxEvaluations = kSearchEvaluations;
  std::int64_t evaluations = 0;
  for (auto _ : state) {
    GaParameters x = task.start;
    evaluations +=
        minimise({task.lower, task.upper, objective, kConstraints, &run}, options, x).evaluations;
  }
  state.SetItemsProcessed(evaluations);
}

void BM_SearchWithEmptyObjective(benchmark::State& state) {
  search(state, emptyObjective);
}
BENCHMARK(BM_SearchWithEmptyObjective)->Unit(benchmark::kMillisecond);
void BM_Search(benchmark::State& state) {
  search(state, GA_Utility);
}
BENCHMARK(BM_Search)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace greycard
