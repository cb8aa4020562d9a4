// Baseline of GenerateCurve17: the natural cubic spline of the GNU Scientific Library.

#include <benchmark/benchmark.h>
#include <gsl/gsl_interp.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>

#include "seventeen_points.h"

namespace greycard::bench {
namespace {

void GslCubicSpline17(benchmark::State& state) {
  const auto points = seventeenPoints();
  const std::unique_ptr<gsl_interp, decltype(&gsl_interp_free)> spline(
      gsl_interp_alloc(gsl_interp_cspline, points.size()), gsl_interp_free);
  const std::unique_ptr<gsl_interp_accel, decltype(&gsl_interp_accel_free)> accel(
      gsl_interp_accel_alloc(), gsl_interp_accel_free);
  std::array<double, 17> x, y;
  std::array<std::int32_t, 1021> table;  // up to the last point: this library does not extrapolate
  for (auto _ : state) {
    for (std::size_t k = 0; k < points.size(); ++k) {
      x[k] = points[k].X * 4.0;
      y[k] = points[k].Y * 64.0;
    }
    gsl_interp_init(spline.get(), x.data(), y.data(), x.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
      const double v =
          gsl_interp_eval(spline.get(), x.data(), y.data(), static_cast<double>(i), accel.get());
      table[i] = std::min(16383, static_cast<std::int32_t>(v + 0.5));
    }
    benchmark::DoNotOptimize(table.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(GslCubicSpline17);

}  // namespace
}  // namespace greycard::bench
