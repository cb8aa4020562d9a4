#include "greycard/jobs/reduce_curve.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "greycard/errors.h"
#include "greycard/fewest_points.h"
#include "greycard/gamma_curve_model.h"
#include "greycard/number_text.h"

namespace greycard {
namespace {

ControlPointReduction reductionOf(const GammaCurve& curve, CurveChannel channel) {
  ControlPointReduction result;
  result.name = curve.Name();
  result.channel = channel;
  const auto table = wantedTable(curve, channel);
  result.table.assign(table.begin(), table.end());
  return result;
}

// Computes the curve through the points that `through` has, and compares it.
void compare(GammaCurve& through, ControlPointReduction& result) {
  through.CalculateCurve();
  result.points = *through.ControlPoints();
  result.tableThroughPoints = *through.Data();

  const std::size_t common = std::min(result.table.size(), result.tableThroughPoints.size());
  for (std::size_t i = 0; i < common; ++i) {
    const std::int64_t codes = std::int64_t{result.tableThroughPoints[i]} - result.table[i];
    if (std::abs(codes) <= std::abs(result.largestDeviation)) continue;
    result.largestDeviation = codes;
    result.largestDeviationIndex = i;
  }
}

}  // namespace

ControlPointReduction reduceToControlPoints(const GammaCurve& curve, CurveChannel channel) {
  ControlPointReduction result = reductionOf(curve, channel);
  GammaCurveModel model(false);
  GammaCurve through(curve.Name(), model);
  through.SetGammaTable(ColorChannel::All, std::make_shared<GammaTable>(result.table));
  through.GenerateControlPoints(ColorChannel::All);
  compare(through, result);
  return result;
}

ControlPointReduction fewestPointsOf(const GammaCurve& curve, double percent,
                                     CurveChannel channel) {
  if (!(percent > 0.0))
    throw std::invalid_argument("control points stay within more than 0 %, not " +
                                general(percent, 6));
  ControlPointReduction result = reductionOf(curve, channel);
  constexpr std::size_t kEntries = 1024;
  if (result.table.size() != kEntries)
    throw JobError("the curve " + curve.Name() + " has not 1024 entries; no points are found");
  const auto points = fewestControlPoints(result.table, percent / 100.0 * kCurveMax);
  if (!points)
    throw JobError("no " + std::to_string(kMostFewestPoints) + " control points stay within " +
                   general(percent, 6) + " % of the curve " + curve.Name() +
                   "; points are whole 64ths of codes, about 0.4 %, so ask for more");
  GammaCurveModel model(false);
  GammaCurve through(curve.Name(), model);
  through.SetControlPoints(ColorChannel::All, std::make_shared<ControlPointList>(*points));
  compare(through, result);
  result.withinPercent = percent;
  return result;
}

}  // namespace greycard
