#pragma once

// Colour errors of a chart, as pieces of a page.

#include <string>

#include "chart_story.h"
#include "greycard/present/verdict.h"

namespace greycard::present {

/// The grade, the figure that it rests on, and the scale.
/// \param what  goes on after "of the 24 patches", as in " after correction"
std::string verdictCard(const ColourStory& story, const std::string& what);
/// The errors by three formulas.
std::string errorTable(const ColourStory& story);
/// A bar for each patch in chart order, split into lightness, chroma and hue.
/// \param of       whose, as in "A: "; before the title
/// \param axisEnd  what the axis reaches at least, for charts that stand side by side
std::string errorBars(const ColourStory& story, const std::string& of = {}, double axisEnd = 0.0);
/// The a*b* plane with the sRGB gamut and, larger, the neutrals.
std::string chromaPlane(const ColourStory& story);
/// All patches in a table.
std::string patchTable(const ChartStory& story);

}  // namespace greycard::present
