#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "greycard/jobs/apply_fit.h"
#include "greycard/jobs/describe_photograph.h"
#include "greycard/present/export.h"

namespace greycard::present {

// What photographs are, and what a fit made of them, as JSON (docs/photograph_json.md). fromJson
// throws std::invalid_argument with a sentence that begins with the field, and leaves the value as
// it was then.

GREYCARD_PRESENT_EXPORT std::string toJson(const PhotographInfo& info);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, PhotographInfo& info);

/// A list under "photographs".
GREYCARD_PRESENT_EXPORT std::string toJson(std::span<const AppliedFit> applied);

/// What toJson wrote of a ChartFit or a BestChartFit, as a pipeline for other photographs.
/// \throws FileError; JobError that names the file and what is wrong with it
GREYCARD_PRESENT_EXPORT FittedPipeline readFittedPipeline(const std::filesystem::path& file);

}  // namespace greycard::present
