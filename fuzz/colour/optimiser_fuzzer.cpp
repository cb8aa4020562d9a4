// A chart and settings of any values: they may be refused by an exception that says why, but the
// fit must end, and what it leaves must be finite.

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <stdexcept>
#include <vector>

#include "colour_space.h"
#include "greycard/color_correction_utils.h"
#include "greycard/diagnostics.h"
#include "greycard/errors.h"

namespace {

using namespace greycard;

constexpr std::size_t kRecord = 1 + sizeof(double);
constexpr int kMostRuns = 20;  // of a saturation search, which is cancelled then

// A chart that can be fitted, so that a few changed values reach all of the code.
ColorCorrectionSettings plainChart() {
  ColorCorrectionSettings settings(0, illum_D65, 0);
  MacbethChartData& chart = settings.m_macbethData;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    Vector3 xyz = CIELab_to_XYZ(chart.m_RefLab[i]);
    for (double& value : xyz) value *= 0.005;
    const Vector3 rgb = multiply(kXyzToSRgb, xyz);
    chart.m_RGB[i] = {0.5 * rgb[0] + 0.1 * rgb[1], 0.2 * rgb[0] + 0.7 * rgb[1],
                      0.1 * rgb[1] + 0.6 * rgb[2]};
    chart.m_Noise[i] = {0.01, 0.01, 0.01};
  }
  return settings;
}

// A record is a byte that says which number, and the number.
void change(ColorCorrectionSettings& settings, std::vector<std::int32_t>& gamma, std::uint8_t which,
            double value) {
  MacbethChartData& chart = settings.m_macbethData;
  PatchTable* const tables[] = {&chart.m_RGB, &chart.m_Noise, &chart.m_RefLab};
  if (which < 216) {
    (*tables[which / 72])[which % 72 / 3][which % 3] = value;
    return;
  }
  ColorCorrectionAdvancedSettings& advanced = settings.m_advanced;
  double* const numbers[] = {&settings.m_fNoiseRate, &settings.m_fSaturation, &advanced.m_fSat_all,
                             &advanced.m_fSat_R,     &advanced.m_fSat_G,      &advanced.m_fSat_B,
                             &advanced.m_fHue_R,     &advanced.m_fHue_G,      &advanced.m_fHue_B};
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  const auto word = static_cast<std::int32_t>(bits & 0xffffffffU);
  const std::size_t index = which - 216U;
  if (index < 9)
    *numbers[index] = value;
  else if (index < 18)
    settings.m_CustRGB2XYZ[(index - 9) / 3][(index - 9) % 3] = value;
  else if (index < 27)
    settings.m_CustXYZ2sRGB[(index - 18) / 3][(index - 18) % 3] = value;
  else if (index == 27)
    settings.m_RGBtoXYZTransform = word % 8;
  else if (index == 28)
    settings.m_nDeltaEMode = word % 2;
  else if (index == 29)
    settings.m_illum = static_cast<Illum>(word % 16);
  else if (index == 30)
    advanced.m_bWhitePatch19 = advanced.m_bWhitePatch21 = word % 2 != 0;
  else
    gamma[static_cast<std::uint8_t>(word)] = word >> 8;
}

bool finite(std::span<const Vector3> rows) {
  for (const Vector3& row : rows)
    for (const double value : row)
      if (!std::isfinite(value)) return false;
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  setErrorChannel({});
  static const ColorCorrectionSettings plain = plainChart();
  ColorCorrectionSettings settings = plain;
  std::vector<std::int32_t> gamma(256);
  for (std::size_t i = 0; i < gamma.size(); ++i)
    gamma[i] = static_cast<std::int32_t>(16383.0 * std::sqrt(static_cast<double>(i) / 255.0));
  for (; size >= kRecord; data += kRecord, size -= kRecord) {
    double value = 0.0;
    std::memcpy(&value, data + 1, sizeof value);
    change(settings, gamma, *data, value);
  }

  ColorCorrectionUtils utils;
  utils.SetGammaTable(gamma, gamma, gamma);
  int runs = 0;
  try {
    if (utils.Optimize(settings, 0, [&runs](double) { return ++runs <= kMostRuns; }) &&
        !(finite(utils.m_ccm) && finite(utils.m_macbethLab) && std::isfinite(utils.m_gain)))
      std::abort();
  } catch (const std::invalid_argument&) {
  } catch (const NumericError&) {
  }
  return 0;
}
