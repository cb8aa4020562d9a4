#pragma once

#include <optional>
#include <span>

#include "greycard/patch_sampler.h"
#include "greycard/picture.h"
#include "greycard/types.h"
#include "lattice/working_picture.h"

namespace greycard {

/// The picture round the points, with a margin, as a working picture in which `length` pixels
/// become about 24. Empty when no part of it lies in the picture.
std::optional<WorkingPicture> localPicture(const Picture& picture,
                                           const std::optional<SampleLevels>& levels,
                                           std::span<const Point2> points, double length);

}  // namespace greycard
