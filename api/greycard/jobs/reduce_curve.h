#pragma once
/// \file
/// \ingroup own

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "greycard/curve_tables.h"
#include "greycard/export.h"

namespace greycard {

/// Control points made of a curve's table, as an editor starts from them.
struct ControlPointReduction {
  std::string name;  ///< of the curve
  CurveChannel channel = CurveChannel::All;
  ControlPointList points;
  /// Of the curve through the points from the table, in codes, and where it is.
  std::int64_t largestDeviation = 0;
  std::size_t largestDeviationIndex = 0;
  GammaTable table, tableThroughPoints;
  std::optional<double> withinPercent{};  ///< as it was asked of fewestPointsOf
};

/// \throws JobError for a curve without a table; NumericError as GammaCurve::CalculateCurve
GREYCARD_EXPORT ControlPointReduction
reduceToControlPoints(const GammaCurve& curve, CurveChannel channel = CurveChannel::All);

/// Few points whose curve stays within so many percent of full scale: see fewestControlPoints.
/// \throws JobError for a curve without a table of 1024 entries, and when 32 points are not enough;
///         std::invalid_argument for percent that are not above 0
GREYCARD_EXPORT ControlPointReduction fewestPointsOf(const GammaCurve& curve, double percent,
                                                     CurveChannel channel = CurveChannel::All);

}  // namespace greycard
