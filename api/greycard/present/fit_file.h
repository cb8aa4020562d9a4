#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <string_view>
#include <variant>

#include "greycard/jobs/fit_chart.h"
#include "greycard/jobs/fit_chart_best.h"
#include "greycard/present/export.h"

namespace greycard::present {

/// A fit of either kind, as a file of JSON holds it: what greycard ccm --json wrote.
using AnyFit = std::variant<ChartFit, BestChartFit>;

/// \throws std::invalid_argument with a sentence that begins with the field
GREYCARD_PRESENT_EXPORT AnyFit fitFromJson(std::string_view text);
/// \throws JobError that names a file which holds no fit; FileError
GREYCARD_PRESENT_EXPORT AnyFit readFit(const std::filesystem::path& file);

/// The fit as one of a single photograph: of a best fit the first one, as BestChartFit::shown has
/// it.
GREYCARD_PRESENT_EXPORT ChartFit chartFitOf(const AnyFit& fit);

}  // namespace greycard::present
