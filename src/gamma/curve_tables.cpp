#include "greycard/curve_tables.h"

#include "greycard/errors.h"

namespace greycard {

std::span<const std::int32_t> curveTable(const GammaCurve& curve, CurveChannel channel) {
  const GammaTablePtr& table = channel == CurveChannel::Green  ? curve.DataG()
                               : channel == CurveChannel::Blue ? curve.DataB()
                                                               : curve.Data();
  return table ? std::span<const std::int32_t>(*table) : std::span<const std::int32_t>();
}

std::span<const std::int32_t> wantedTable(const GammaCurve& curve, CurveChannel channel) {
  const auto table = curveTable(curve, channel);
  if (table.empty()) throw JobError("the curve " + curve.Name() + " has no table to work with");
  return table;
}

std::span<const ControlPoint> curvePoints(const GammaCurve& curve, CurveChannel channel) {
  const ControlPointListPtr& points = channel == CurveChannel::Green  ? curve.ControlPointsG()
                                      : channel == CurveChannel::Blue ? curve.ControlPointsB()
                                                                      : curve.ControlPoints();
  return points ? std::span<const ControlPoint>(*points) : std::span<const ControlPoint>();
}

CurveTables curveTables(const GammaCurve& curve) {
  CurveTables value;
  value.name = curve.Name();
  value.unified = curve.IsUnified();
  for (std::size_t c = 0; c < (value.unified ? 1 : value.channels.size()); ++c) {
    const auto channel = static_cast<CurveChannel>(c + 1);
    const auto table = wantedTable(curve, channel);
    const auto points = curvePoints(curve, channel);
    value.channels[c] = {{table.begin(), table.end()}, {points.begin(), points.end()}};
  }
  return value;
}

}  // namespace greycard
