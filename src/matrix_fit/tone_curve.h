#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "greycard/fit_options.h"

namespace greycard {

/// A curve from measured value to light by at most two numbers: g of x^g; g and o of
/// ((x + o) / (1 + o))^g; b and w of decoded((encoded x - b) / (w - b)). Other families are x
/// itself.
struct ParametricCurve {
  FitToneCurve family = FitToneCurve::none;
  std::array<double, 2> numbers{};
};

/// The curve of a family that leaves values as they are.
ParametricCurve unchangedCurve(FitToneCurve family);
/// How many of its numbers, from the first, a search may move. The white point w is none of them:
/// it is a matter of exposure but for the toe of the curve.
std::size_t curveTerms(FitToneCurve family);
/// Whether the numbers make a rising curve.
bool isCurve(const ParametricCurve& curve);

/// A curve's value at a measured value and its derivatives by the numbers. What lies below the
/// curve's start gives no light.
struct CurvePoint {
  double value = 0.0;
  std::array<double, 2> slope{};
};
/// \param encoded  sRGBEncode(x)
CurvePoint curvePoint(const ParametricCurve& curve, double x, double encoded);

/// Values of the tables that are made here: one for each 8-bit code.
inline constexpr std::size_t kCodes = 256;
/// The curve as such a table.
std::vector<double> tableOf(const ParametricCurve& curve);

}  // namespace greycard
