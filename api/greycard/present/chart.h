#pragma once
/// \file
/// \ingroup own

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "greycard/jobs/evaluate_chart.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/jobs/locate_chart.h"
#include "greycard/picture.h"
#include "greycard/present/export.h"
#include "greycard/present/provenance.h"

namespace greycard::present {

// Charts located, fitted and judged: as JSON, which reads back to the same bits, and as a page.
//
// fromJson reads options as people write them (a field that is left out keeps its default, an
// unknown one is refused) and results as toJson wrote them. It throws std::invalid_argument with a
// sentence that begins with the field, and leaves the value as it was then.

GREYCARD_PRESENT_EXPORT std::string toJson(const LocateOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, LocateOptions& options);
GREYCARD_PRESENT_EXPORT std::string toJson(const ChartSearch& search);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, ChartSearch& search);
GREYCARD_PRESENT_EXPORT std::string toJson(const FoundCharts& found);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, FoundCharts& found);

GREYCARD_PRESENT_EXPORT std::string toJson(const ChartFitOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, ChartFitOptions& options);
GREYCARD_PRESENT_EXPORT std::string toJson(const ChartFit& fit);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, ChartFit& fit);

GREYCARD_PRESENT_EXPORT std::string toJson(const EvaluationOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, EvaluationOptions& options);
GREYCARD_PRESENT_EXPORT std::string toJson(const ChartEvaluation& evaluation);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, ChartEvaluation& evaluation);

/// An 8-bit R, G, B copy of the picture with the outline of each region and its patch
/// number, 1..24, drawn into it: white on a black rim, so that they show on every patch, in strokes
/// that grow with the regions. Regions outside the picture, without area or not finite are left
/// out.
///
/// \throws std::invalid_argument when the picture's size and samples disagree or it is empty.
GREYCARD_PRESENT_EXPORT Picture annotateRegions(const Picture& picture,
                                                const PatchRegions& regions);

/// Likewise the outlines of patches given by their corners. \param outliers  numbers, 1..24, of
/// patches to be crossed out in red
GREYCARD_PRESENT_EXPORT Picture annotatePatches(const Picture& picture, const PatchQuads& patches,
                                                const std::vector<int>& outliers = {});

/// Likewise the outcome of a search. A chart that was found: its patches as annotatePatches draws
/// them, those unlike the chart's crossed out. None: all places that look like a patch in yellow,
/// and the grid that came nearest to a chart in red.
GREYCARD_PRESENT_EXPORT Picture annotateDetection(const Picture& picture,
                                                  const ChartDetection& detection);
/// Likewise all charts that were found.
GREYCARD_PRESENT_EXPORT Picture annotateDetections(const Picture& picture,
                                                   const std::vector<ChartDetection>& charts);

// Pages for people: self-contained, no script, nothing fetched from anywhere; for light and dark
// screens, and for paper.

/// A page about a fit. \param photograph  the picture that was fitted
GREYCARD_PRESENT_EXPORT std::string fitReport(const ChartFit& fit, const Picture& photograph,
                                              const std::optional<Provenance>& provenance = {});
/// A page about a chart that was judged as it is.
GREYCARD_PRESENT_EXPORT std::string evaluationReport(
    const ChartEvaluation& evaluation, const Picture& photograph,
    const std::optional<Provenance>& provenance = {});

}  // namespace greycard::present
