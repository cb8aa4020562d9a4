#include "greycard/jobs/simulate.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace greycard {
namespace {

// A patch must cover more than this part of the picture to be found.
constexpr std::int64_t kPatchesPerPicture = 2400;

double meanPatchArea(const SimulationTruth& truth) {
  double doubled = 0.0;
  for (const auto& quad : truth.corners)
    for (std::size_t k = 0; k < 4; ++k)
      doubled += quad[k].x * quad[(k + 1) % 4].y - quad[k].y * quad[(k + 1) % 4].x;
  return 0.5 * std::abs(doubled) / kPatchCount;
}

}  // namespace

double SimulatedChart::patchAreaOverMinimum() const {
  const std::int64_t pixels = std::int64_t{settings.width} * settings.height;
  return meanPatchArea(truth) /
         static_cast<double>(std::max<std::int64_t>(1, pixels / kPatchesPerPicture));
}

double SimulatedChart::whiteLevel() const {
  if (settings.whiteLevel != 0.0) return settings.whiteLevel;
  return settings.bits == 8 ? 255.0 : 65535.0;
}

std::optional<SimulatedChart> simulateChart(const SimulationSettings& settings,
                                            const std::filesystem::path& file,
                                            const ProgressCallback& progress) {
  ChartSimulator simulator;
  simulator.m_settings = settings;
  if (!simulator.Simulate(progress)) return std::nullopt;
  return SimulatedChart{file.filename(), settings, simulator.m_truth,
                        std::move(simulator.m_picture)};
}

std::array<double, kSigmaEntries> SimulatedFlatField::noiseGains() const {
  FlatFieldSimulator simulator;
  simulator.m_settings = settings;
  std::array<double, kSigmaEntries> gains{};
  for (std::size_t i = 0; i < kSigmaEntries; ++i)
    gains[i] = simulator.gainAt(static_cast<double>(i) / kSigmaEntries);
  return gains;
}

std::optional<SimulatedFlatField> simulateFlatField(const FlatFieldSettings& settings,
                                                    const std::filesystem::path& file,
                                                    const ProgressCallback& progress) {
  FlatFieldSimulator simulator;
  simulator.m_settings = settings;
  if (!simulator.Simulate(progress)) return std::nullopt;
  return SimulatedFlatField{file.filename(), settings, std::move(simulator.m_picture)};
}

}  // namespace greycard
