#include "simulation_settings.h"

#include <stdexcept>
#include <string>

#include "scene_colours.h"
#include "setting_check.h"

namespace greycard {
namespace {

void checkLevels(const SimulationSettings& s) {
  if (s.bits != 8 && s.bits != 16)
    throw std::invalid_argument("a picture has 8 or 16 bits, not " + std::to_string(s.bits));
  const SampleLevels levels = samplesOf(s);
  checkSetting({"white level", levels.whiteLevel, 1.0, s.bits == 8 ? 255.0 : 65535.0});
  checkSetting({"black level", levels.blackLevel, 0.0, levels.whiteLevel - 1.0});
}

}  // namespace

SampleLevels samplesOf(const SimulationSettings& s) {
  const double most = s.bits == 8 ? 255.0 : 65535.0;
  return {s.blackLevel, s.whiteLevel == 0.0 ? most : s.whiteLevel, 1.0, s.encoding};
}

void checkSettings(const SimulationSettings& s) {
  if (!canBeSimulated(s.light))
    throw std::invalid_argument(std::string("there is no spectrum of the light ") +
                                illumName(s.light) +
                                "; use A, D65, TL84, D50, Horizon or CoolWhite");
  if (modelSensorName(s.sensor) == std::string_view("unknown"))
    throw std::invalid_argument("there is no such model sensor");
  for (const SettingRange& range : {SettingRange{"width", 1.0 * s.width, 16, 20000},
                                    {"height", 1.0 * s.height, 16, 20000},
                                    {"chart's share of the picture", s.sizeShare, 0.02, 2},
                                    {"offset along x", s.offsetX, -1, 1},
                                    {"offset along y", s.offsetY, -1, 1},
                                    {"rotation in degrees", s.rotationDeg, -360, 360},
                                    {"tilt in degrees", s.tiltDeg, -70, 70},
                                    {"yaw in degrees", s.yawDeg, -70, 70},
                                    {"surround in red", s.surround[0], 0, 1},
                                    {"surround in green", s.surround[1], 0, 1},
                                    {"surround in blue", s.surround[2], 0, 1},
                                    {"exposure of the white patch", s.whiteShare, 0.001, 4},
                                    {"vignetting", s.vignetting, 0, 0.95},
                                    {"blur in pixels", s.blurSigma, 0, 50},
                                    {"shot noise", s.shotNoise, 0, 1},
                                    {"read noise", s.readNoise, 0, 1}})
    checkSetting(range);
  checkPixels(s.width, s.height);
  if (s.encoding != SampleEncoding::linear && s.encoding != SampleEncoding::sRGB)
    throw std::invalid_argument("samples are linear or sRGB-encoded, nothing else");
  checkLevels(s);
}

}  // namespace greycard
