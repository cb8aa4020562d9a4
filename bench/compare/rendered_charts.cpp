#include "rendered_charts.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>

#include "greycard/chart_simulator.h"
#include "greycard/picture.h"
#include "srgb_transfer.h"

namespace greycard::compare {
namespace {

constexpr int kLeastPatches = 16;

PatchRegions squares(const std::array<Point2, kPatchCount>& centres, double side) {
  PatchRegions regions;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    regions[i] = {centres[i].x - side / 2, centres[i].y - side / 2, side, side};
  return regions;
}

bool hasEnough(const ComparedChart& chart) {
  const auto& clipped = chart.photograph.clipped;
  return std::count(clipped.begin(), clipped.end(), false) >= kLeastPatches;
}

ComparedChart sampled(std::string name, const Picture& picture, const PatchRegions& regions,
                      Illum light) {
  MacbethChartData chart;
  chart.LoadMCCCIELAB(light);
  const SamplingReport report =
      chart.CollectRGBData(picture, regions, SampleLevels::eightBit(SampleEncoding::sRGB));
  return {std::move(name), FitPhotograph(chart, report), chart.m_RefLab};
}

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  double between(double lo, double hi) {
    return lo + (hi - lo) * static_cast<double>(engine_() >> 11) * 0x1.0p-53;
  }

 private:
  std::mt19937_64 engine_;
};

/// Light, 0..1, to encoded value.
struct Rendering {
  double exponent = 1.0, step = 0.0, toe = 0.0;

  double operator()(double light) const {
    const double encoded = sRGBEncode(std::pow(std::clamp(light, 0.0, 1.0), exponent));
    const double smooth = encoded * encoded * (3.0 - 2.0 * encoded);
    return toe + (1.0 - toe) * ((1.0 - step) * encoded + step * smooth);
  }
};

Rendering renderingOf(int kind, Random& random) {
  if (kind == 0) return {};
  if (kind == 1) return {.exponent = random.between(0.6, 1.5)};
  return {.exponent = random.between(0.8, 1.2),
          .step = random.between(0.1, 0.6),
          .toe = random.between(-0.02, 0.04)};
}

// Balanced on the second grey patch, which comes out at a light of `grey`.
Picture rendered(const Picture& raw, const Vector3& rawGrey, double grey,
                 const Rendering& rendering) {
  Picture picture(raw.width, raw.height, 3, 8);
  for (std::size_t i = 0; i < raw.samples.size(); ++i) {
    const double light = raw.samples[i] / 65535.0 * grey / rawGrey[i % 3];
    picture.samples[i] =
        static_cast<std::uint16_t>(std::lround(255.0 * std::clamp(rendering(light), 0.0, 1.0)));
  }
  return picture;
}

}  // namespace

std::vector<ComparedChart> photographs(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> truths;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    if (entry.path().extension() == ".json") truths.push_back(entry.path());
  std::sort(truths.begin(), truths.end());
  std::vector<ComparedChart> charts;
  for (const auto& path : truths) {
    const auto truth = nlohmann::json::parse(std::ifstream(path));
    if (truth.value("composite", false)) continue;
    std::array<Point2, kPatchCount> centres;
    for (std::size_t i = 0; i < kPatchCount; ++i)
      centres[i] = {truth["centres"][i][0].get<double>(), truth["centres"][i][1].get<double>()};
    charts.push_back(sampled(path.stem().string(),
                             readPicture(folder / truth["file"].get<std::string>()),
                             squares(centres, 0.5 * truth["patch_px"].get<double>()), illum_D65));
    if (!hasEnough(charts.back())) charts.pop_back();
  }
  return charts;
}

std::vector<ComparedChart> simulated(int count, std::uint64_t seed) {
  constexpr ModelSensor kSensors[] = {ModelSensor::Ordinary, ModelSensor::Narrow,
                                      ModelSensor::Broad};
  constexpr Illum kLights[] = {illum_A,   illum_D65,     illum_TL84,
                               illum_D50, illum_Horizon, illum_CoolWhite};
  Random random(seed);
  std::vector<ComparedChart> charts;
  for (int k = 0; static_cast<int>(charts.size()) < count; ++k) {
    ChartSimulator simulator;
    SimulationSettings& settings = simulator.m_settings;
    settings.sensor = kSensors[k % 3];
    settings.light = kLights[k / 3 % 6];
    settings.width = 256;
    settings.height = 192;
    settings.sizeShare = 0.95;
    settings.bits = 16;
    settings.encoding = SampleEncoding::linear;
    settings.whiteShare = random.between(0.3, 0.9);
    settings.shotNoise = random.between(0.002, 0.03);
    settings.readNoise = random.between(0.0, 0.003);
    settings.vignetting = random.between(0.0, 0.05);
    settings.seed = seed + static_cast<std::uint64_t>(k);
    simulator.Simulate();
    const Picture picture = rendered(simulator.m_picture, simulator.m_truth.rgb[19],
                                     random.between(0.35, 0.6), renderingOf(k / 18 % 3, random));
    charts.push_back(sampled("simulated " + std::to_string(k), picture,
                             squares(simulator.m_truth.centres, 0.5 * simulator.m_truth.patchSide),
                             settings.light));
    if (!hasEnough(charts.back())) charts.pop_back();
  }
  return charts;
}

}  // namespace greycard::compare
