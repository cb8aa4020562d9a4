#pragma once

#include <span>

namespace greycard {

/// Light of a measured value by a table over sRGB-encoded values at equal steps of 0..1, two or
/// more, joined by straight lines; beyond its ends the last line goes on.
double tableLight(std::span<const double> table, double x);

}  // namespace greycard
