// Curve fitting and sampling, the drag of a control point, and the catalogue.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <numeric>

#include "greycard/gamma_curve_model.h"
#include "interpolator.h"
#include "seventeen_points.h"
#include "spline.h"

namespace greycard::bench {
namespace {

void GenerateCurve17(benchmark::State& state) {
  const auto points = seventeenPoints();
  Interpolator interpolator(16383);
  std::array<std::int32_t, kCurveEntries> table;
  for (auto _ : state) {
    interpolator.GenerateCurve(points, 4, 64, table);
    benchmark::DoNotOptimize(table.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(GenerateCurve17);

// The baseline without a walk along the segments: one bisection per sample.
void SplintPerSample17(benchmark::State& state) {
  const auto points = seventeenPoints();
  std::array<double, 17> x, y, y2;
  std::array<std::int32_t, kCurveEntries> table;
  for (auto _ : state) {
    for (std::size_t k = 0; k < points.size(); ++k) {
      x[k] = points[k].X * 4.0;
      y[k] = points[k].Y * 64.0;
    }
    spline(x, y, kNaturalEnd, kNaturalEnd, y2);
    for (std::size_t i = 0; i < table.size(); ++i)
      table[i] = static_cast<std::int32_t>(splint(x, y, y2, static_cast<double>(i)) + 0.5);
    benchmark::DoNotOptimize(table.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(SplintPerSample17);

// What an editor does when a point is dragged: points from the table, then the table from the
// points.
void DragOfAPoint(benchmark::State& state) {
  GammaCurveModel model(true);
  const GammaCurvePtr curve = model.AddGammaCurve("edited", "VNormal");
  for (auto _ : state) {
    curve->GenerateControlPoints(ColorChannel::All);
    curve->CalculateCurve();
    benchmark::DoNotOptimize(curve->Data()->data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(DragOfAPoint);

void MakeGammaTable256(benchmark::State& state) {
  const GammaCurveModel model(false);
  std::array<std::int32_t, 256> source, eightBit;
  std::iota(eightBit.begin(), eightBit.end(), 0);
  std::array<std::int32_t, kCurveEntries> table;
  for (auto _ : state) {
    source = eightBit;  // converted in place
    model.MakeGammaTable(source, table);
    benchmark::DoNotOptimize(table.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(MakeGammaTable256);

void ModelWithBuiltinCurves(benchmark::State& state) {
  for (auto _ : state) {
    const GammaCurveModel model(true);
    benchmark::DoNotOptimize(&model);
  }
}
BENCHMARK(ModelWithBuiltinCurves);

}  // namespace
}  // namespace greycard::bench
