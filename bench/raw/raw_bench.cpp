// A DNG of 24 megapixels: LibRaw's unpack alone, the reading that gives a picture, and the fit of
// the chart in it. Reading and fit together are to stay within 1.15 times unpack and fit.

#include <benchmark/benchmark.h>
#include <libraw/libraw.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "greycard/diagnostics.h"
#include "greycard/files.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/jobs/simulate.h"

namespace greycard {
namespace {

// Removed when the program ends.
struct Capture {
  std::filesystem::path file;
  explicit Capture(int bits)
      : file(std::filesystem::temp_directory_path() /
             ("greycard-bench-" + std::to_string(::getpid()) + "-" + std::to_string(bits) +
              ".dng")) {
    SimulationSettings settings;
    settings.width = 6000;
    settings.height = 4000;
    settings.rotationDeg = 4.0;
    settings.blackLevel = 512.0;
    writeWholeFile(file, dngOf(*simulateDng(settings, {BayerPattern::RGGB, bits})));
  }
  ~Capture() { std::filesystem::remove(file); }
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;
};

// Rendered once.
const Capture& captureOf(int bits) {
  static const Capture packed(14), words(16);
  return bits == 14 ? packed : words;
}

void unpackCapture(benchmark::State& state, int bits) {
  const Capture& capture = captureOf(bits);
  for (auto _ : state) {
    const auto raw = std::make_unique<LibRaw>();
    if (raw->open_file(capture.file.c_str()) != 0 || raw->unpack() != 0)
      state.SkipWithError("not unpacked");
    benchmark::DoNotOptimize(raw->imgdata.rawdata.raw_image);
  }
}
BENCHMARK_CAPTURE(unpackCapture, packed14, 14)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(unpackCapture, words16, 16)->Unit(benchmark::kMillisecond);

void readCapture(benchmark::State& state, int bits) {
  const Capture& capture = captureOf(bits);
  for (auto _ : state) benchmark::DoNotOptimize(readPhotograph(capture.file));
}
BENCHMARK_CAPTURE(readCapture, packed14, 14)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readCapture, words16, 16)->Unit(benchmark::kMillisecond);

void fitCapture(benchmark::State& state) {
  setErrorChannel({});
  const Photograph photograph = readPhotograph(captureOf(14).file);
  for (auto _ : state) benchmark::DoNotOptimize(fitChart(photograph));
}
BENCHMARK(fitCapture)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace greycard
