#pragma once

// What the pages about fits to a chart have in common.

#include <string>

#include "greycard/jobs/fit_chart.h"
#include "photo_sections.h"
#include "report_page.h"

namespace greycard::present {

ReportHead fitHead(const std::string& what, const ChartFit& fit, const Picture& photograph);
/// The sections between what is special to a fit: the figures, then what is below them.
std::string fitFigures(const ChartFit& fit, const Picture& photograph, const Develop& before,
                       const Develop& after, const ChartStory& story);
std::string fitDetails(const ChartFit& fit, const Picture& photograph, const Develop& before,
                       const ChartStory& story);

}  // namespace greycard::present
