#pragma once
/// \file
/// \ingroup own

#include <optional>
#include <string>
#include <string_view>

#include "greycard/jobs/estimate_sigma.h"
#include "greycard/jobs/read_flat_field.h"
#include "greycard/picture.h"
#include "greycard/present/export.h"
#include "greycard/present/provenance.h"

namespace greycard::present {

// Noise tables as JSON (docs/sigma_json.md), which reads back to the same bits, as a plot, a table
// and a map. fromJson throws std::invalid_argument with a sentence that begins with the field, and
// leaves the value as it was then.

GREYCARD_PRESENT_EXPORT std::string toJson(const FlatFieldOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, FlatFieldOptions& options);
/// All but the local sigmas.
GREYCARD_PRESENT_EXPORT std::string toJson(const SigmaEstimate& estimate);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, SigmaEstimate& estimate);

/// A line of titles, then a line for each ring.
GREYCARD_PRESENT_EXPORT std::string sigmaCsv(const SigmaEstimate& estimate);
/// Factor over radius, as an SVG element.
GREYCARD_PRESENT_EXPORT std::string sigmaPlot(const SigmaEstimate& estimate);
/// A page for people, as those of chart.h, with the map where the estimate has local sigmas.
GREYCARD_PRESENT_EXPORT std::string sigmaReport(const SigmaEstimate& estimate,
                                                const std::optional<Provenance>& provenance = {});
/// The local sigma of every pixel as colours, from dark (the least) to light (the most), at most
/// 900 pixels long, beside a scale in code values.
/// \throws std::invalid_argument for an estimate without local sigmas
GREYCARD_PRESENT_EXPORT Picture sigmaMap(const SigmaEstimate& estimate);

}  // namespace greycard::present
