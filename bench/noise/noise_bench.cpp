// The separable filter beside OpenCV's on the same kernel, and the noise table beside a copy of the
// plane. `planes` is the memory that a call adds at its peak, in float planes of the picture; the
// first call of a process is measured, later ones find the peak there already.

#include <benchmark/benchmark.h>

#include <cstring>
#include <fstream>
#include <opencv2/imgproc.hpp>
#include <random>
#include <string>

#include "greycard/sigma_lut.h"
#include "ip_filter_1d.h"
#include "ip_filter_sep.h"

namespace greycard::bench {
namespace {

constexpr int kWidth = 4000, kHeight = 3000;
constexpr std::int64_t kPixels = std::int64_t{kWidth} * kHeight;

std::vector<std::uint16_t> noisePlane() {
  std::mt19937 random(1);
  std::vector<std::uint16_t> plane(kPixels);
  for (auto& sample : plane) sample = static_cast<std::uint16_t>(120 + random() % 16);
  return plane;
}

struct FilterCase {
  pxcore::TImage<float> in{kWidth, kHeight}, out{kWidth, kHeight};
  pxcore::IpFilter1D kernel;

  explicit FilterCase(const benchmark::State& state) {
    kernel.CosineKernel(static_cast<std::uint64_t>(state.range(0)));
    std::mt19937 random(1);
    for (std::uint64_t y = 0; y < in.Height(); ++y)
      for (std::uint64_t x = 0; x < in.Width(); ++x) {
        in.RowPtr(y)[x] = static_cast<float>(random() % 256);
        out.RowPtr(y)[x] = 0.0F;
      }
  }
};

void FilterImage(benchmark::State& state) {
  FilterCase filter(state);
  const pxcore::IpFilterSep separable(filter.kernel.Kernel());
  for (auto _ : state) {
    separable.FilterImage(filter.in, filter.out);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kPixels);
}

void OpenCvSepFilter2D(benchmark::State& state) {
  cv::setNumThreads(1);
  FilterCase filter(state);
  const cv::Mat in(kHeight, kWidth, CV_32F, filter.in.RowPtr(0), filter.in.Stride());
  cv::Mat out(kHeight, kWidth, CV_32F, filter.out.RowPtr(0), filter.out.Stride());
  cv::Mat kernel(static_cast<int>(filter.kernel.Kernel().Length()), 1, CV_32F);
  for (int i = 0; i < kernel.rows; ++i)
    kernel.at<float>(i) = filter.kernel.Kernel()[static_cast<std::size_t>(i)];
  for (auto _ : state) {
    cv::sepFilter2D(in, out, CV_32F, kernel, kernel, {-1, -1}, 0, cv::BORDER_REFLECT);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kPixels);
}

// Peak of the process's memory in bytes; 0 where the system does not tell.
double peakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with("VmHWM:")) return 1024.0 * std::stod(line.substr(6));
  return 0.0;
}

void CalculateSigmaLut(benchmark::State& state) {
  const auto plane = noisePlane();
  SigmaLUT sigma;
  const double before = peakMemory();
  for (auto _ : state) benchmark::DoNotOptimize(sigma.CalculateSigmaLUT(kWidth, kHeight, plane));
  static const double added = peakMemory() - before;
  state.SetItemsProcessed(state.iterations() * kPixels);
  state.counters["planes"] = added / (sizeof(float) * kPixels);
}

void CopyPlane(benchmark::State& state) {
  const auto plane = noisePlane();
  auto copy = plane;
  for (auto _ : state) {
    std::memcpy(copy.data(), plane.data(), plane.size() * sizeof(plane[0]));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kPixels);
}

// First, so that nothing else has raised the peak yet.
BENCHMARK(CalculateSigmaLut)->Unit(benchmark::kMillisecond);
BENCHMARK(CopyPlane)->Unit(benchmark::kMillisecond);
BENCHMARK(FilterImage)->ArgName("taps")->Arg(25)->Arg(205)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenCvSepFilter2D)->ArgName("taps")->Arg(25)->Arg(205)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace greycard::bench
