#pragma once

#include <span>

#include "flat_field_source.h"
#include "greycard/picture.h"

namespace greycard::cli {

/// The local sigma of every pixel of the plane as colours, from dark (the least) to light (the
/// most), at most 900 pixels long, beside a scale in code values.
Picture sigmaMap(const LumaPlane& plane, std::span<const float> localSigma);

}  // namespace greycard::cli
