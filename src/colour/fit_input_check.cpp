#include "fit_input_check.h"

#include <cmath>
#include <stdexcept>
#include <string>

#include "gamma_stage.h"
#include "text.h"

namespace greycard {
namespace {

constexpr const char* kRgbNames[] = {"R", "G", "B"};
constexpr const char* kLabNames[] = {"L*", "a*", "b*"};

[[noreturn]] void refuse(const std::string& message) {
  throw std::invalid_argument(message);
}

void checkGamma(std::span<const std::int32_t> table, const char* channel) {
  const std::string name = std::string("gamma table ") + channel;
  if (table.empty()) refuse(name + " is not set: call SetGammaTable first");
  if (table.size() < kGammaPoints)
    refuse(name + " has " + std::to_string(table.size()) + " entries; 256 are needed");
  if (!(table[kGammaPoints - 1] > table[0]))
    refuse(name + " does not rise: it starts at " + std::to_string(table[0]) + " and ends at " +
           std::to_string(table[kGammaPoints - 1]));
}

void checkTable(const PatchTable& table, const char* what, const char* const (&names)[3]) {
  for (std::size_t i = 0; i < kPatchCount; ++i)
    for (std::size_t c = 0; c < 3; ++c)
      if (!std::isfinite(table[i][c]))
        refuse("patch " + std::to_string(i + 1) + ", channel " + names[c] + ": the " + what +
               " value is " + formatGeneral(table[i][c]) + ", not a finite number");
}

void checkFinite(double value, const char* setting) {
  if (!std::isfinite(value))
    refuse(std::string(setting) + " is " + formatGeneral(value) + ", not a finite number");
}

void checkSettings(const ColorCorrectionSettings& settings) {
  if (!(settings.m_fNoiseRate >= 0.0 && settings.m_fNoiseRate <= 1.0))
    refuse("m_fNoiseRate is " + formatGeneral(settings.m_fNoiseRate) + "; it must be 0 to 1");
  checkFinite(settings.m_fSaturation, "m_fSaturation");
  if (settings.m_exposure == FitExposure::free)
    refuse("m_exposure is free; that is for a MatrixFit, so choose stated, balanced or number");
  if (settings.m_exposure == FitExposure::number &&
      !(settings.m_exposureGain >= 1e-6 && settings.m_exposureGain <= 1e6))
    refuse("m_exposureGain is " + formatGeneral(settings.m_exposureGain) +
           "; it must be 1e-6 to 1e6");
  const ColorCorrectionAdvancedSettings& advanced = settings.m_advanced;
  checkFinite(advanced.m_fSat_all, "m_fSat_all");
  checkFinite(advanced.m_fSat_R, "m_fSat_R");
  checkFinite(advanced.m_fSat_G, "m_fSat_G");
  checkFinite(advanced.m_fSat_B, "m_fSat_B");
  checkFinite(advanced.m_fHue_R, "m_fHue_R");
  checkFinite(advanced.m_fHue_G, "m_fHue_G");
  checkFinite(advanced.m_fHue_B, "m_fHue_B");
}

// The white of the custom space divides in L*a*b*.
void checkTransform(const ColorCorrectionSettings& settings) {
  const std::int32_t type = settings.m_RGBtoXYZTransform;
  if (type < 0 || type > 3)
    refuse("m_RGBtoXYZTransform is " + std::to_string(type) + "; it must be 0, 1, 2 or 3");
  if (type != 3) return;
  for (std::size_t row = 0; row < 3; ++row) {
    double white = 0.0;
    for (std::size_t column = 0; column < 3; ++column) {
      checkFinite(settings.m_CustRGB2XYZ[row][column], "an entry of m_CustRGB2XYZ");
      checkFinite(settings.m_CustXYZ2sRGB[row][column], "an entry of m_CustXYZ2sRGB");
      white += settings.m_CustRGB2XYZ[row][column];
    }
    if (!(white > 0.0))
      refuse(std::string("m_CustRGB2XYZ gives white a ") + "XYZ"[row] + " of " +
             formatGeneral(white) + "; it must be above 0");
  }
}

// G is the numerator of the gains, but the smallest gain divides them all. A sum of R or B of
// exactly 0 stands for gains of 1.
void checkWhitePatches(const PatchTable& rgb, const std::vector<std::int32_t>& patches) {
  if (patches.empty()) return;
  std::string list = patches.size() == 1 ? "patch " : "patches ";
  for (const std::int32_t patch : patches)
    list += (patch == patches.front() ? "" : ", ") + std::to_string(patch + 1);
  for (std::size_t c = 0; c < 3; ++c) {
    double sum = 0.0;
    for (const std::int32_t patch : patches) sum += rgb[static_cast<std::size_t>(patch)][c];
    if (!(sum > 0.0) && !(c != 1 && sum == 0.0))
      refuse(list + ", channel " + kRgbNames[c] + ": the measured values sum to " +
             formatGeneral(sum) + "; white balance needs a sum above 0");
  }
}

}  // namespace

std::vector<std::int32_t> whitePatches(const ColorCorrectionAdvancedSettings& advanced) {
  std::vector<std::int32_t> patches;
  if (advanced.m_bWhitePatch19) patches.push_back(18);
  if (advanced.m_bWhitePatch20) patches.push_back(19);
  if (advanced.m_bWhitePatch21) patches.push_back(20);
  if (advanced.m_bWhitePatch22) patches.push_back(21);
  return patches;
}

void checkFitSettings(const ColorCorrectionSettings& settings) {
  checkSettings(settings);
  checkTransform(settings);
  checkTable(settings.m_macbethData.m_RefLab, "reference", kLabNames);
}

void checkFitInput(const ColorCorrectionSettings& settings, std::span<const std::int32_t> gammaR,
                   std::span<const std::int32_t> gammaG, std::span<const std::int32_t> gammaB) {
  checkGamma(gammaR, kRgbNames[0]);
  checkGamma(gammaG, kRgbNames[1]);
  checkGamma(gammaB, kRgbNames[2]);
  checkFitSettings(settings);
  const MacbethChartData& chart = settings.m_macbethData;
  checkTable(chart.m_RGB, "measured", kRgbNames);
  checkTable(chart.m_Noise, "noise", kRgbNames);
  checkWhitePatches(chart.m_RGB, whitePatches(settings.m_advanced));
}

}  // namespace greycard
