#pragma once
/// \file
/// \ingroup own

#include <string>
#include <string_view>

#include "greycard/jobs/fit_profile.h"
#include "greycard/present/export.h"

namespace greycard::present {

// A camera under several lights as JSON, both ways. What follows from the fits (errors, steps) is
// written for people and worked out anew when it is read.

GREYCARD_PRESENT_EXPORT std::string toJson(const CameraProfile& profile);
/// \throws std::invalid_argument as fromJson of chart.h, and as profileOf
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, CameraProfile& profile);

GREYCARD_PRESENT_EXPORT std::string toJson(const ProfilePoint& point);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, ProfilePoint& point);

}  // namespace greycard::present
