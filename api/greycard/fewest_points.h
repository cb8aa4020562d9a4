#pragma once
/// \file
/// \ingroup own

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "greycard/control_point.h"
#include "greycard/export.h"

namespace greycard {

inline constexpr std::size_t kMostFewestPoints = 32;

/// The fewest control points that the search finds whose curve (GammaCurve::CalculateCurve at the
/// default settings: X in fourths of indices, Y in 64ths of codes) is nowhere farther than `codes`
/// from the table.
///
/// The first X is 0, the last 255. For 2, 3, ... points X and Y descend, by steps that halve from
/// 32, from several starts: points at equal steps, points crowded towards black, and the best ones
/// of one point less with another in a gap of these. Natural splines are not local, so there is no
/// cheap proof that a number is the least. All sets of three points were tried for the nine
/// built-in curves that the search gives four within 3 %: eight need four, for one three would do.
/// Half a percent takes 4 to 8.
///
/// \param table  1024 entries of 14 bits
/// \param codes  above 0
/// \return empty when 32 points are not enough
/// \throws std::invalid_argument for another table or limit
GREYCARD_EXPORT std::optional<ControlPointList> fewestControlPoints(
    std::span<const std::int32_t> table, double codes);

}  // namespace greycard
