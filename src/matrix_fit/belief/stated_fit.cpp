#include "belief/stated_fit.h"

#include <algorithm>
#include <cmath>
#include <exception>

#include "belief/fit_figures.h"
#include "greycard/color_correction_utils.h"
#include "matrix_functions.h"
#include "srgb_transfer.h"
#include "table_conversion.h"

namespace greycard {
namespace {

std::vector<std::int32_t> sRgbTable() {
  std::vector<std::int32_t> table(kGammaPoints);
  for (std::size_t i = 0; i < kGammaPoints; ++i)
    table[i] = static_cast<std::int32_t>(
        std::lround(62.4 * 255.0 * sRGBEncode(static_cast<double>(i) / (kGammaPoints - 1.0))));
  return table;
}

ColorCorrectionSettings defaultSettings(const FitOptions& options) {
  constexpr std::int32_t kCustomSpace = 3;
  ColorCorrectionSettings settings(0, illum_D65, kCustomSpace);
  settings.m_CustRGB2XYZ = options.rgbToXyz;
  settings.m_CustXYZ2sRGB = toMatrix3(minv(toMatrix(options.rgbToXyz)));
  const auto uses = [&options](int patch) {
    return std::find(options.whitePatches.begin(), options.whitePatches.end(), patch) !=
           options.whitePatches.end();
  };
  ColorCorrectionAdvancedSettings& advanced = settings.m_advanced;
  advanced.m_bWhitePatch19 = uses(18);
  advanced.m_bWhitePatch20 = uses(19);
  advanced.m_bWhitePatch21 = uses(20);
  advanced.m_bWhitePatch22 = uses(21);
  return settings;
}

ColorCorrectionSettings settingsOf(const FitContext& context, const FitPhotograph& photograph) {
  ColorCorrectionSettings settings =
      context.options.statedSettings.value_or(defaultSettings(context.options));
  settings.m_macbethData.m_RGB = photograph.rgb;
  settings.m_macbethData.m_Noise = photograph.noise;
  settings.m_macbethData.m_RefLab = context.input.referenceLab;
  return settings;
}

}  // namespace

StatedFit statedFit(const FitContext& context, std::size_t photograph) {
  const FitPhotograph& measured = context.input.photographs[photograph];
  ColorCorrectionUtils facade;
  if (context.options.cameraGamma[0].empty()) {
    const std::vector<std::int32_t> table = sRgbTable();
    facade.SetGammaTable(table, table, table);
  } else {
    const auto& tables = context.options.cameraGamma;
    facade.SetGammaTable(tables[0], tables[1], tables[2]);
  }
  StatedFit result;
  try {
    facade.Optimize(settingsOf(context, measured), 0);
  } catch (const std::exception& error) {
    result.refusal = error.what();
    return result;
  }
  ShownPhotograph shown{photograph, facade.m_macbethLab, {}};
  for (std::size_t i = 0; i < kPatchCount; ++i)
    shown.counts[i] = !measured.clipped[i] && context.weightOf(photograph, i) > 0.0;
  result.figures = figuresOf(context, {&shown, 1});
  return result;
}

}  // namespace greycard
