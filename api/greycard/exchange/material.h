#pragma once
/// \file
/// \ingroup own

#include <optional>
#include <variant>
#include <vector>

#include "greycard/curve_tables.h"
#include "greycard/exchange/export.h"
#include "greycard/jobs/estimate_sigma.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/lut2d_config.h"

namespace greycard::exchange {

// What a file of another program can be made of.

/// Gains and matrix under one light. The matrix must be one to linear sRGB primaries: that of a fit
/// with ChartFitOptions::transform 0.
struct FittedLight {
  ChartFit fit;
  std::optional<double> kelvin;  ///< correlated colour temperature of the light, where it is known
};

/// The fit with the colour temperature of its light: that given, or else the published one of A,
/// D50, D65, D75, TL84, Lowlight, CoolWhite and Horizon.
/// \throws std::invalid_argument for a temperature outside 1000..25000 K
GREYCARD_EXCHANGE_EXPORT FittedLight fittedLight(ChartFit fit, std::optional<double> kelvin = {});

/// A camera under one or more lights, in any order. A format for one light takes the first, and the
/// tone curve is the first's everywhere.
struct FittedCamera {
  std::vector<FittedLight> lights;
};

using Material = std::variant<FittedCamera, CurveTables, Lut2DConfig, SigmaEstimate>;
/// In the order of the alternatives.
enum class MaterialKind { Fit, Curve, Lut2d, Noise };
inline MaterialKind kindOf(const Material& material) {
  return static_cast<MaterialKind>(material.index());
}

}  // namespace greycard::exchange
