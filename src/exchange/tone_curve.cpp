#include "tone_curve.h"

#include <algorithm>

namespace greycard::exchange {

CurveValues curveValues(const FittedCamera& camera) {
  CurveValues curves = camera.lights.front().fit.pipeline().m_gamma;
  for (auto& curve : curves)
    for (double& value : curve) value = std::clamp(value, 0.0, 1.0);
  return curves;
}

CurveValues curveValues(const CurveTables& tables) {
  CurveValues curves;
  for (std::size_t c = 0; c < 3; ++c) {
    const GammaTable& table = tables.channels[tables.unified ? 0 : c].table;
    for (const std::int32_t code : table)
      curves[c].push_back(std::clamp(static_cast<double>(code) / kCurveMax, 0.0, 1.0));
  }
  return curves;
}

std::vector<double> commonCurve(const CurveValues& curves, std::vector<std::string>& notes) {
  if (curves[0] != curves[1] || curves[2] != curves[1])
    notes.push_back("this format has one tone curve for all channels: that of green was taken");
  return curves[1];
}

double curveAt(std::span<const double> curve, double x) {
  const auto steps = static_cast<double>(curve.size() - 1);
  const double position = std::clamp(x, 0.0, 1.0) * steps;
  const auto step = static_cast<std::size_t>(std::min(position, steps - 1.0));
  return curve[step] + (position - static_cast<double>(step)) * (curve[step + 1] - curve[step]);
}

}  // namespace greycard::exchange
