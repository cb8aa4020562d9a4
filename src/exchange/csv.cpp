// CSV (RFC 4180): patches of a chart, curves, hue/saturation tables, noise tables.

#include "greycard/macbeth_chart_data.h"
#include "greycard/number_text.h"
#include "writers.h"

namespace greycard::exchange {
namespace {

std::string row(const Vector3& values) {
  return "," + exact(values[0]) + "," + exact(values[1]) + "," + exact(values[2]);
}

std::string csvOf(const FittedCamera& camera) {
  std::string text =
      "light,patch,name,measured_r,measured_g,measured_b,balanced_r,balanced_g,balanced_b,"
      "corrected_l,corrected_a,corrected_b,reference_l,reference_a,reference_b,"
      "de76,de94,de00\r\n";
  for (const auto& [fit, kelvin] : camera.lights)
    for (std::size_t i = 0; i < kPatchCount; ++i)
      text +=
          std::string(illumName(fit.light)) + "," + std::to_string(i + 1) + "," +
          patchName(static_cast<int>(i)) + row(fit.measuredRgb[i]) + row(fit.fit.m_balancedRGB[i]) +
          row(fit.correctedLab[i]) + row(fit.fit.m_targetLab[i]) +
          row({fit.after.cie76.patch[i], fit.after.cie94.patch[i], fit.after.ciede2000.patch[i]}) +
          "\r\n";
  return text;
}

std::string csvOf(const CurveTables& curve) {
  const auto& channels = curve.channels;
  std::string text = curve.unified ? "index,code\r\n" : "index,red,green,blue\r\n";
  for (std::size_t i = 0; i < channels[0].table.size(); ++i) {
    text += std::to_string(i);
    for (std::size_t c = 0; c < (curve.unified ? 1 : 3); ++c)
      text += "," + (i < channels[c].table.size() ? std::to_string(channels[c].table[i]) : "");
    text += "\r\n";
  }
  return text;
}

std::string csvOf(const Lut2DConfig& table) {
  std::string text = "row,column,hue_deg,saturation,hue_change_deg,saturation_change\r\n";
  for (std::size_t node = 0; node < kLut2dNodes; ++node) {
    const std::size_t r = node / kLut2dSatColumns, c = node % kLut2dSatColumns;
    text += std::to_string(r) + "," + std::to_string(c) + "," + exact(table.lut_1d_h[r]) + "," +
            exact(table.lut_1d_s[c]) + "," + exact(table.lut_2d_h[node]) + "," +
            exact(table.lut_2d_s[node]) + "\r\n";
  }
  return text;
}

std::string csvOf(const SigmaEstimate& noise) {
  std::string text = "ring,factor\r\n";
  for (std::size_t i = 0; i < kSigmaEntries; ++i)
    text += std::to_string(i) + "," + exact(noise.lut[i]) + "\r\n";
  return text;
}

}  // namespace

Exported writeCsv(const Material& material, const ExportOptions&) {
  return {std::visit([](const auto& value) { return csvOf(value); }, material), {}};
}

}  // namespace greycard::exchange
