#include "svg_axis.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "greycard/number_text.h"

namespace greycard::present {
namespace {

// 1, 2 or 5 times a power of ten, so that some six steps make up the range.
double roundStep(double range) {
  const double raw = range / 6.0;
  const double power = std::pow(10.0, std::floor(std::log10(raw)));
  for (const double factor : {1.0, 2.0, 5.0})
    if (factor * power >= raw * 0.999) return factor * power;
  return 10.0 * power;
}

std::vector<double> ticksWithin(double low, double high, double step) {
  std::vector<double> ticks;
  const double slack = step * 1e-6;
  // A multiple of the step, not a sum of steps, so that 0 is 0; and + 0.0 makes -0 to 0.
  for (double k = std::ceil((low - slack) / step) + 0.0; k * step <= high + slack; ++k)
    ticks.push_back(k * step);
  return ticks;
}

}  // namespace

AxisScale AxisScale::over(double dataLow, double dataHigh, std::optional<double> low,
                          std::optional<double> high) {
  AxisScale scale{low.value_or(dataLow), high.value_or(dataHigh), {}};
  if (scale.low > scale.high) std::swap(scale.low, scale.high);
  // A range below the digits of its own ends can't be divided.
  const double least = 1e-9 * std::max({std::abs(scale.low), std::abs(scale.high), 1e-3});
  if (!(scale.range() > least)) {
    scale.low -= 0.5 * std::max(1.0, std::abs(scale.low));
    scale.high += 0.5 * std::max(1.0, std::abs(scale.high));
  }
  const double step = roundStep(scale.range());
  // A round number's rounding must not leave the data's own end outside.
  if (!low) scale.low = std::min(scale.low, std::floor(scale.low / step + 1e-6) * step);
  if (!high) scale.high = std::max(scale.high, std::ceil(scale.high / step - 1e-6) * step);
  scale.ticks = ticksWithin(scale.low, scale.high, step);
  return scale;
}

AxisScale AxisScale::widenedTo(double range) const {
  const double centre = 0.5 * (low + high);
  AxisScale scale{centre - 0.5 * range, centre + 0.5 * range, {}};
  scale.ticks = ticksWithin(scale.low, scale.high, roundStep(range));
  return scale;
}

std::string AxisScale::label(double tick) {
  return general(tick, 6);
}

}  // namespace greycard::present
