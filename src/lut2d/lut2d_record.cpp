#include "lut2d_record.h"

#include <span>
#include <stdexcept>
#include <string>

#include "channels.h"
#include "text.h"

namespace greycard {
namespace {

constexpr float kSatUnits = 256.0F;  // of the record's saturations

struct Range {
  double low, high;
};
// Wide enough for any table that means something.
constexpr Range kHueRange{-720.0, 720.0}, kSatRange{-4.0, 4.0};
constexpr Range kHueChangeRange{-36000.0, 36000.0}, kSatChangeRange{-100.0, 100.0};
constexpr Range kShiftRange{0.0, 24.0}, kLightnessRange{-2.0, 2.0}, kBlendRange{-1.9, 1.9};
constexpr Range kFlagRange{-3.0e38, 3.0e38};

void checkValue(const std::string& name, double value, Range range) {
  // Not-a-number fails every comparison.
  if (value >= range.low && value <= range.high) return;
  throw std::invalid_argument(name + " is " + formatGeneral(value) + "; it must be a number from " +
                              formatGeneral(range.low) + " to " + formatGeneral(range.high));
}

void checkTable(const std::string& name, std::span<const double> table, Range range) {
  for (std::size_t i = 0; i < table.size(); ++i)
    if (!(table[i] >= range.low && table[i] <= range.high))
      checkValue(name + "[" + std::to_string(i) + "]", table[i], range);
}

// Rows of the source grid follow one another; after the last one it starts again.
void fillGrids(const Lut2DConfig& config, lut2d_cfg& record) {
  for (std::size_t i = 0; i <= kLut2dHueRows; ++i)
    for (std::size_t j = 0; j < kLut2dSatColumns; ++j) {
      const std::size_t entry = i % kLut2dHueRows * kLut2dSatColumns + j;
      Lut2dPair& node = record.node[i][j];
      Lut2dPair& delta = record.delta[i][j];
      node = {static_cast<float>(config.lut_1d_h[i]),
              static_cast<float>(config.lut_1d_s[j]) * kSatUnits};
      delta = {static_cast<float>(config.lut_2d_h[entry]),
               static_cast<float>(config.lut_2d_s[entry]) * kSatUnits};
      record.target[i][j] = {static_cast<float>(double{node.h} - double{delta.h}),
                             static_cast<float>(double{node.s} - double{delta.s})};
    }
}

void debugTable(const char* title, const Lut2dGrid& grid, float Lut2dPair::*component) {
  constexpr const char* kCategory = "Lut2D";
  writeDebug(0, kCategory, title);
  for (const auto& row : grid) {
    for (const Lut2dPair& pair : row)
      writeDebug(0, kCategory, " " + formatFixed(double{pair.*component}, 6) + ",");
    writeDebug(0, kCategory, "\n");
  }
}

}  // namespace

void checkConfig(const Lut2DConfig& config) {
  checkTable("lut_1d_h", config.lut_1d_h, kHueRange);
  checkTable("lut_1d_s", config.lut_1d_s, kSatRange);
  checkTable("lut_2d_h", config.lut_2d_h, kHueChangeRange);
  checkTable("lut_2d_s", config.lut_2d_s, kSatChangeRange);
  checkValue("h_shift", double{config.h_shift}, kShiftRange);
  checkValue("s_shift", double{config.s_shift}, kShiftRange);
  checkValue("l_boundary_start_a", double{config.l_boundary_start_a}, kLightnessRange);
  checkValue("l_boundary_start_b", double{config.l_boundary_start_b}, kLightnessRange);
  checkValue("l_boundary_end_a", double{config.l_boundary_end_a}, kLightnessRange);
  checkValue("l_boundary_end_b", double{config.l_boundary_end_b}, kLightnessRange);
  checkValue("y_blend_factor", double{config.y_blend_factor}, kBlendRange);
  checkValue("inverse_flag", double{config.inverse_flag}, kFlagRange);
}

void fillRecord(const Lut2DConfig& config, lut2d_cfg& record) {
  fillGrids(config, record);
  for (std::size_t i = 0; i <= kLut2dHueRows; ++i) {
    record.delta[i][0].s = 0.0F;  // greys have no saturation to change
    record.target[i][0].s = record.node[i][0].s;
  }
  for (std::size_t j = 0; j < kLut2dSatColumns; ++j)
    record.target[kLut2dHueRows][j] = {record.target[0][j].h + 360.0F, record.target[0][j].s};
  record.l_boundary_start_a = config.l_boundary_start_a;
  record.l_boundary_start_b = config.l_boundary_start_b;
  record.l_boundary_end_a = config.l_boundary_end_a;
  record.l_boundary_end_b = config.l_boundary_end_b;
  record.y_blend_factor = config.y_blend_factor;
  record.h_shift = config.h_shift;
  record.s_shift = config.s_shift;
  record.inverse_flag = config.inverse_flag;
}

void debugPrintRecord(const lut2d_cfg& record) {
  if (!debugLogHasListener()) return;
  writeDebug(0, "DebugPrint", "strart debug printing. \n");
  debugTable(" new delta H table \n", record.delta, &Lut2dPair::h);
  debugTable(" \n new delta S table \n", record.delta, &Lut2dPair::s);
  debugTable(" \n new target H table \n", record.target, &Lut2dPair::h);
  debugTable(" \n new target S table \n", record.target, &Lut2dPair::s);
  writeDebug(0, "DebugPrint", "end debug printing. \n");
}

}  // namespace greycard
