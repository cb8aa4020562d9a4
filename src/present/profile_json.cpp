#include <utility>

#include "chart_fields.h"
#include "greycard/errors.h"
#include "greycard/present/profile.h"
#include "json_reader.h"
#include "json_writer.h"

namespace greycard::present {

template <>
struct EnumNames<KelvinSource> {
  static constexpr const char* kKind = "source of a temperature";
  static constexpr auto kNames = namesInOrder<KelvinSource>(kKelvinSourceNames);
};

void describe(auto& fields, Like<ProfiledLight> auto& light) {
  fields("kelvin", light.kelvin);
  fields("kelvin_from", light.source);
  fields.derived("mired", light.mired());
  fields("fit", light.fit);
}

void describe(auto& fields, Like<MatrixStep> auto& step) {
  fields("mired", step.mired);
  fields("mean", step.mean);
  fields("worst", step.worst);
  fields("worst_patch", OneBased{step.worstPatch});
  fields.derived("per_100_mired", step.per100Mired());
}

void describe(auto& fields, Like<CameraProfile> auto& profile) {
  fields.derived("errors", profile.errors);
  fields.derived("steps", profile.steps);
  fields("lights", profile.lights);
  fields("warnings", profile.warnings);
}

void describe(auto& fields, Like<ProfilePoint> auto& point) {
  fields("kelvin", point.kelvin);
  fields("matrix", point.matrix);
  fields("white_balance_gains", point.whiteBalance);
  fields("exposure_gain", point.exposure);
  fields("warmer", OneBased{point.warmer});
  fields("cooler", OneBased{point.cooler});
  fields("warmer_share", point.warmerShare);
}

std::string toJson(const CameraProfile& profile) {
  return documentOf(profile);
}
void fromJson(std::string_view text, CameraProfile& profile) {
  CameraProfile read;
  readFresh(text, read);
  std::vector<LightFit> fits;
  std::vector<KelvinSource> sources;
  for (ProfiledLight& light : read.lights) {
    completeErrors(light.fit);
    fits.push_back({std::move(light.fit), light.kelvin});
    sources.push_back(light.source);
  }
  try {
    CameraProfile fresh = profileOf(std::move(fits));
    for (std::size_t i = 0; i < sources.size(); ++i) fresh.lights[i].source = sources[i];
    fresh.warnings = std::move(read.warnings);
    profile = std::move(fresh);
  } catch (const JobError& error) {
    throw std::invalid_argument(std::string("lights can't be used: ") + error.what());
  }
}

std::string toJson(const ProfilePoint& point) {
  return documentOf(point);
}
void fromJson(std::string_view text, ProfilePoint& point) {
  readFresh(text, point);
}

}  // namespace greycard::present
