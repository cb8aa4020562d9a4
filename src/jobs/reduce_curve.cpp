#include "greycard/jobs/reduce_curve.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "greycard/gamma_curve_model.h"

namespace greycard {

ControlPointReduction reduceToControlPoints(const GammaCurve& curve, CurveChannel channel) {
  ControlPointReduction result;
  result.name = curve.Name();
  result.channel = channel;
  const auto table = wantedTable(curve, channel);
  result.table.assign(table.begin(), table.end());

  GammaCurveModel model(false);
  GammaCurve through(curve.Name(), model);
  through.SetGammaTable(ColorChannel::All, std::make_shared<GammaTable>(result.table));
  through.GenerateControlPoints(ColorChannel::All);
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
  return result;
}

}  // namespace greycard
