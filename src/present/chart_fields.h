#pragma once

// Charts located, fitted and judged, as described in docs/ccm_json.md.

#include <array>
#include <string>
#include <utility>

#include "capture_fields.h"
#include "describe.h"
#include "greycard/jobs/evaluate_chart.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/jobs/locate_chart.h"
#include "greycard/macbeth_chart_data.h"
#include "light_names.h"

namespace greycard::present {

template <>
struct EnumNames<SampleEncoding> {
  static constexpr const char* kKind = "encoding";
  static constexpr std::array kNames{std::pair{SampleEncoding::sRGB, "srgb"},
                                     std::pair{SampleEncoding::linear, "linear"}};
};

template <>
struct EnumNames<CornerKind> {
  static constexpr const char* kKind = "kind of corners";
  static constexpr std::array kNames{std::pair{CornerKind::PatchField, "field"},
                                     std::pair{CornerKind::PatchCentres, "patches"}};
};

template <>
struct EnumNames<SearchMethods> {
  static constexpr const char* kKind = "search method";
  static constexpr std::array kNames{std::pair{SearchMethods::Both, "both"},
                                     std::pair{SearchMethods::Lattice, "lattice"},
                                     std::pair{SearchMethods::Stated, "stated"}};
};

template <>
struct EnumNames<ChartMethod> {
  static constexpr const char* kKind = "method";
  static constexpr auto kNames =
      namesInOrder<ChartMethod>(std::array{"none", "lattice", "stated", "corners"});
};

template <>
struct EnumNames<ChartStage> {
  static constexpr const char* kKind = "stage";
  static constexpr auto kNames = namesInOrder<ChartStage>(
      std::array{"picture", "contours", "quads", "grid", "colours", "done"});
};

template <>
struct EnumNames<ChartRefusal> {
  static constexpr const char* kKind = "refusal";
  static constexpr auto kNames =
      namesInOrder<ChartRefusal>(std::array{"none", "picture", "too_small", "no_patches", "no_grid",
                                            "other_colours", "covered", "cut", "mirrored"});
};

template <>
struct EnumNames<FitExposure> {
  static constexpr const char* kKind = "exposure";
  static constexpr auto kNames = namesInOrder<FitExposure>(kFitExposureNames);
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
  fields.optional("corners", options.corners);
  fields("corners_of", options.cornersOf);
  fields("method", options.method);
  fields.optional("within", options.within);
  fields("sampled_share", options.sampledShare);
  fields("force", options.force);
}

void describe(auto& fields, Like<ChartMapping> auto& mapping) {
  fields("homography", mapping.homography);
  fields("radial", mapping.radial);
  fields("lens_centre", mapping.lensCentre);
  fields("lens_radius", mapping.lensRadius);
}

void describe(auto& fields, Like<ChartPlacement> auto& placement) {
  fields("centres", placement.centres);
  fields("patch_corners", placement.patches);
  fields("mapping", placement.mapping);
  fields("orientation_deg", placement.orientationDeg);
  fields("pitch_px", placement.pitch);
  fields("gate", placement.gate);
  fields("supporting_patches", placement.supportingPatches);
  fields("outliers", placement.outliers);
}

void describe(auto& fields, Like<ChartDetection> auto& detection) {
  bool found = detection.found();
  fields("found", found);
  fields("stage", detection.stage);
  fields("method", detection.method);
  fields("refusal", detection.refusal);
  fields("reason", detection.reason);
  fields.derived("trustworthy", detection.trustworthy());
  fields("doubts", detection.doubts);
  fields("quads", detection.quads);
  fields("quads_used", detection.quadsUsed);
  if (found) {
    fields("size_px", detection.size);
    fields("orientation_error", detection.error);
    fields("centres", detection.points);
    fields("regions", detection.regions);
    fields("placement", detection.placement);
  } else {
    fields("candidate", detection.candidate);
    fields("candidate_regions", detection.candidateRegions);
  }
}

void describe(auto& fields, Like<PatchCheck> auto& check) {
  fields("likeness", check.likeness);
  fields("outliers", check.outliers);
  fields.derived("trustworthy", check.trustworthy());
  fields("doubts", check.doubts);
}

void describe(auto& fields, Like<LocatedChart> auto& chart) {
  fields.block("found", chart.detection,
               [](auto& inner, auto& detection) { describe(inner, detection); });
  fields.optional("check", chart.check);
  fields("regions", chart.regions);
  fields("patch_corners", chart.patches);
  fields("upright", chart.upright);
  fields("sampled_share", chart.sampledShare);
}

void describe(auto& fields, Like<ChartSearch> auto& search) {
  fields("photo", search.photo);
  fields("width", search.width);
  fields("height", search.height);
  fields("refused_because", search.refusal);
  fields.optional("capture", search.capture);
  describe(fields, search.chart);
}

void describe(auto& fields, Like<FoundCharts> auto& found) {
  fields("photo", found.photo);
  fields("width", found.width);
  fields("height", found.height);
  fields.optional("capture", found.capture);
  fields("charts", found.charts);
  std::vector<PatchRegion> within;
  for (const ChartDetection& chart : found.charts) within.push_back(surroundings(chart));
  fields.derived("within", within);
}

void describe(auto& fields, Like<ChartFitOptions> auto& options) {
  describe(fields, options.locate);
  fields("light", options.light);
  fields("gamma", options.gamma);
  fields("delta_e", options.formula);
  fields("transform", options.transform);
  fields.optional("rgb_to_xyz", options.rgbToXyz);
  fields.optional("xyz_to_rgb", options.xyzToRgb);
  fields("exposure", options.exposure);
  fields("exposure_gain", options.exposureGain);
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
  fields("levelled_ciede2000", errors.levelled2000);
}

// The differences of one patch.
struct PatchErrors {
  double cie76 = 0.0, cie94 = 0.0, ciede2000 = 0.0;
  Vector3 split{};

