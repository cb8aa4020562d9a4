#pragma once

// What the pages about fits to a chart have in common, as HTML.

#include <string>

#include "greycard/jobs/fit_chart.h"

namespace greycard::present {

std::string matrixSection(const ChartFit& fit);
/// The patches in their layout: reference, corrected and before.
std::string swatchSection(const ChartFit& fit);
/// Two plots: a* and b* of the patches, and L* of the neutral row.
std::string chromaPlane(const ChartFit& fit);
std::string greyRow(const ChartFit& fit);
/// \param picture  the photograph that was fitted
std::string photoSection(const ChartFit& fit, const Picture& picture);
/// A table of all patches.
std::string patchSection(const ChartFit& fit);
/// Where and how the photograph was taken, a sentence each, and the warnings.
std::string aboutPhoto(const ChartFit& fit, const Picture& picture);

}  // namespace greycard::present
