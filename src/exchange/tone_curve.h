#pragma once

// The tone curve of whatever material has one, and the sRGB transfer (IEC 61966-2-1).

#include <array>
#include <cmath>
#include <span>
#include <string>
#include <vector>

#include "greycard/exchange/material.h"

namespace greycard::exchange {

/// Encoded values of R, G and B, 0..1, at equal steps of linear input.
using CurveValues = std::array<std::vector<double>, 3>;

/// Of a fit the curve that it renders with; of tables the codes over the largest.
CurveValues curveValues(const FittedCamera& camera);
CurveValues curveValues(const CurveTables& tables);

/// The curve of a format that has one for all channels: green. Adds a note when they differ.
std::vector<double> commonCurve(const CurveValues& curves, std::vector<std::string>& notes);

/// The curve at x, clipped to 0..1, by straight lines.
double curveAt(std::span<const double> curve, double x);

inline double srgbDecoded(double v) {
  return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

}  // namespace greycard::exchange
