#pragma once
/// \file
/// \ingroup own

#include <array>
#include <span>

#include "greycard/export.h"
#include "greycard/patch_sampler.h"
#include "greycard/picture.h"
#include "greycard/types.h"

namespace greycard {

/// Tone curves of R, G and B: two or more values at equal steps over 0..1, joined by straight
/// lines; each value is 0..1 of the 8-bit output scale, what lies outside counts as 0 or 1. An
/// empty one stands for the sRGB transfer.
using ToneCurves = std::array<std::span<const double>, 3>;

/// Brings a photograph to 8 bits with colours corrected: linear value (SampleLevels), gains per
/// channel, then matrix * (R, G, B), clipped to 0..1, then the tone curve.
///
/// The result has three channels. Each value is at most 0.51 codes from the exact one, for curves
/// of up to 256 values and for the sRGB transfer: the nearest code but for near ties.
/// \param gains       exposure gain times white-balance gain per channel
/// \param lightCurve  what linear values go through first, of a photograph that a camera toned: see
///                    MatrixFitResult::toneCurve
/// \throws std::invalid_argument for levels that make no scale, an inconsistent picture, a curve of
///         one value or with one that is not finite, or gains times matrix not finite or above 1e6
GREYCARD_EXPORT Picture correctPicture(const Picture& picture, const SampleLevels& levels,
                                       const Vector3& gains, const Matrix3& matrix,
                                       const ToneCurves& curves = {},
                                       std::span<const double> lightCurve = {});

}  // namespace greycard
