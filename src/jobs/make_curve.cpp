#include "greycard/jobs/make_curve.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>

#include "greycard/curve_tables.h"
#include "greycard/errors.h"
#include "greycard/gamma_curve_model.h"
#include "greycard/number_text.h"

namespace greycard {
namespace {

constexpr double kLeastDenominator = 0.1, kLargestDenominator = 10.0;

GammaTablePtr copyOf(std::span<const std::int32_t> table) {
  return std::make_shared<GammaTable>(table.begin(), table.end());
}

ControlPointListPtr copyOf(std::span<const ControlPoint> points) {
  if (points.empty()) return nullptr;
  return std::make_shared<ControlPointList>(points.begin(), points.end());
}

// The place between the entries, from 0, at which a table that never falls gives the code.
double placeOf(double code, std::span<const std::int32_t> table) {
  const auto firstAbove = std::ranges::upper_bound(table, code);
  const auto firstNotBelow = std::ranges::lower_bound(table, code);
  const auto index = [&](auto at) { return static_cast<double>(at - table.begin()); };
  if (firstAbove == table.begin()) return 0.0;
  if (firstNotBelow == table.end()) return index(table.end()) - 1.0;
  if (firstNotBelow != firstAbove) return 0.5 * (index(firstNotBelow) + index(firstAbove) - 1.0);
  const double below = *(firstAbove - 1), above = *firstAbove;
  return index(firstAbove) - 1.0 + (code - below) / (above - below);
}

GammaTablePtr inverseOf(std::span<const std::int32_t> table, const std::string& name) {
  if (const auto falls = std::ranges::adjacent_find(table, std::ranges::greater());
      falls != table.end())
    throw JobError("the curve " + name + " falls behind index " +
                   std::to_string(falls - table.begin()) + "; only what never falls can be undone");
  const auto inverse = std::make_shared<GammaTable>(table.size());
  const double steps = static_cast<double>(table.size()) - 1.0;
  for (std::size_t i = 0; i < inverse->size(); ++i)
    (*inverse)[i] = static_cast<std::int32_t>(std::lround(
        kCurveMax * placeOf(kCurveMax * static_cast<double>(i) / steps, table) / steps));
  return inverse;
}

}  // namespace

GammaCurvePtr powerCurve(double denominator) {
  if (!(denominator >= kLeastDenominator && denominator <= kLargestDenominator))
    throw std::invalid_argument("the denominator of a power curve lies in 0.1 to 10, not at " +
                                general(denominator, 6));
  GammaCurveModel model(false);
  return model.AddGammaCurve("power" + general(denominator, 6), denominator, kCurveMax);
}

GammaCurvePtr mergedCurve(TextView name, const GammaCurve& red, const GammaCurve& green,
                          const GammaCurve& blue) {
  using enum CurveChannel;
  GammaCurveModel model(false);
  return model.CreateCurve(name, copyOf(wantedTable(red, Red)), copyOf(wantedTable(green, Green)),
                           copyOf(wantedTable(blue, Blue)), copyOf(curvePoints(red, Red)),
                           copyOf(curvePoints(green, Green)), copyOf(curvePoints(blue, Blue)));
}

GammaCurvePtr invertedCurve(const GammaCurve& curve) {
  using enum CurveChannel;
  GammaCurveModel model(false);
  const auto inverse = [&](CurveChannel channel) {
    return inverseOf(wantedTable(curve, channel), curve.Name());
  };
  const bool one = curve.IsUnified();
  return model.CreateCurve("inverse of " + curve.Name(), inverse(Red),
                           one ? GammaTablePtr() : inverse(Green),
                           one ? GammaTablePtr() : inverse(Blue), ControlPointListPtr(),
                           ControlPointListPtr(), ControlPointListPtr());
}

}  // namespace greycard