  PatchErrors(const ColourErrors& errors, std::size_t patch)
      : cie76(errors.cie76.patch[patch]),
        cie94(errors.cie94.patch[patch]),
        ciede2000(errors.ciede2000.patch[patch]),
        split(errors.split[patch]) {}
};

void describe(auto& fields, Like<PatchErrors> auto& errors) {
  fields("cie76", errors.cie76);
  fields("cie94", errors.cie94);
  fields("ciede2000", errors.ciede2000);
  fields("dl", errors.split[0]);
  fields("dc", errors.split[1]);
  fields("dh", errors.split[2]);
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

void describe(auto& fields, Like<SampleLevels> auto& levels) {
  fields("encoding", levels.encoding);
  fields("black", levels.blackLevel);
  fields("white", levels.whiteLevel);
  fields("scale", levels.scale);
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
  fields.derived("reference_light", referenceLight(fit.light));
  fields.optional("samples", fit.levels);
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
  fields.optional("capture", fit.capture);
  fields("tone_curve", fit.gamma);
  fields.rows("patches", kPatchCount, [&](auto& row, std::size_t i) {
    row.derived("patch", i + 1);
    row.derived("name", patchName(static_cast<int>(i)));
    row("rgb", fit.measuredRgb[i]);
    row("noise", fit.measuredNoise[i]);
    row("median", fit.measuredMedian[i]);
    row("unevenness", fit.unevenness[i]);
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
  fields.derived("reference_light", referenceLight(evaluation.light));
  fields.optional("samples", evaluation.levels);
  fields.derived("mean_cie76", errors.cie76.mean);
  fields.derived("mean_cie94", errors.cie94.mean);
  fields.derived("mean_ciede2000", errors.ciede2000.mean);
  fields.derived("mean_levelled_ciede2000", errors.levelled2000.mean);
  fields("chart", evaluation.chart);
  fields("warnings", evaluation.warnings);
  fields.optional("capture", evaluation.capture);
  fields.rows("patches", kPatchCount, [&](auto& row, std::size_t i) {
    row.derived("patch", i + 1);
    row.derived("name", patchName(static_cast<int>(i)));
    row("rgb", evaluation.measuredRgb[i]);
    row("noise", evaluation.measuredNoise[i]);
    row("median", evaluation.measuredMedian[i]);
    row("unevenness", evaluation.unevenness[i]);
    row("measured_lab", evaluation.measuredLab[i]);
    row("reference_lab", evaluation.referenceLab[i]);
    row.derived("cie76", errors.cie76.patch[i]);
    row.derived("cie94", errors.cie94.patch[i]);
    row.derived("ciede2000", errors.ciede2000.patch[i]);
    row.derived("dl", errors.split[i][0]);
    row.derived("dc", errors.split[i][1]);
    row.derived("dh", errors.split[i][2]);
    row("pixels", evaluation.sampling.pixels[i]);
    describeClipping(row, evaluation.sampling.clipping[i]);
  });
}

}  // namespace greycard::present
