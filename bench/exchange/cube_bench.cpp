// A 3D LUT with the error that its comment states, beside the photograph of as many pixels through
// the same pipeline.

#include <benchmark/benchmark.h>

#include <cstdint>

#include "greycard/exchange/formats.h"

namespace {

using namespace greycard;

ChartFit knownFit() {
  ChartFit fit;
  fit.gamma = cameraGamma("VGammaSRGB");
  fit.matrix = {{{1.7, -0.6, -0.1}, {-0.2, 1.5, -0.3}, {0.0, -0.5, 1.5}}};
  fit.whiteBalance = {1.9, 1.0, 1.6};
  return fit;
}

void BM_Cube33(benchmark::State& state) {
  const exchange::FittedCamera camera{{exchange::fittedLight(knownFit())}};
  for (auto _ : state) benchmark::DoNotOptimize(exchange::exportAs("cube33", camera));
}

void BM_CorrectedPhotograph(benchmark::State& state) {
  const ChartFit fit = knownFit();
  Picture picture(33 * 33, 33, 3, 8);
  for (std::uint32_t i = 0; auto& sample : picture.samples)
    sample = static_cast<std::uint16_t>(i++ * 2654435761U >> 24);
  for (auto _ : state) benchmark::DoNotOptimize(correctedPhotograph(picture, fit));
}

BENCHMARK(BM_Cube33)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CorrectedPhotograph)->Unit(benchmark::kMillisecond);

}  // namespace
