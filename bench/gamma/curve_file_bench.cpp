// Curve files: three tables of 1024 values with points, read and written, beside a plain parse of
// the numbers and a copy of the bytes.

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdint>
#include <string>
#include <vector>

#include "greycard/curve_import.h"
#include "greycard/gamma_curve_model.h"
#include "seventeen_points.h"

namespace greycard::bench {
namespace {

GammaCurvePtr perChannelCurve(GammaCurveModel& model) {
  const GammaCurvePtr curve = model.AddGammaCurve("curve", 2.2, 16383);
  curve->SetIsUnified(false);
  const auto points = seventeenPoints();
  for (const ColorChannel c : {ColorChannel::Red, ColorChannel::Green, ColorChannel::Blue})
    curve->SetControlPoints(c, std::make_shared<ControlPointList>(points.begin(), points.end()));
  return curve;
}

std::string fileText() {
  GammaCurveModel model(false);
  return *perChannelCurve(model)->GetFileText(1024, 14);
}

void countBytes(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}

void ImportCurveFile(benchmark::State& state) {
  const std::string text = fileText();
  GammaCurveModel model(false);
  for (auto _ : state) {
    benchmark::DoNotOptimize(model.ImportText("curve", text).curve->Data()->data());
    model.DeleteGammaCurve("curve");
    model.CommitSession();
  }
  countBytes(state, text);
}
BENCHMARK(ImportCurveFile);

// As many rows of the other forms as a curve may have.
void ImportColumns(benchmark::State& state) {
  std::string text;
  for (int i = 0; i < 65536; ++i) text += std::to_string(i) + "," + std::to_string(i / 4) + "\n";
  for (auto _ : state) {
    GammaCurveModel model(false);
    benchmark::DoNotOptimize(importAnyCurve(model, "curve", text).curve->Data()->data());
  }
  countBytes(state, text);
}
BENCHMARK(ImportColumns)->Unit(benchmark::kMillisecond);

// The baseline: the numbers alone, without words, lines or a curve.
void ParseNumbersOnly(benchmark::State& state) {
  const std::string text = fileText();
  std::vector<std::int32_t> numbers;
  for (auto _ : state) {
    numbers.clear();
    for (const char *at = text.data(), *end = at + text.size(); at < end;) {
      std::int32_t value = 0;
      const auto [stop, error] = std::from_chars(at, end, value);
      if (error == std::errc{}) numbers.push_back(value);
      at = error == std::errc{} ? stop : at + 1;
    }
    benchmark::DoNotOptimize(numbers.data());
  }
  countBytes(state, text);
}
BENCHMARK(ParseNumbersOnly);

void WriteCurveText(benchmark::State& state) {
  GammaCurveModel model(false);
  const GammaCurvePtr curve = perChannelCurve(model);
  for (auto _ : state) benchmark::DoNotOptimize(curve->GetFileText(1024, 14));
  countBytes(state, fileText());
}
BENCHMARK(WriteCurveText);

}  // namespace
}  // namespace greycard::bench
