#pragma once

#include <optional>
#include <string>

#include "greycard/jobs/fit_profile.h"

namespace greycard::cli {

/// The lights side by side, each matrix under each light, the steps between neighbours, and gains
/// and matrix for the light in between that was asked for.
std::string profileText(const CameraProfile& profile, const std::optional<ProfilePoint>& point);

}  // namespace greycard::cli
