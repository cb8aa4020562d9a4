#include <cstddef>

#include "ccm_result.h"

namespace greycard::cli {
namespace {

Json errorJson(const ColourErrors& errors) {
  Json json;
  const auto add = [&](const char* name, const ErrorColumn& column) {
    json[name] = {
        {"mean", column.mean}, {"worst", column.worst}, {"worst_patch", column.worstPatch + 1}};
  };
  add("cie76", errors.cie76);
  add("cie94", errors.cie94);
  add("ciede2000", errors.ciede2000);
  return json;
}

Json patchErrors(const ColourErrors& errors, std::size_t i) {
  return {{"cie76", errors.cie76.patch[i]},
          {"cie94", errors.cie94.patch[i]},
          {"ciede2000", errors.ciede2000.patch[i]}};
}

Json patchJson(const CcmResult& result, std::size_t i) {
  Json floor = Json::array(), ceiling = Json::array();
  for (const ChannelClipping& channel : result.sampling.clipping[i]) {
    floor.push_back(channel.floor);
    ceiling.push_back(channel.ceiling);
  }
  return {{"patch", i + 1},
          {"name", patchName(static_cast<int>(i))},
          {"rgb", result.data.m_RGB[i]},
          {"noise", result.data.m_Noise[i]},
          {"balanced_rgb", result.fit.m_balancedRGB[i]},
          {"measured_lab", result.fit.m_uncorrectedLab[i]},
          {"corrected_lab", result.correctedLab[i]},
          {"reference_lab", result.fit.m_targetLab[i]},
          {"delta_e_before", patchErrors(result.before, i)},
          {"delta_e", patchErrors(result.after, i)},
          {"pixels", result.sampling.pixels[i]},
          {"share_at_floor", floor},
          {"share_at_ceiling", ceiling}};
}

Json fitJson(const ColorFitReport& fit) {
  Json json = {{"first_cost", fit.m_firstCost},
               {"last_cost", fit.m_lastCost},
               {"evaluations", fit.m_evaluations},
               {"searches", fit.m_powellRuns},
               {"stopped_because", fit.m_stopReason},
               {"hue_weight", fit.m_hueWeight},
               {"saturation_pressure", fit.m_saturationPressure}};
  if (fit.m_chromaChange) json["chroma_change"] = *fit.m_chromaChange;
  if (fit.m_chromaChangeWanted) json["chroma_change_wanted"] = *fit.m_chromaChangeWanted;
  return json;
}

}  // namespace

Json ccmJson(const CcmResult& result) {
  Json json = {{"photo", result.photo.string()},     {"light", result.light},
               {"gamma", result.gammaName},          {"formula", result.formula},
               {"matrix", result.pipeline.m_ccm},    {"white_balance_gains", result.whiteBalance},
               {"exposure_gain", result.exposure},   {"delta_e_before", errorJson(result.before)},
               {"delta_e", errorJson(result.after)}, {"fit", fitJson(result.fit)},
               {"chart", chartJson(result.chart)},   {"warnings", result.warnings}};
  json["patches"] = Json::array();
  for (std::size_t i = 0; i < kPatchCount; ++i) json["patches"].push_back(patchJson(result, i));
  return json;
}

}  // namespace greycard::cli
