#pragma once
/// \file
/// \ingroup own

#include <array>

#include "greycard/colour_errors.h"
#include "greycard/present/export.h"

namespace greycard::present {

/// How good the colours of a chart are. Good: the mean error is at most 2.3, about the least
/// difference that is noticed side by side (M. Mahy, L. Van Eycken, A. Oosterlinck, Color Res.
/// Appl. 19 (1994) 105), and 95 % of the patches lie within twice that. Fair: both up to twice as
/// much. Poor: beyond, or not a number.
enum class ColourGrade { Good, Fair, Poor };
/// Their names, in that order.
inline constexpr std::array kColourGradeNames{"good", "fair", "poor"};

/// Marks of the scale, in dE: a noticed difference, and twice as much.
inline constexpr double kNoticedDifference = 2.3, kTwiceNoticed = 4.6;

struct ColourVerdict {
  double mean = 0.0;
  double percentile95 = 0.0;  ///< on straight lines between the sorted values
  ColourGrade grade = ColourGrade::Poor;
};

/// \param errors  by CIEDE2000
GREYCARD_PRESENT_EXPORT ColourVerdict colourVerdict(const ErrorColumn& errors);

}  // namespace greycard::present
