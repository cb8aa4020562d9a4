#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "greycard/jobs/calibrate_skin.h"
#include "greycard/jobs/fit_exposure.h"
#include "greycard/jobs/map_white_balance.h"
#include "greycard/jobs/match_luma.h"
#include "greycard/present/export.h"
#include "greycard/present/provenance.h"

namespace greycard::present {

// Exposure fits, luma matches, white-balance mappings and skin calibrations: as JSON
// (docs/ae_json.md, wb_map_json.md, skin_json.md), plots and tables.
//
// fromJson reads options as people write them (a field that is left out keeps its default, an
// unknown one is refused) and results as toJson wrote them. It throws std::invalid_argument with a
// sentence that begins with the field, and leaves the value as it was then.

GREYCARD_PRESENT_EXPORT std::string toJson(const ExposureJob& job);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, ExposureJob& job);
/// All but the callback.
GREYCARD_PRESENT_EXPORT std::string toJson(const SearchOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, SearchOptions& options);
GREYCARD_PRESENT_EXPORT std::string toJson(const ExposureFit& fit);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, ExposureFit& fit);
GREYCARD_PRESENT_EXPORT std::string toJson(const ExposureTrial& trial);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, ExposureTrial& trial);

/// The job of a JSON file. Its pictures, which are seen from the file's folder, are not read yet.
/// \throws FileError; JobError that names the file and what is wrong with it, as
///         ExposureJob::check
GREYCARD_PRESENT_EXPORT ExposureJob readExposureJob(const std::filesystem::path& file);

/// Wanted against reached targets, as an SVG element.
GREYCARD_PRESENT_EXPORT std::string exposurePlot(const ExposureFit& fit);
GREYCARD_PRESENT_EXPORT std::string exposurePlot(const ExposureTrial& trial);

// Pages for people, as those of chart.h.

/// \param job  what was fitted
GREYCARD_PRESENT_EXPORT std::string exposureReport(
    const ExposureJob& job, const ExposureFit& fit,
    const std::optional<Provenance>& provenance = {});
GREYCARD_PRESENT_EXPORT std::string exposureReport(
    const ExposureJob& job, const ExposureTrial& trial,
    const std::optional<Provenance>& provenance = {});
GREYCARD_PRESENT_EXPORT std::string wbMapReport(const WhiteBalanceMapping& mapping,
                                                const std::optional<Provenance>& provenance = {});
GREYCARD_PRESENT_EXPORT std::string skinReport(const SkinCalibration& skin,
                                               const std::optional<Provenance>& provenance = {});

GREYCARD_PRESENT_EXPORT std::string toJson(const LumaMatchOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, LumaMatchOptions& options);
GREYCARD_PRESENT_EXPORT std::string toJson(const LumaMatch& match);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, LumaMatch& match);

GREYCARD_PRESENT_EXPORT std::string toJson(const WhiteBalanceOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, WhiteBalanceOptions& options);
GREYCARD_PRESENT_EXPORT std::string toJson(const WhiteBalanceMapping& mapping);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, WhiteBalanceMapping& mapping);
/// A line of titles, then a line for each point and where it is mapped to.
GREYCARD_PRESENT_EXPORT std::string wbMapCsv(const WhiteBalanceMapping& mapping);

GREYCARD_PRESENT_EXPORT std::string toJson(const SkinOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, SkinOptions& options);
/// All but the points and their colours.
GREYCARD_PRESENT_EXPORT std::string toJson(const SkinCalibration& skin);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, SkinCalibration& skin);
/// A line of titles, then a line for each synthetic colour.
GREYCARD_PRESENT_EXPORT std::string skinCsv(const SkinCalibration& skin);
/// Saturation over hue ratio, as an SVG element: each accepted point in its own colour.
GREYCARD_PRESENT_EXPORT std::string skinPlot(const SkinCalibration& skin);

}  // namespace greycard::present
