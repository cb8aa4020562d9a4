#include "greycard/jobs/simulate.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

#include "greycard/raw/write_dng.h"

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
                        std::move(simulator.m_picture), std::nullopt};
}

std::optional<SimulatedChart> simulateDng(SimulationSettings settings, const DngForm& form,
                                          const std::filesystem::path& file,
                                          const ProgressCallback& progress) {
  if (form.bits != 10 && form.bits != 12 && form.bits != 14 && form.bits != 16)
    throw std::invalid_argument("a DNG has 10, 12, 14 or 16 bits, not " +
                                std::to_string(form.bits));
  if (form.bayer && (settings.width % 2 != 0 || settings.height % 2 != 0))
    throw std::invalid_argument("a mosaic of 2x2 cells needs an even width and height");
  const double most = (1 << form.bits) - 1;
  if (settings.whiteLevel == 0.0) settings.whiteLevel = most;
  if (settings.whiteLevel > most)
    throw std::invalid_argument("the white level must be at most " +
                                std::to_string((1 << form.bits) - 1) + " in " +
                                std::to_string(form.bits) + " bits");
  settings.bits = 16;
  settings.encoding = SampleEncoding::linear;
  auto chart = simulateChart(settings, file, progress);
  if (chart) chart->dng = form;
  return chart;
}

std::string dngOf(const SimulatedChart& chart) {
  if (!chart.dng) throw std::invalid_argument("the photograph was not simulated for a DNG");
  DngDescription description;
  description.pattern = chart.dng->bayer;
  description.bits = chart.dng->bits;
  description.blackLevels.fill(static_cast<int>(std::lround(chart.settings.blackLevel)));
  description.whiteLevel = static_cast<int>(std::lround(chart.whiteLevel()));
  description.light = chart.settings.light;
  description.white = chart.truth.whiteRgb;
  return encodeDng(chart.dng->bayer ? mosaicOf(chart.picture, *chart.dng->bayer) : chart.picture,
                   description);
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
