#include "greycard/lut2d_table.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <stdexcept>
#include <utility>

#include "greycard/number_text.h"
#include "greycard/two_d_lut_helper.h"

namespace greycard {
namespace {

[[noreturn]] void refuse(const std::string& name, const std::string& must) {
  throw std::invalid_argument(name + " must be " + must);
}

void checkGrid(const std::string& name, std::span<const double> nodes, double low, double high) {
  for (std::size_t i = 0; i < nodes.size(); ++i)
    if (nodes[i] < low || nodes[i] > high || (i > 0 && nodes[i] < nodes[i - 1]))
      refuse(name, "numbers from " + general(low, 3) + " to " + general(high, 3) +
                       " that don't fall; entry " + std::to_string(i + 1) + " is " +
                       general(nodes[i], 6));
}

// How far a change of the table reaches: 511 steps, each of them 2^shift of 2048 in a unit.
double reach(float shift, double unit) {
  return 511.0 * std::exp2(std::trunc(static_cast<double>(shift))) / 2048.0 * unit;
}

double largest(std::span<const double> changes) {
  double most = 0.0;
  for (const double change : changes) most = std::max(most, std::fabs(change));
  return most;
}

}  // namespace

Lut2DConfig identityLut2d(const Lut2dIdentityOptions& options) {
  Lut2DConfig table;
  table.enabled = 1;
  for (std::size_t i = 0; i < table.lut_1d_h.size(); ++i)
    table.lut_1d_h[i] = 360.0 * static_cast<double>(i) / kLut2dHueRows;
  for (std::size_t j = 0; j < table.lut_1d_s.size(); ++j)
    table.lut_1d_s[j] = static_cast<double>(j) / (kLut2dSatColumns - 1);
  table.h_shift = options.hShift;
  table.s_shift = options.sShift;
  table.l_boundary_start_a = options.fade[0];
  table.l_boundary_start_b = options.fade[1];
  table.l_boundary_end_a = options.fade[2];
  table.l_boundary_end_b = options.fade[3];
  table.y_blend_factor = options.yBlend;
  checkLut2d(table);
  if (!std::ranges::is_sorted(options.fade)) refuse("fade", "four numbers that don't fall");
  return table;
}

void checkLut2d(const Lut2DConfig& table) {
  TwoDLutHelper().SetConfig(table);  // refuses numbers without meaning
  checkGrid("lut_1d_h", table.lut_1d_h, 0.0, 360.0);
  checkGrid("lut_1d_s", table.lut_1d_s, 0.0, 1.0);
  if (table.lut_1d_h.front() != 0.0 || table.lut_1d_h.back() != 360.0)
    refuse("lut_1d_h", "from 0 to 360");
  for (const auto& [name, value] : {std::pair{"l_boundary_start_a", table.l_boundary_start_a},
                                    std::pair{"l_boundary_start_b", table.l_boundary_start_b},
                                    std::pair{"l_boundary_end_a", table.l_boundary_end_a},
                                    std::pair{"l_boundary_end_b", table.l_boundary_end_b},
                                    std::pair{"y_blend_factor", table.y_blend_factor}})
    if (!(value >= 0.0F && value <= 1.0F)) refuse(name, "from 0 to 1");
}

CutChanges cutChanges(const Lut2DConfig& table) {
  const double hueReach = reach(table.h_shift, 60.0), satReach = reach(table.s_shift, 1.0);
  CutChanges cut;
  for (std::size_t i = 0; i < kLut2dNodes; ++i)
    if (std::fabs(table.lut_2d_h[i]) > hueReach || std::fabs(table.lut_2d_s[i]) > satReach)
      ++cut.nodes;
  if (cut.nodes > 0)
    cut.warning = std::to_string(cut.nodes) + (cut.nodes == 1 ? " node changes" : " nodes change") +
                  " more than h_shift " + general(static_cast<double>(table.h_shift), 3) +
                  " and s_shift " + general(static_cast<double>(table.s_shift), 3) +
                  " can hold: hues move by at most " + general(hueReach, 3) +
                  " degrees, saturations by " + general(satReach, 3) +
                  "; make the table with larger shifts";
  return cut;
}

Lut2dSummary summariseLut2d(const Lut2DConfig& table) {
  Lut2dSummary summary{0, largest(table.lut_2d_h), largest(table.lut_2d_s), cutChanges(table).nodes,
                       table};
  for (std::size_t i = 0; i < kLut2dNodes; ++i)
    if (table.lut_2d_h[i] != 0.0 || table.lut_2d_s[i] != 0.0) ++summary.changedNodes;
  return summary;
}

}  // namespace greycard
