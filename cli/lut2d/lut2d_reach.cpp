#include "lut2d_reach.h"

#include <cmath>

#include "greycard/number_text.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

// How far a change of the table reaches: 511 steps, each of them 2^shift of 2048 in a unit.
double reach(float shift, double unit) {
  return 511.0 * std::exp2(std::trunc(static_cast<double>(shift))) / 2048.0 * unit;
}

}  // namespace

CutChanges cutChanges(const Lut2DConfig& config) {
  const double hueReach = reach(config.h_shift, 60.0), satReach = reach(config.s_shift, 1.0);
  CutChanges cut;
  for (std::size_t i = 0; i < kLut2dNodes; ++i)
    if (std::fabs(config.lut_2d_h[i]) > hueReach || std::fabs(config.lut_2d_s[i]) > satReach)
      ++cut.nodes;
  if (cut.nodes > 0)
    cut.warning = std::to_string(cut.nodes) + (cut.nodes == 1 ? " node changes" : " nodes change") +
                  " more than h_shift " + general(static_cast<double>(config.h_shift), 3) +
                  " and s_shift " + general(static_cast<double>(config.s_shift), 3) +
                  " can hold: hues move by at most " + general(hueReach, 3) +
                  " degrees, saturations by " + general(satReach, 3) +
                  "; make the table with larger shifts";
  return cut;
}

}  // namespace greycard::cli
