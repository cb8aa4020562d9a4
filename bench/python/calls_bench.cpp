// What calls_bench.py sets beside the same calls through the Python module.
#include <benchmark/benchmark.h>

#include "greycard/delta_e.h"
#include "greycard/exposure_histogram.h"
#include "greycard/lut2d_table.h"
#include "greycard/mcc_detector.h"
#include "greycard/picture_correction.h"

namespace greycard {
namespace {

// The pattern of calls_bench.py: 12 megapixel of 8 or 16 bits.
Picture pattern(int bits) {
  Picture picture(4000, 3000, 3, bits);
  for (std::size_t i = 0; i < picture.samples.size(); ++i)
    picture.samples[i] = static_cast<std::uint16_t>(i * 7 % 251);
  return picture;
}

void NearestNode(benchmark::State& state) {
  const Lut2DConfig table = identityLut2d();
  for (auto _ : state) benchmark::DoNotOptimize(nearestNode(table, 121.0, 0.5));
}
BENCHMARK(NearestNode);

void TableAccess(benchmark::State& state) {
  Lut2DConfig table = identityLut2d();
  for (auto _ : state) benchmark::DoNotOptimize(table.lut_2d_h[5] += 1.0);
}
BENCHMARK(TableAccess);

void DeltaE2000(benchmark::State& state) {
  const Vector3 a{50.0, 10.0, 20.0}, b{52.0, 11.0, 18.0};
  for (auto _ : state) benchmark::DoNotOptimize(deltaE2000(a, b));
}
BENCHMARK(DeltaE2000);

void Histograms(benchmark::State& state) {
  const Picture picture = pattern(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(exposureHistograms(picture, 255));
}
BENCHMARK(Histograms)->Arg(8)->Arg(16)->Unit(benchmark::kMillisecond);

void Correct(benchmark::State& state) {
  const Picture picture = pattern(static_cast<int>(state.range(0)));
  const Matrix3 matrix{{{1.6, -0.5, -0.1}, {-0.2, 1.5, -0.3}, {0.0, -0.6, 1.6}}};
  for (auto _ : state)
    benchmark::DoNotOptimize(correctPicture(picture, SampleLevels(), {1.0, 1.0, 1.0}, matrix));
}
BENCHMARK(Correct)->Arg(8)->Arg(16)->Unit(benchmark::kMillisecond);

void Detect(benchmark::State& state) {
  const Picture picture = pattern(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(MCCDetector().detect(picture));
}
BENCHMARK(Detect)->Arg(8)->Arg(16)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace greycard
