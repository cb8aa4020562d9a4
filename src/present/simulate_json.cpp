#include <type_traits>
#include <utility>

#include "chart_fields.h"
#include "describe.h"
#include "greycard/present/simulate.h"
#include "json_reader.h"
#include "json_writer.h"

// As described in docs/simulate_json.md and, of flat fields, docs/sigma_json.md.

namespace greycard::present {

template <>
struct EnumNames<ModelSensor> {
  static constexpr const char* kKind = "sensor";
  static constexpr std::array kNames{
      std::pair{ModelSensor::Ordinary, "ordinary"}, std::pair{ModelSensor::Narrow, "narrow"},
      std::pair{ModelSensor::Broad, "broad"}, std::pair{ModelSensor::Colorimetric, "colorimetric"}};
};

template <>
struct EnumNames<BayerPattern> {
  static constexpr const char* kKind = "mosaic";
  static constexpr auto kNames =
      namesInOrder<BayerPattern>(std::array{"RGGB", "BGGR", "GRBG", "GBRG"});
};

void describe(auto& fields, Like<DngForm> auto& form) {
  fields.optional("bayer", form.bayer);
  fields("bits", form.bits);
}

void describe(auto& fields, Like<SimulationSettings> auto& s) {
  fields("light", s.light);
  fields("sensor", s.sensor);
  fields("width", s.width);
  fields("height", s.height);
  fields("share", s.sizeShare);
  fields("offset_x", s.offsetX);
  fields("offset_y", s.offsetY);
  fields("rotation_deg", s.rotationDeg);
  fields("tilt_deg", s.tiltDeg);
  fields("yaw_deg", s.yawDeg);
  fields("surround", s.surround);
  fields("exposure", s.whiteShare);
  fields("vignetting", s.vignetting);
  fields("blur_px", s.blurSigma);
  fields("shot_noise", s.shotNoise);
  fields("read_noise", s.readNoise);
  fields("seed", s.seed);
  fields("bits", s.bits);
  fields("encoding", s.encoding);
  fields("black_level", s.blackLevel);
  fields("white_level", s.whiteLevel);
}

void describe(auto& fields, Like<SimulatedChart> auto& chart) {
  auto& s = chart.settings;
  auto& truth = chart.truth;
  fields("file", chart.file);
  fields.derived("synthetic", true);
  fields("width", s.width);
  fields("height", s.height);
  fields("centres", truth.centres);
  fields("corners", truth.corners);
  fields("pitch_px", truth.pitch);
  fields("patch_px", truth.patchSide);
  fields.derived("patch_area_over_minimum", chart.patchAreaOverMinimum());
  fields("side_ratio_max", truth.sideRatio);
  fields("turn_deg", truth.turnDeg);
  fields("light", s.light);
  fields("sensor", s.sensor);
  fields("bits", s.bits);
  fields.optional("dng", chart.dng);
  fields("encoding", s.encoding);
  fields("black_level", s.blackLevel);
  double whiteLevel = chart.whiteLevel();
  fields("white_level", whiteLevel);
  if constexpr (std::remove_reference_t<decltype(fields)>::kReads) s.whiteLevel = whiteLevel;
  fields("white_rgb", truth.whiteRgb);
  fields("rgb_linear", truth.rgb);
  fields("noise_sigma", truth.noiseSigma);
  fields("shading", truth.shading);
  fields("seed", s.seed);
}

void describe(auto& fields, Like<FlatFieldSettings> auto& s) {
  fields("width", s.width);
  fields("height", s.height);
  fields("bits", s.bits);
  fields("level", s.level);
  fields("fall_off", s.fallOff);
  fields("center_noise_sigma", s.centreSigma);
  fields("corner_gain", s.cornerGain);
  fields("seed", s.seed);
}

void describe(auto& fields, Like<SimulatedFlatField> auto& field) {
  auto& s = field.settings;
  fields("file", field.file);
  fields.derived("synthetic", true);
  fields("width", s.width);
  fields("height", s.height);
  fields("bits", s.bits);
  fields("level", s.level);
  fields("fall_off", s.fallOff);
  fields("center_noise_sigma", s.centreSigma);
  fields("corner_gain", s.cornerGain);
  fields.derived("lut", field.noiseGains());
  fields("seed", s.seed);
}

std::string toJson(const SimulationSettings& settings) {
  return documentOf(settings);
}
void fromJson(std::string_view text, SimulationSettings& settings) {
  readDocument(text, JsonKind::Options, settings);
}
std::string toJson(const SimulatedChart& chart) {
  return documentOf(chart);
}
void fromJson(std::string_view text, SimulatedChart& chart) {
  readFresh(text, chart);
}

std::string toJson(const FlatFieldSettings& settings) {
  return documentOf(settings);
}
void fromJson(std::string_view text, FlatFieldSettings& settings) {
  readDocument(text, JsonKind::Options, settings);
}
std::string toJson(const SimulatedFlatField& field) {
  return documentOf(field);
}
void fromJson(std::string_view text, SimulatedFlatField& field) {
  readFresh(text, field);
}

}  // namespace greycard::present
