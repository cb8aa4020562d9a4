#pragma once

// Charts as cameras see them whose right answer is known.

#include <array>
#include <cmath>
#include <cstdint>

#include "colour_space.h"
#include "greycard/chart_simulator.h"
#include "greycard/matrix_fit.h"
#include "matrix_functions.h"
#include "table_conversion.h"

namespace greycard::fixture {

inline constexpr Matrix3 kSRgbSpace{
    {{0.4124, 0.3576, 0.1805}, {0.2126, 0.7152, 0.0722}, {0.0193, 0.1192, 0.9505}}};
inline constexpr Vector3 kWhite{95.05, 100.0, 108.9};

inline PatchTable referenceOf(Illum light) {
  MacbethChartData chart;
  chart.LoadMCCCIELAB(light);
  return chart.m_RefLab;
}

/// Linear RGB of a colour in L*a*b*, out of gamut too.
inline Vector3 linearOf(const Vector3& lab) {
  static const Matrix3 toRgb = toMatrix3(minv(toMatrix(kSRgbSpace)));
  Vector3 xyz = CIELab_to_XYZ(lab, kWhite);
  for (double& value : xyz) value /= 100.0;
  return multiply(toRgb, xyz);
}
inline Vector3 labOf(const Vector3& linear) {
  Vector3 xyz = multiply(kSRgbSpace, linear);
  for (double& value : xyz) value *= 100.0;
  return XYZ_to_CIELab(xyz, kWhite);
}

/// What a camera measures whose linear RGB is turned into the reference colours by gains, then a
/// matrix whose rows sum to 1.
struct KnownCamera {
  Matrix3 matrix{{{1.6, -0.4, -0.2}, {-0.25, 1.5, -0.25}, {0.05, -0.55, 1.5}}};
  Vector3 gains{1.8, 1.0, 1.5};
  double exposure = 1.25;

  PatchTable measured(const PatchTable& referenceLab) const {
    const Matrix3 inverse = toMatrix3(minv(toMatrix(matrix)));
    PatchTable rgb;
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      rgb[i] = multiply(inverse, linearOf(referenceLab[i]));
      for (std::size_t c = 0; c < 3; ++c) rgb[i][c] /= gains[c] * exposure;
    }
    return rgb;
  }
};

/// The chart without noise as a model sensor sees it, the white patch at 0.8.
inline MatrixFitSamples seenBy(ModelSensor sensor, Illum light) {
  ChartSimulator simulator;
  simulator.m_settings.sensor = sensor;
  simulator.m_settings.light = light;
  simulator.m_settings.width = simulator.m_settings.height = 64;
  simulator.Simulate();
  MatrixFitSamples samples;
  samples.photographs.emplace_back().rgb = simulator.m_truth.rgb;
  samples.referenceLab = referenceOf(light);
  return samples;
}

/// Options for the fit alone, without what tells how far to believe it.
inline FitOptions fitAlone() {
  FitOptions options;
  options.heldOut = options.uncertainty = options.compareStated = false;
  return options;
}

/// Plane of light at a patch, with slopes by FitLight's x and y.
inline double planeAt(std::size_t patch, double alongX, double alongY) {
  const double x = (static_cast<double>(patch % 6) - 2.5) / 2.5;
  const double y = (static_cast<double>(patch / 6) - 1.5) / 2.5;
  return 1.0 + alongX * x + alongY * y;
}

}  // namespace greycard::fixture
