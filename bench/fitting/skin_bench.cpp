// A skin calibration beside one that works the weights out anew, and the weights alone.

#include <benchmark/benchmark.h>

#include <vector>

#include "greycard/skin_color_helper.h"
#include "skin_weights.h"

namespace greycard::bench {
namespace {

// A camera with a chart that fades from white to black, slightly warmer under each light.
SkinColorHelper camera() {
  std::vector<double> red, green, blue;
  for (int i = 0; i < kPatchCount; ++i) {
    green.push_back(0.9 - 0.035 * i);
    red.push_back(green.back() * (0.5 + 0.01 * (i * 7 % 24)));
    blue.push_back(green.back() * (0.9 - 0.02 * (i * 5 % 24)));
  }
  std::vector<std::int32_t> gamma;
  for (int i = 0; i < SkinColorHelper::kGammaEntries; ++i) gamma.push_back(i * (511 - i));
  SkinColorHelper helper;
  helper.SetMCCRGBValues_D65(red, green, blue);
  helper.SetMCCRGBValues_A(green, red, blue);
  helper.SetMCCRGBValues_T84(red, blue, green);
  helper.SetCCMValues_T84({{{1.6, -0.4, -0.2}, {-0.3, 1.5, -0.2}, {0.0, -0.5, 1.5}}});
  helper.SetGammaTable(gamma, 16);
  return helper;
}

void BM_SkinCalibration(benchmark::State& state) {
  SkinColorHelper helper = camera();
  helper.Calibrate();  // the weights
  for (auto _ : state) helper.Calibrate();
}
BENCHMARK(BM_SkinCalibration)->Unit(benchmark::kMillisecond);

void BM_SkinCalibrationWithNewWeights(benchmark::State& state) {
  SkinColorHelper helper = camera();
  for (auto _ : state) {
    benchmark::DoNotOptimize(computeSkinWeights().data());
    helper.Calibrate();
  }
}
BENCHMARK(BM_SkinCalibrationWithNewWeights)->Unit(benchmark::kMillisecond);

void BM_SkinWeights(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(computeSkinWeights().data());
}
BENCHMARK(BM_SkinWeights)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace greycard::bench
