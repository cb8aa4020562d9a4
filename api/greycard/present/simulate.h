#pragma once
/// \file
/// \ingroup own

#include <string>
#include <string_view>

#include "greycard/jobs/simulate.h"
#include "greycard/present/export.h"

namespace greycard::present {

// What is simulated, and the truth about it, as JSON (docs/simulate_json.md). fromJson throws
// std::invalid_argument with a sentence that begins with the field, and leaves the value as it was
// then.

GREYCARD_PRESENT_EXPORT std::string toJson(const SimulationSettings& settings);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, SimulationSettings& settings);
/// The truth; of the settings what it takes to understand it.
GREYCARD_PRESENT_EXPORT std::string toJson(const SimulatedChart& chart);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, SimulatedChart& chart);

GREYCARD_PRESENT_EXPORT std::string toJson(const FlatFieldSettings& settings);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, FlatFieldSettings& settings);
GREYCARD_PRESENT_EXPORT std::string toJson(const SimulatedFlatField& field);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, SimulatedFlatField& field);

}  // namespace greycard::present
