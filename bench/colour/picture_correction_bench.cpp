// A whole photograph through gains, matrix and tone curve, beside the same written down plainly.

#include "greycard/picture_correction.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace greycard {
namespace {

constexpr Vector3 kGains{1.9, 1.0, 1.4};
constexpr Matrix3 kMatrix{{{1.6, -0.4, -0.2}, {-0.3, 1.5, -0.2}, {0.0, -0.6, 1.6}}};

// Every code turns up, and neighbours differ, so no branch is learnt by heart.
Picture variedPicture(benchmark::State& state, int bits) {
  const int width = static_cast<int>(state.range(0));
  Picture picture(width, width * 3 / 4, 3, bits);
  std::uint32_t random = 1;
  for (auto& sample : picture.samples) {
    random = random * 1664525u + 1013904223u;
    sample =
        static_cast<std::uint16_t>((random >> 16) & static_cast<std::uint32_t>(picture.ceiling()));
  }
  return picture;
}

void finish(benchmark::State& state, const Picture& picture) {
  state.SetItemsProcessed(state.iterations() * picture.width * picture.height);
}

double decode(double v) {
  return v > 0.04045 ? std::pow((v + 0.055) / 1.055, 2.4) : v / 12.92;
}
double encode(double v) {
  return v > 0.0031308 ? 1.055 * std::pow(v, 1.0 / 2.4) - 0.055 : 12.92 * v;
}

// Baseline: the formulas for each pixel.
void BM_PlainCorrection(benchmark::State& state) {
  const auto picture = variedPicture(state, 8);
  for (auto _ : state) {
    Picture out(picture.width, picture.height, 3, 8);
    for (std::size_t i = 0; i < picture.samples.size(); i += 3) {
      double linear[3];
      for (std::size_t c = 0; c < 3; ++c)
        linear[c] = kGains[c] * decode(picture.samples[i + c] / 255.0);
      for (std::size_t c = 0; c < 3; ++c) {
        const double v =
            kMatrix[c][0] * linear[0] + kMatrix[c][1] * linear[1] + kMatrix[c][2] * linear[2];
        out.samples[i + c] =
            static_cast<std::uint16_t>(255.0 * encode(std::clamp(v, 0.0, 1.0)) + 0.5);
      }
    }
    benchmark::DoNotOptimize(out.samples.data());
  }
  finish(state, picture);
}
BENCHMARK(BM_PlainCorrection)->Arg(640)->Arg(2000)->Unit(benchmark::kMillisecond);

void BM_CorrectPicture(benchmark::State& state) {
  const auto picture = variedPicture(state, 8);
  const auto levels = SampleLevels::eightBit(SampleEncoding::sRGB);
  for (auto _ : state)
    benchmark::DoNotOptimize(correctPicture(picture, levels, kGains, kMatrix).samples.data());
  finish(state, picture);
}
BENCHMARK(BM_CorrectPicture)->Arg(640)->Arg(2000)->Unit(benchmark::kMillisecond);

void BM_CorrectPicture16Bit(benchmark::State& state) {
  const auto picture = variedPicture(state, 16);
  const auto levels = SampleLevels::sixteenBit(SampleEncoding::linear);
  for (auto _ : state)
    benchmark::DoNotOptimize(correctPicture(picture, levels, kGains, kMatrix).samples.data());
  finish(state, picture);
}
BENCHMARK(BM_CorrectPicture16Bit)->Arg(640)->Arg(2000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace greycard
