#include "builtin_curves.h"

#include <cmath>

namespace greycard {
namespace {

constexpr TunedCurve DEF_GAMMA_NORMAL{
    {0, 32, 64, 96, 161, 193}, 12159, {16335, 16351, 16383}, 40.0, 14.0};
constexpr TunedCurve DEF_GAMMA_LOWLIGHT{
    {0, 96, 161, 289, 353, 450}, 12111, {16335, 16351, 16383}, 90.0, 14.0};
constexpr TunedCurve DEF_GAMMA_OUTDOOR{
    {128, 193, 289, 385, 482, 578}, 12335, {16335, 16351, 16383}, 92.0, 14.0};
constexpr TunedCurve DEF_GAMMA_OUTDOOR_HIGH_CONTRAST{
    {0, 32, 96, 128, 193, 225}, 12303, {16335, 16351, 16383}, 48.0, 14.0};
constexpr TunedCurve DEF_GAMMA_OUTDOOR_MORE_DETAIL{
    {0, 64, 161, 225, 321, 385}, 12785, {16335, 16351, 16383}, 78.0, 14.0};
constexpr TunedCurve DEF_GAMMA_BACKLIGHT{
    {0, 225, 450, 707, 932, 1189}, 9926, {16319, 16351, 16383}, 236.0, 28.0};
constexpr TunedCurve DEF_GAMMA_OUTDOOR_MEDIUM_DETAIL{
    {0, 96, 225, 289, 418, 482}, 12625, {16335, 16351, 16383}, 95.0, 14.0};
constexpr TunedCurve DEF_GAMMA_NEXUS5{
    {128, 217, 305, 394, 482, 570}, 13492, {16359, 16367, 16375}, 88.0, 8.0};
constexpr TunedCurve DEF_GAMMA_HDR{
    {0, 497, 691, 840, 983, 1096}, 12058, {16338, 16353, 16368}, 115.0, 15.0};

// IEC 61966-2-1, encoding of linear values 0..1.
double srgbEncoded(double linear) {
  return linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1.0 / 2.4) - 0.055;
}

BuiltinTable srgbTable() {
  BuiltinTable table;
  for (std::size_t i = 0; i < table.size(); ++i)
    table[i] = static_cast<std::int32_t>(
        std::lround(16383.0 * srgbEncoded(static_cast<double>(i) / (kBuiltinEntries - 1))));
  return table;
}

struct Tables {
  BuiltinTable normal = tunedTable(DEF_GAMMA_NORMAL);
  BuiltinTable lowlight = tunedTable(DEF_GAMMA_LOWLIGHT);
  BuiltinTable outdoor = tunedTable(DEF_GAMMA_OUTDOOR);
  BuiltinTable outdoorHighContrast = tunedTable(DEF_GAMMA_OUTDOOR_HIGH_CONTRAST);
  BuiltinTable outdoorMoreDetail = tunedTable(DEF_GAMMA_OUTDOOR_MORE_DETAIL);
  BuiltinTable backlight = tunedTable(DEF_GAMMA_BACKLIGHT);
  BuiltinTable outdoorMediumDetail = tunedTable(DEF_GAMMA_OUTDOOR_MEDIUM_DETAIL);
  BuiltinTable srgb = srgbTable();
  BuiltinTable nexus5 = tunedTable(DEF_GAMMA_NEXUS5);
  BuiltinTable hdr = tunedTable(DEF_GAMMA_HDR);
};

}  // namespace

const std::array<BuiltinCurve, 11>& builtinCurves() {
  static const Tables tables;
  static const std::array<BuiltinCurve, 11> curves{{
      {"VNormal", tables.normal},
      {"VLowlight", tables.lowlight},
      {"VOutdoor", tables.outdoor},
      {"VOutdoorHighContrast", tables.outdoorHighContrast},
      {"VOutdoorDetail", tables.outdoorMoreDetail},
      {"VBacklight", tables.backlight},
      {"VNormalMediumDetail", tables.outdoorMoreDetail},  // two names, one table (deliberate)
      {"VOutdoorMediumDetail", tables.outdoorMediumDetail},
      {"VGammaSRGB", tables.srgb},
      {"VNexus5", tables.nexus5},
      {"VHDR", tables.hdr},
  }};
  return curves;
}

}  // namespace greycard
