#pragma once

#include <optional>
#include <string>
#include <vector>

namespace greycard::present {

/// The range of one axis of a plot and the round numbers to mark on it.
struct AxisScale {
  double low = 0.0, high = 1.0;
  std::vector<double> ticks;

  /// A scale for values between dataLow and dataHigh. A bound that is not given is moved outward to
  /// a round number; a given one is kept.
  static AxisScale over(double dataLow, double dataHigh, std::optional<double> low,
                        std::optional<double> high);
  /// The same centre with a wider range.
  AxisScale widenedTo(double range) const;

  double range() const { return high - low; }
  bool holds(double value) const { return value >= low && value <= high; }
  /// The number beside a tick.
  static std::string label(double tick);
};

}  // namespace greycard::present
