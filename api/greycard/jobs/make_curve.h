#pragma once
/// \file
/// \ingroup own

#include <string>

#include "greycard/export.h"
#include "greycard/gamma_curve.h"
#include "greycard/text_view.h"

namespace greycard {

// Curves made from others or from nothing. None is in a catalogue.

/// Output = input^(1 / denominator), as GammaCurveModel::AddGammaCurve makes it; called
/// "power2.2" after its denominator. \throws std::invalid_argument for one outside 0.1..10
GREYCARD_EXPORT GammaCurvePtr powerCurve(double denominator);

/// One curve with the red table of the first, the green one of the second and the blue one of the
/// third, and their control points where all three have some.
/// \throws JobError for a curve without a table
GREYCARD_EXPORT GammaCurvePtr mergedCurve(TextView name, const GammaCurve& red,
                                          const GammaCurve& green, const GammaCurve& blue);

/// What undoes a curve, by straight lines between its entries: for each output the input that gives
/// it, the middle of those where the curve is level, and the first or last one beyond its ends.
/// Called "inverse of " and its name.
/// \throws JobError for a curve without a table, and for one that falls somewhere
GREYCARD_EXPORT GammaCurvePtr invertedCurve(const GammaCurve& curve);

}  // namespace greycard
