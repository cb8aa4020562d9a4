#pragma once

// Light, matrix, and how well the patches could be measured, as pieces of a page.

#include <string>

#include "chart_story.h"

namespace greycard::present {

/// Spectrum and colour temperature.
std::string lightPlot(Illum light);
/// Matrix, gains, and what they do to noise.
std::string matrixTables(const ChartFit& fit);
/// The patches as they lie, with noise, unevenness and clipping in each.
std::string samplingMap(const ChartStory& story);

}  // namespace greycard::present
