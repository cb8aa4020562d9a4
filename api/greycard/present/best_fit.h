#pragma once
/// \file
/// \ingroup own

#include <optional>
#include <string>
#include <string_view>

#include "greycard/jobs/fit_chart_best.h"
#include "greycard/present/export.h"
#include "greycard/present/provenance.h"

namespace greycard::present {

// The best fit as JSON, both ways (see chart.h for what fromJson refuses), and as a page. Options
// don't hold what follows from the chart's, nor the settings of the stated fit.

GREYCARD_PRESENT_EXPORT std::string toJson(const BestFitOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, BestFitOptions& options);
GREYCARD_PRESENT_EXPORT std::string toJson(const MatrixFitResult& result);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, MatrixFitResult& result);
/// The first photograph's light, matrix, gains and patches stand at the top, where
/// readMeasuredChart finds them.
GREYCARD_PRESENT_EXPORT std::string toJson(const BestChartFit& fit);
/// \throws std::invalid_argument also when the lists of photographs are not of one length
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, BestChartFit& fit);

/// A page about both fits, with the pictures of the first photograph (see chart.h).
/// \param photograph  the first picture that was fitted
GREYCARD_PRESENT_EXPORT std::string fitReport(const BestChartFit& fit, const Picture& photograph,
                                              const std::optional<Provenance>& provenance = {});

}  // namespace greycard::present
