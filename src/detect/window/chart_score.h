#pragma once

#include <array>

#include "greycard/types.h"

namespace greycard {

/// What is seen at the 24 places of a window, in chart order.
struct WindowColours {
  /// 8-bit encoded R, G, B, or the lightness in the first alone.
  std::array<std::array<double, 3>, kPatchCount> values{};
  bool grey = false;
  /// Places that are in view; the others' values are not looked at.
  std::array<bool, kPatchCount> visible{};
  /// Places where a patch was recognised: light and camera are judged by these, if there are 10.
  std::array<bool, kPatchCount> recognised{};
};

/// How much the colours are those of the chart.
struct ChartScore {
  double score = 0.0;  ///< at most 1; a chart gives above 0.9 in good light, other things below 0.6
  std::array<double, 3> correlations{};  ///< of red - green, yellow - blue and lightness
  /// Per patch, how far it is from what the others let expect; above 1 it is unlike the chart's.
  std::array<double, kPatchCount> deviations{};
  bool neutralsDarken = false;  ///< the neutral row, from white to black
  bool colourless = false;      ///< judged by lightness alone
};

/// Mean of three correlations with the chart's reference over the 24 patches: (R - G) / (R + G + B
/// + 45), ((R + G) / 2 - B) / (R + G + B + 45) and lightness. The channels are brought to the
/// chart's own means first, which makes it blind to white balance and exposure; lightness is
/// compared with the reference times a + b column + c row, plus d, for uneven light. Without colour
/// (a grey picture, or one in a single tone) lightness alone counts, more strictly. \param hopeless
/// a score under which nobody looks further: deviations may then be missing.
ChartScore scoreChart(const WindowColours& colours, double hopeless = -2.0);

}  // namespace greycard
