#pragma once

// Charts located, fitted and judged, as described in docs/ccm_json.md.

#include <array>
#include <string>
#include <utility>

#include "describe.h"
#include "greycard/jobs/evaluate_chart.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/jobs/locate_chart.h"
#include "greycard/macbeth_chart_data.h"

namespace greycard::present {

template <>
struct EnumNames<SampleEncoding> {
  static constexpr const char* kKind = "encoding";
  static constexpr std::array kNames{std::pair{SampleEncoding::sRGB, "srgb"},
                                     std::pair{SampleEncoding::linear, "linear"}};
};

template <>
struct EnumNames<Illum> {
  static constexpr const char* kKind = "light";
  static constexpr std::array kNames{std::pair{illum_A, "A"},
                                     std::pair{illum_D65, "D65"},
                                     std::pair{illum_TL84, "TL84"},
                                     std::pair{illum_Outdoor, "Outdoor"},
                                     std::pair{illum_Lowlight, "Lowlight"},
                                     std::pair{illum_LED, "LED"},
                                     std::pair{illum_Strobe, "Strobe"},
                                     std::pair{illum_D50, "D50"},
                                     std::pair{illum_Horizon, "Horizon"},
                                     std::pair{illum_CoolWhite, "CoolWhite"},
                                     std::pair{illum_D75, "D75"},
                                     std::pair{illum_LED1, "LED1"},
                                     std::pair{illum_LED2, "LED2"}};
};

template <>
struct EnumNames<FitFormula> {
  static constexpr const char* kKind = "colour difference";
  static constexpr std::array kNames{std::pair{FitFormula::CIE76, "CIE76"},
                                     std::pair{FitFormula::CIE94, "CIE94"}};
};

void describe(auto& fields, Like<LocateOptions> auto& options) {
  fields.optional("encoding", options.samples.encoding);
  fields.optional("black", options.samples.blackLevel);
  fields.optional("white", options.samples.whiteLevel);
  fields("regions", options.regions);
  fields("force", options.force);
}

void describe(auto& fields, Like<ChartDetection> auto& detection) {
  fields.derived("trustworthy", detection.trustworthy());
  fields("doubts", detection.doubts);
  fields("quads", detection.quads);
  fields("quads_used", detection.quadsUsed);
  fields("size_px", detection.size);
  fields("orientation_error", detection.error);
  fields("centres", detection.points);
  fields("regions", detection.regions);
  if constexpr (std::remove_reference_t<decltype(fields)>::kReads)
    detection.stage = ChartStage::Done;  // nothing else is written
}

void describe(auto& fields, Like<LocatedChart> auto& chart) {
  fields.block("centres", chart.detection,
               [](auto& inner, auto& detection) { describe(inner, detection); });
  if (!chart.detection) fields.derived("regions", chart.regions);
  fields("sampled_regions", chart.regions);
}

void describe(auto& fields, Like<ChartSearch> auto& search) {
  fields("photo", search.photo);
  fields("width", search.width);
  fields("height", search.height);
  describe(fields, search.chart);
}

void describe(auto& fields, Like<ChartFitOptions> auto& options) {
  describe(fields, options.locate);
  fields("light", options.light);
  fields("gamma", options.gamma);
  fields("delta_e", options.formula);
  fields("transform", options.transform);
  fields("noise_rate", options.noiseRate);
  fields.optional("saturation", options.saturation);
  fields("sat", options.targetSaturation);
  fields("hue", options.targetHue);
  fields("white_patches", options.whitePatches);
  fields("reference_lab", options.referenceLab);
  fields("reference_srgb", options.referenceSRgb);
}

void describe(auto& fields, Like<ErrorColumn> auto& column) {
  fields("mean", column.mean);
  fields("worst", column.worst);
  fields("worst_patch", OneBased{column.worstPatch});
}

void describe(auto& fields, Like<ColourErrors> auto& errors) {
  fields("cie76", errors.cie76);
  fields("cie94", errors.cie94);
  fields("ciede2000", errors.ciede2000);
}

// The differences of one patch.
struct PatchErrors {
  double cie76 = 0.0, cie94 = 0.0, ciede2000 = 0.0;

