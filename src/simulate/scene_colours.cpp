#include "scene_colours.h"

#include <algorithm>
#include <array>

#include "model_sensor.h"
#include "spectral_tables.h"

namespace greycard {
namespace {

constexpr std::size_t kWhitePatch = 18;
// Darker than the black patch (0.03), so that the two can be told apart.
constexpr double kFrameReflectance = 0.015;

constexpr std::array kLights{illum_A,   illum_D65,     illum_TL84,
                             illum_D50, illum_Horizon, illum_CoolWhite};

CDoubleMatrix lightSpectrum(Illum light, const CDoubleMatrix& gridNm) {
  constexpr int kF2 = 1;  // column; the reference colours know no F2
  return light == illum_CoolWhite ? resample(kFluorescentTable, kF2, 1, gridNm)
                                  : illuminantSpectrum(light, gridNm);
}

Vector3 scaled(const Vector3& v, const Vector3& factors) {
  return {v[0] * factors[0], v[1] * factors[1], v[2] * factors[2]};
}
Vector3 scaled(const Vector3& v, double factor) {
  return scaled(v, {factor, factor, factor});
}

}  // namespace

std::span<const Illum> simulatedLights() {
  return kLights;
}

bool canBeSimulated(Illum light) {
  return std::ranges::find(kLights, light) != kLights.end();
}

SceneColours sceneColours(const SimulationSettings& settings) {
  const CDoubleMatrix grid = wavelengthGrid();
  const CDoubleMatrix light = lightSpectrum(settings.light, grid);
  const CDoubleMatrix sensor = sensitivities(settings.sensor, grid);
  const CDoubleMatrix reflectances = chartReflectances(grid);

  SceneColours colours;
  for (int i = 0; i < grid.rows(); ++i) {
    for (std::size_t c = 0; c < 3; ++c) {
      const double response = light[i][0] * sensor[i][c];
      colours.white[c] += response;
      for (std::size_t patch = 0; patch < kPatchCount; ++patch)
        colours.patches[patch][c] += response * reflectances[i][patch];
    }
  }
  const double gain = settings.whiteShare / std::ranges::max(colours.patches[kWhitePatch]);
  colours.white = scaled(colours.white, gain);
  for (auto& patch : colours.patches) patch = scaled(patch, gain);
  colours.frame = scaled(colours.white, kFrameReflectance);
  colours.surround = scaled(colours.white, settings.surround);
  return colours;
}

}  // namespace greycard
