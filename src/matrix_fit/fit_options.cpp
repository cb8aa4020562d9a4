#include "greycard/fit_options.h"

#include <stdexcept>

#include "color_calc.h"

namespace greycard {

std::array<double, kPatchCount> patchWeights(PatchWeightPreset preset) {
  std::array<double, kPatchCount> weights;
  weights.fill(1.0);
  const auto set = [&weights](std::initializer_list<std::size_t> rows, double weight) {
    for (const std::size_t row : rows) weights[row] = weight;
  };
  if (preset == PatchWeightPreset::neutrals) set({18, 19, 20, 21, 22, 23}, 4.0);
  if (preset == PatchWeightPreset::skin) set({0, 1}, 6.0);
  if (preset == PatchWeightPreset::foliageAndSky) {
    set({2, 3}, 6.0);
    set({10, 12, 13}, 3.0);
  }
  return weights;
}

std::optional<PatchWeightPreset> patchWeightPresetFromName(std::string_view name) {
  if (name == "even") return PatchWeightPreset::even;
  if (name == "neutrals") return PatchWeightPreset::neutrals;
  if (name == "skin") return PatchWeightPreset::skin;
  if (name == "foliage-sky") return PatchWeightPreset::foliageAndSky;
  return std::nullopt;
}

void FitOptions::follow(const ColorCorrectionSettings& settings,
                        const std::array<std::vector<std::int32_t>, 3>& gamma) {
  constexpr std::int32_t kWideGamut = 2;
  if (settings.m_RGBtoXYZTransform == kWideGamut)
    throw std::invalid_argument(
        "the best fit knows no transform 2 (to BT.2020 primaries); choose 0, 1 or 3");
  rgbToXyz = ColorCalc(settings.m_illum, settings.m_RGBtoXYZTransform, settings.m_CustRGB2XYZ,
                       settings.m_CustXYZ2sRGB)
                 .rgbToXyz();
  const ColorCorrectionAdvancedSettings& advanced = settings.m_advanced;
  const bool uses[] = {advanced.m_bWhitePatch19, advanced.m_bWhitePatch20, advanced.m_bWhitePatch21,
                       advanced.m_bWhitePatch22};
  whitePatches.clear();
  for (int i = 0; i < 4; ++i)
    if (uses[i]) whitePatches.push_back(18 + i);
  cameraGamma = gamma;
  statedSettings = settings;
}

FitPhotograph::FitPhotograph(const MacbethChartData& chart, const SamplingReport& report)
    : rgb(chart.m_RGB), noise(chart.m_Noise), pixels(report.pixels) {
  for (const int patch : report.clippedPatches()) clipped[static_cast<std::size_t>(patch)] = true;
}

}  // namespace greycard
