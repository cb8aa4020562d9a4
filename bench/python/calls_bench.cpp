// What calls_bench.py sets beside the same calls through the Python module.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

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

auto histograms(const Picture& picture) {
  return exposureHistograms(picture, 255);
}
auto correct(const Picture& picture) {
  const Matrix3 matrix{{{1.6, -0.5, -0.1}, {-0.2, 1.5, -0.3}, {0.0, -0.6, 1.6}}};
  return correctPicture(picture, SampleLevels(), {1.0, 1.0, 1.0}, matrix);
}
auto detect(const Picture& picture) {
  return MCCDetector().detect(picture);
}

void onPicture(benchmark::State& state, auto call) {
  const Picture picture = pattern(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(call(picture));
}
BENCHMARK_CAPTURE(onPicture, Histograms, histograms)->Arg(8)->Arg(16);
BENCHMARK_CAPTURE(onPicture, Correct, correct)->Arg(8)->Arg(16);
BENCHMARK_CAPTURE(onPicture, Detect, detect)->Arg(8)->Arg(16);

template <typename Sample>
void onMemory(benchmark::State& state, auto call) {
  const Picture picture = pattern(8 * sizeof(Sample));
  std::vector<Sample> memory(picture.samples.size());
  std::ranges::transform(picture.samples, memory.begin(),
                         [](std::uint16_t sample) { return static_cast<Sample>(sample); });
  for (auto _ : state)
    benchmark::DoNotOptimize(
        call(pictureOf(std::span<const Sample>(memory), picture.width, picture.height, 3)));
}
void onMemoryOf(benchmark::State& state, auto call) {
  state.range(0) == 8 ? onMemory<std::uint8_t>(state, call) : onMemory<std::uint16_t>(state, call);
}
BENCHMARK_CAPTURE(onMemoryOf, Histograms, histograms)->Arg(8)->Arg(16);
BENCHMARK_CAPTURE(onMemoryOf, Correct, correct)->Arg(8)->Arg(16);
BENCHMARK_CAPTURE(onMemoryOf, Detect, detect)->Arg(8)->Arg(16);

}  // namespace
}  // namespace greycard