  PatchErrors(const ColourErrors& errors, std::size_t patch)
      : cie76(errors.cie76.patch[patch]),
        cie94(errors.cie94.patch[patch]),
        ciede2000(errors.ciede2000.patch[patch]) {}
};

void describe(auto& fields, Like<PatchErrors> auto& errors) {
  fields("cie76", errors.cie76);
  fields("cie94", errors.cie94);
  fields("ciede2000", errors.ciede2000);
}

void describe(auto& fields, Like<ColorFitReport> auto& fit) {
  fields("start_error", fit.m_startError);
  fields("first_cost", fit.m_firstCost);
  fields("last_cost", fit.m_lastCost);
  fields("evaluations", fit.m_evaluations);
  fields("searches", fit.m_powellRuns);
  fields("stopped_because", fit.m_stopReason);
  fields("hue_weight", fit.m_hueWeight);
  fields("saturation_pressure", fit.m_saturationPressure);
  fields.optional("chroma_change", fit.m_chromaChange);
  fields.optional("chroma_change_wanted", fit.m_chromaChangeWanted);
}

void describe(auto& fields, Like<CameraGamma> auto& gamma) {
  fields("name", gamma.name);
  fields("bits", gamma.bits);
  fields("codes", gamma.tables);
}

void describeClipping(auto& fields, auto& channels) {
  std::array<double, 3> floor{}, ceiling{};
  for (std::size_t c = 0; c < 3; ++c) {
    floor[c] = channels[c].floor;
    ceiling[c] = channels[c].ceiling;
  }
  fields("share_at_floor", floor);
  fields("share_at_ceiling", ceiling);
  if constexpr (std::remove_reference_t<decltype(fields)>::kReads)
    for (std::size_t c = 0; c < 3; ++c) channels[c] = {ceiling[c], floor[c]};
}

void describe(auto& fields, Like<ChartFit> auto& fit) {
  fields("photo", fit.photo);
  fields("light", fit.light);
  fields.derived("gamma", fit.gamma.name);
  fields("formula", fit.formula);
  fields("matrix", fit.matrix);
  fields("white_balance_gains", fit.whiteBalance);
  fields("exposure_gain", fit.exposure);
  fields.derived("delta_e_before", fit.before);
  fields.derived("delta_e", fit.after);
  fields("fit", fit.fit);
  fields("chart", fit.chart);
  fields("warnings", fit.warnings);
  fields("tone_curve", fit.gamma);
  fields.rows("patches", kPatchCount, [&](auto& row, std::size_t i) {
    row.derived("patch", i + 1);
    row.derived("name", patchName(static_cast<int>(i)));
    row("rgb", fit.measuredRgb[i]);
    row("noise", fit.measuredNoise[i]);
    row("balanced_rgb", fit.fit.m_balancedRGB[i]);
    row("balanced_lab", fit.fit.m_uncorrectedLab[i]);
    row("corrected_lab", fit.correctedLab[i]);
    row("reference_lab", fit.fit.m_targetLab[i]);
    row.derived("delta_e_before", PatchErrors(fit.before, i));
    row.derived("delta_e", PatchErrors(fit.after, i));
    row("pixels", fit.sampling.pixels[i]);
    describeClipping(row, fit.sampling.clipping[i]);
  });
}

// Differences are made of the other fields when a fit is read.
inline void completeErrors(ChartFit& fit) {
  fit.before = colourErrors(fit.fit.m_targetLab, fit.fit.m_uncorrectedLab);
  fit.after = colourErrors(fit.fit.m_targetLab, fit.correctedLab);
}

void describe(auto& fields, Like<EvaluationOptions> auto& options) {
  describe(fields, options.locate);
  fields("light", options.light);
  fields("scale", options.scale);
}

void describe(auto& fields, Like<ChartEvaluation> auto& evaluation) {
  const ColourErrors& errors = evaluation.errors;
  fields("photo", evaluation.photo);
  fields("light", evaluation.light);
  fields.derived("mean_cie76", errors.cie76.mean);
  fields.derived("mean_cie94", errors.cie94.mean);
  fields.derived("mean_ciede2000", errors.ciede2000.mean);
  fields("chart", evaluation.chart);
  fields("warnings", evaluation.warnings);
  fields.rows("patches", kPatchCount, [&](auto& row, std::size_t i) {
    row.derived("patch", i + 1);
    row.derived("name", patchName(static_cast<int>(i)));
    row("rgb", evaluation.measuredRgb[i]);
    row("noise", evaluation.measuredNoise[i]);
    row("measured_lab", evaluation.measuredLab[i]);
    row("reference_lab", evaluation.referenceLab[i]);
    row.derived("cie76", errors.cie76.patch[i]);
    row.derived("cie94", errors.cie94.patch[i]);
    row.derived("ciede2000", errors.ciede2000.patch[i]);
  });
}

}  // namespace greycard::present
