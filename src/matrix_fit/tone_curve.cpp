#include "tone_curve.h"

#include <algorithm>
#include <cmath>

#include "srgb_transfer.h"

namespace greycard {
namespace {

constexpr double kLeastExponent = 0.1, kMostExponent = 10.0;
constexpr double kLeastSpan = 0.05;                   // of 1 + o, and of w - b
constexpr double kMostBlack = 0.9, kMostWhite = 4.0;  // sizes of b and w

CurvePoint powerPoint(double x, double exponent, double offset) {
  const double span = 1.0 + offset, base = (x + offset) / span;
  if (!(base > 0.0)) return {};
  const double value = std::pow(base, exponent);
  return {value, {value * std::log(base), exponent * value / base * (1.0 - x) / (span * span)}};
}

CurvePoint blackWhitePoint(double encoded, double black, double white) {
  const double span = white - black, at = (encoded - black) / span;
  if (!(at > 0.0)) return {};
  const double slope = sRGBDecodeSlope(at) / span;
  return {sRGBDecode(at), {slope * (at - 1.0), -slope * at}};
}

}  // namespace

ParametricCurve unchangedCurve(FitToneCurve family) {
  if (family == FitToneCurve::blackWhite) return {family, {0.0, 1.0}};
  return {family, {1.0, 0.0}};
}

std::size_t curveTerms(FitToneCurve family) {
  if (family == FitToneCurve::powerOffset) return 2;
  return family == FitToneCurve::power || family == FitToneCurve::blackWhite ? 1 : 0;
}

bool isCurve(const ParametricCurve& curve) {
  if (curveTerms(curve.family) == 0) return true;
  const auto [first, second] = curve.numbers;
  if (curve.family == FitToneCurve::blackWhite)
    return second - first > kLeastSpan && std::fabs(first) < kMostBlack && second < kMostWhite;
  return first > kLeastExponent && first < kMostExponent && 1.0 + second > kLeastSpan;
}

CurvePoint curvePoint(const ParametricCurve& curve, double x, double encoded) {
  const auto [first, second] = curve.numbers;
  if (curve.family == FitToneCurve::blackWhite) return blackWhitePoint(encoded, first, second);
  return curveTerms(curve.family) > 0 ? powerPoint(x, first, second) : CurvePoint{x, {}};
}

std::vector<double> tableOf(const ParametricCurve& curve) {
  std::vector<double> table(kCodes);
  for (std::size_t i = 0; i < kCodes; ++i) {
    const double encoded = static_cast<double>(i) / (kCodes - 1.0);
    table[i] = curvePoint(curve, sRGBDecode(encoded), encoded).value;
  }
  return table;
}

}  // namespace greycard
