// The picture path beside a copy of the planes and beside its definition; what one call prepares;
// and the drag of a node.

#include <benchmark/benchmark.h>

#include <cstring>

#include "greycard/diagnostics.h"
#include "greycard/two_d_lut_helper.h"
#include "lut2d_process.h"
#include "lut2d_record.h"
#include "lut_fixtures.h"
#include "packed_nodes.h"
#include "reference_image.h"

namespace greycard::bench {
namespace {

enum Scene { Smooth, Noise };

Planes planesOf(const benchmark::State& state) {
  const auto width = static_cast<std::size_t>(state.range(1));
  const auto height = static_cast<std::size_t>(state.range(2));
  return state.range(0) == Smooth ? smoothPlanes(width, height) : noisePlanes(1, width * height);
}

lut2d_cfg record() {
  lut2d_cfg record{};
  fillRecord(randomTable(1, 30.0, 0.3), record);
  return record;
}

// Both work in place on a fresh copy of the picture, whose time is not counted: after some passes
// noise would be noise no more.
template <typename Process>
void onFreshPlanes(benchmark::State& state, Process process) {
  const Planes planes = planesOf(state);
  const lut2d_cfg cfg = record();
  Planes work = planes;
  for (auto _ : state) {
    state.PauseTiming();
    work = planes;
    state.ResumeTiming();
    process(work, static_cast<std::uint16_t>(state.range(1)),
            static_cast<std::uint16_t>(state.range(2)), cfg);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(planes.r.size()));
}

void ProcessImage(benchmark::State& state) {
  onFreshPlanes(state, [](Planes& p, std::uint16_t w, std::uint16_t h, const lut2d_cfg& cfg) {
    processimage(p.r.data(), p.g.data(), p.b.data(), w, h, cfg);
  });
}

void ReferenceImage(benchmark::State& state) {
  onFreshPlanes(state, [](Planes& p, std::uint16_t w, std::uint16_t h, const lut2d_cfg& cfg) {
    reference::processimage(p.r.data(), p.g.data(), p.b.data(), w, h, cfg);
  });
}

void CopyPlanes(benchmark::State& state) {
  const Planes planes = planesOf(state);
  Planes copy = planes;
  for (auto _ : state) {
    std::memcpy(copy.r.data(), planes.r.data(), planes.r.size() * sizeof(std::uint16_t));
    std::memcpy(copy.g.data(), planes.g.data(), planes.g.size() * sizeof(std::uint16_t));
    std::memcpy(copy.b.data(), planes.b.data(), planes.b.size() * sizeof(std::uint16_t));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(planes.r.size()));
}

void scenes(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"noise", "width", "height"})->Unit(benchmark::kMicrosecond);
  for (const int scene : {Smooth, Noise})
    for (const auto& [width, height] : {std::pair{64, 64}, std::pair{4000, 3000}})
      bench->Args({scene, width, height});
}
BENCHMARK(CopyPlanes)->Apply(scenes);
BENCHMARK(ProcessImage)->Apply(scenes);
BENCHMARK(ReferenceImage)->Apply(scenes);

void BuildTables(benchmark::State& state) {
  const lut2d_cfg cfg = record();
  LutTables tables;
  PackedNodes nodes;
  for (auto _ : state) {
    buildTables(cfg, tables);
    benchmark::DoNotOptimize(nodes.build(tables));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BuildTables)->Unit(benchmark::kMicrosecond);

void AdjustWholeTable(benchmark::State& state) {
  std::vector<double> sat(kLut2dNodes, 0.5);
  std::vector<std::int32_t> hue(kLut2dNodes, 120);
  for (auto _ : state) {
    TwoDLutHelper::Adjust(0.5, 120, 0.01, -5.0, 15, 24, 8, 7, sat, hue, kLut2dHueRows,
                          kLut2dSatColumns, true);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(AdjustWholeTable)->Unit(benchmark::kMicrosecond);

void InverseTable(benchmark::State& state) {
  Lut2DConfig config = randomTable(1, 5.0, 0.02);
  config.inverse_flag = 1.0F;
  setOutputChannel({});  // the report is no part of the computation
  TwoDLutHelper helper;
  for (auto _ : state) {
    helper.SetConfig(config);
    benchmark::DoNotOptimize(helper.CalInverseLut2dCfg());
  }
}
BENCHMARK(InverseTable)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace greycard::bench
