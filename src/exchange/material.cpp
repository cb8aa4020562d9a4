#include "greycard/exchange/material.h"

#include <algorithm>
#include <stdexcept>

#include "greycard/errors.h"
#include "greycard/number_text.h"
#include "writers.h"

namespace greycard::exchange {
namespace {

// CIE 15:2004 for the standard illuminants and F2, F11; a Planckian radiator for Horizon.
std::optional<double> nominalKelvin(Illum light) {
  switch (light) {
    case illum_A:
      return 2856.0;
    case illum_D50:
      return 5003.0;
    case illum_D65:
      return 6504.0;
    case illum_D75:
      return 7504.0;
    case illum_TL84:
    case illum_Lowlight:
      return 4000.0;
    case illum_CoolWhite:
      return 4230.0;
    case illum_Horizon:
      return 2300.0;
    default:
      return std::nullopt;
  }
}

std::string printableAscii(std::string text) {
  for (char& c : text)
    if (c < ' ' || c > '~' || c == '"') c = '_';
  return text;
}

}  // namespace

FittedLight fittedLight(ChartFit fit, std::optional<double> kelvin) {
  if (kelvin && !(*kelvin >= 1000.0 && *kelvin <= 25000.0))
    throw std::invalid_argument("a colour temperature lies in 1000 to 25000 K, not at " +
                                general(*kelvin, 6));
  const std::optional<double> known = kelvin ? kelvin : nominalKelvin(fit.light);
  return {std::move(fit), known};
}

std::string cameraName(const FittedCamera& camera, const ExportOptions& options) {
  if (!options.camera.empty()) return printableAscii(options.camera);
  const std::string photo = camera.lights.front().fit.photo.stem().string();
  return photo.empty() ? "camera" : printableAscii(photo);
}

std::string titleOf(const Material& material, const ExportOptions& options) {
  switch (kindOf(material)) {
    case MaterialKind::Fit: {
      const auto& camera = std::get<FittedCamera>(material);
      return cameraName(camera, options) + ", " + illumName(camera.lights.front().fit.light);
    }
    case MaterialKind::Curve:
      return "tone curve " + printableAscii(std::get<CurveTables>(material).name);
    case MaterialKind::Lut2d:
      return "hue/saturation table";
    case MaterialKind::Noise:
      return "radial noise table";
  }
  return {};
}

std::vector<const FittedLight*> byTemperature(const FittedCamera& camera) {
  std::vector<const FittedLight*> lights;
  for (const FittedLight& light : camera.lights) {
    if (!light.kelvin)
      throw JobError(std::string("the light ") + illumName(light.fit.light) +
                     " tells no colour temperature, which this format needs; give it");
    lights.push_back(&light);
  }
  const auto kelvin = [](const FittedLight* light) { return *light->kelvin; };
  std::ranges::stable_sort(lights, {}, kelvin);
  if (const auto twin = std::ranges::adjacent_find(lights, {}, kelvin); twin != lights.end())
    throw JobError("two lights have the same colour temperature, " + general(kelvin(*twin), 6) +
                   " K; give one fit of each light");
  return lights;
}

Vector3 gainsOf(const ChartFit& fit) {
  Vector3 gains = fit.whiteBalance;
  for (double& gain : gains) gain *= fit.exposure;
  return gains;
}

}  // namespace greycard::exchange
