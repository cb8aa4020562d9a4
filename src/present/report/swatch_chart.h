#pragma once

#include <string>

#include "chart_story.h"

namespace greycard::present {

/// Where the patches lie in a drawing of the chart, in its pixels.
struct SwatchLayout {
  int pitch = 100, gap = 12;
  int side() const { return pitch - gap; }
  int width() const { return kChartColumns * pitch + gap; }
  int height() const { return kChartRows * pitch + gap; }
};

/// The chart's patches in their layout: around the edge the reference colour, inside it the
/// resulting one (upper left) and that before (lower right), if there is one. What lies outside
/// sRGB is clipped.
std::string swatchFigure(const ColourStory& story);

}  // namespace greycard::present
