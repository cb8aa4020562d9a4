#include <utility>

#include "describe.h"
#include "greycard/present/noise.h"
#include "json_reader.h"
#include "json_writer.h"

// As described in docs/sigma_json.md.

namespace greycard::present {

template <>
struct EnumNames<LumaChoice> {
  static constexpr const char* kKind = "luma";
  static constexpr std::array kNames{std::pair{LumaChoice::Rec601, "rec601"},
                                     std::pair{LumaChoice::Green, "green"}};
};

void describe(auto& fields, Like<BareSamples> auto& raw) {
  fields("width", raw.width);
  fields("height", raw.height);
  fields("bits", raw.bits);
}

void describe(auto& fields, Like<FlatFieldOptions> auto& options) {
  fields.optional("luma", options.luma);
  fields.optional("raw", options.raw);
  fields.optional("black", options.black);
  fields.optional("white", options.white);
  fields.optional("bits", options.bits, 8, 16);
}

void describe(auto& fields, Like<SigmaEstimate> auto& estimate) {
  auto& report = estimate.report;
  fields("file", estimate.file);
  fields("width", estimate.width);
  fields("height", estimate.height);
  fields("center_noise_sigma", AllDigits{estimate.centreNoiseSigma});
  fields("lut", AllDigits{estimate.lut});
  fields.derived("unit", "code values of 8 bits");
  std::optional<double> fileCodes = estimate.fileCodes;
  fields.optional("file_codes_per_unit", fileCodes);
  if constexpr (std::remove_reference_t<decltype(fields)>::kReads)
    estimate.fileCodes = fileCodes.value_or(1.0);
  fields("msg", estimate.msg);
  fields("advice", estimate.advice);
  fields("center_ring_sigma", AllDigits{report.centreRingSigma});
  fields("center_window_empty", report.centreWindowEmpty);
  fields("ceiling_share", report.ceilingShare);
  fields("floor_share", report.floorShare);
  fields("high_byte_dropped", report.highByteDropped);
  fields("center_mean", report.centreMean);
  fields("corner_mean", report.cornerMean);
  fields.derived("fall_off", report.fallOff());
  fields("raw_ratio", AllDigits{report.rawRatio});
  fields("residual_sigma", report.residualSigma);
  fields("ring_pixels", report.ringPixels);
  fields.optional("unflatness", report.unflatness);
  std::optional<std::vector<std::string>> doubts = estimate.doubts;
  fields.optional("doubts", doubts);
  if constexpr (std::remove_reference_t<decltype(fields)>::kReads)
    estimate.doubts = doubts.value_or(std::vector<std::string>());
}

std::string toJson(const FlatFieldOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, FlatFieldOptions& options) {
  readDocument(text, JsonKind::Options, options);
}
std::string toJson(const SigmaEstimate& estimate) {
  return documentOf(estimate);
}
void fromJson(std::string_view text, SigmaEstimate& estimate) {
  readFresh(text, estimate);
}

}  // namespace greycard::present
