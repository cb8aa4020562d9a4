#pragma once

#include "greycard/chart_simulator.h"

namespace greycard {

/// Linear values of everything in the picture, as shares of full scale.
struct SceneColours {
  PatchTable patches{};
  Vector3 white{};  ///< of a perfect reflector
  Vector3 frame{}, surround{};
};

/// value[c] = gain * sum of light * reflectance * sensitivity[c] over the wavelength grid, the gain
/// such that the white patch's strongest channel reaches whiteShare.
SceneColours sceneColours(const SimulationSettings& settings);

/// Whether the light has a spectrum of its own.
bool canBeSimulated(Illum light);

}  // namespace greycard
