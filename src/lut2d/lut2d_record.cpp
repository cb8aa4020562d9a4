#include "lut2d_record.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <stdexcept>
#include <string>

#include "channels.h"
#include "text.h"

namespace greycard {
namespace {

constexpr double kSatUnits = 256.0;  // of the record's saturations

constexpr double kLargestShift = 24.0;  // moves the finest step beyond any change

[[noreturn]] void refuse(const std::string& name, double value, const std::string& must) {
  throw std::invalid_argument(name + " is " + formatGeneral(value) + "; it must be " + must);
}

void requireFinite(const std::string& name, double value) {
  if (!std::isfinite(value)) refuse(name, value, "a finite number");
}

void requireFinite(const std::string& name, std::span<const double> table) {
  for (std::size_t i = 0; i < table.size(); ++i)
    if (!std::isfinite(table[i])) requireFinite(name + "[" + std::to_string(i) + "]", table[i]);
}

void requireShift(const std::string& name, double value) {
  // Not-a-number fails every comparison.
  if (!(value >= 0.0 && value <= kLargestShift))
    refuse(name, value, "a number from 0 to " + formatGeneral(kLargestShift));
}

// The nearest float: what lies beyond the largest one becomes that.
float nearestFloat(double value) {
  constexpr double kLargest = std::numeric_limits<float>::max();
  return static_cast<float>(std::clamp(value, -kLargest, kLargest));
}
float satInUnits(double sat) {
  return nearestFloat(double{nearestFloat(sat)} * kSatUnits);
}

// Rows of the source grid follow one another; after the last one it starts again.
void fillGrids(const Lut2DConfig& config, lut2d_cfg& record) {
  for (std::size_t i = 0; i <= kLut2dHueRows; ++i)
    for (std::size_t j = 0; j < kLut2dSatColumns; ++j) {
      const std::size_t entry = i % kLut2dHueRows * kLut2dSatColumns + j;
      Lut2dPair& node = record.node[i][j];
      Lut2dPair& delta = record.delta[i][j];
      node = {nearestFloat(config.lut_1d_h[i]), satInUnits(config.lut_1d_s[j])};
      delta = {nearestFloat(config.lut_2d_h[entry]), satInUnits(config.lut_2d_s[entry])};
      record.target[i][j] = {nearestFloat(double{node.h} - double{delta.h}),
                             nearestFloat(double{node.s} - double{delta.s})};
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
  requireFinite("lut_1d_h", config.lut_1d_h);
  requireFinite("lut_1d_s", config.lut_1d_s);
  requireFinite("lut_2d_h", config.lut_2d_h);
  requireFinite("lut_2d_s", config.lut_2d_s);
  requireShift("h_shift", double{config.h_shift});
  requireShift("s_shift", double{config.s_shift});
  requireFinite("l_boundary_start_a", double{config.l_boundary_start_a});
  requireFinite("l_boundary_start_b", double{config.l_boundary_start_b});
  requireFinite("l_boundary_end_a", double{config.l_boundary_end_a});
  requireFinite("l_boundary_end_b", double{config.l_boundary_end_b});
  requireFinite("y_blend_factor", double{config.y_blend_factor});
  requireFinite("inverse_flag", double{config.inverse_flag});
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
