// A simulated photograph of 1600 x 1200, beside a loop that only copies one colour to each of its
// samples and one that only draws the random numbers of its noise.

#include <benchmark/benchmark.h>

#include <random>

#include "greycard/chart_simulator.h"

namespace greycard {
namespace {

void BM_Simulate(benchmark::State& state, double blurSigma, double shotNoise) {
  ChartSimulator simulator;
  simulator.m_settings.rotationDeg = 12;
  simulator.m_settings.blurSigma = blurSigma;
  simulator.m_settings.shotNoise = shotNoise;
  for (auto _ : state) benchmark::DoNotOptimize(simulator.Simulate());
}
BENCHMARK_CAPTURE(BM_Simulate, sharp, 0.0, 0.0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Simulate, blurred, 1.5, 0.0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Simulate, noisy, 0.0, 0.01)->Unit(benchmark::kMillisecond);

void BM_FillPicture(benchmark::State& state) {
  for (auto _ : state) {
    Picture picture(1600, 1200, 3, 8);
    for (auto& sample : picture.samples) sample = 128;
    benchmark::DoNotOptimize(picture.samples.data());
  }
}
BENCHMARK(BM_FillPicture)->Unit(benchmark::kMillisecond);

void BM_StandardNormals(benchmark::State& state) {
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal;
  for (auto _ : state) {
    double sum = 0.0;
    for (int i = 0; i < 1600 * 1200 * 3; ++i) sum += normal(random);
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(BM_StandardNormals)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace greycard
