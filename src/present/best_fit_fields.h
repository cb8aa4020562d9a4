#pragma once

// The best fit, as described in docs/ccm_json.md.

#include <cmath>

#include "chart_fields.h"
#include "greycard/jobs/fit_chart_best.h"

namespace greycard::present {

template <>
struct EnumNames<FitDifference> {
  static constexpr const char* kKind = "colour difference";
  static constexpr auto kNames = namesInOrder<FitDifference>(kFitDifferenceNames);
};
template <>
struct EnumNames<FitEntries> {
  static constexpr const char* kKind = "number of entries";
  static constexpr std::array kNames{std::pair{FitEntries::six, "six"},
                                     std::pair{FitEntries::nine, "nine"}};
};
template <>
struct EnumNames<FitWhiteBalance> {
  static constexpr const char* kKind = "white balance";
  static constexpr auto kNames = namesInOrder<FitWhiteBalance>(kFitWhiteBalanceNames);
};
template <>
struct EnumNames<FitToneCurve> {
  static constexpr const char* kKind = "tone curve";
  static constexpr auto kNames = namesInOrder<FitToneCurve>(kFitToneCurveNames);
};
template <>
struct EnumNames<FitLight> {
  static constexpr const char* kKind = "light over the chart";
  static constexpr auto kNames = namesInOrder<FitLight>(kFitLightNames);
};

void describe(auto& fields, Like<FitOptions> auto& options) {
  fields("difference", options.difference);
  fields("norm", options.norm);
  fields("weights", options.patchWeights);
  fields("entries", options.entries);
  fields("exposure", options.exposure);
  fields("exposure_gain", options.exposureGain);
  fields("white_balance", options.whiteBalance);
  std::array<std::optional<double>, 3> limits;  // null: none
  for (std::size_t c = 0; c < 3; ++c)
    if (std::isfinite(options.rowNoiseLimits[c])) limits[c] = options.rowNoiseLimits[c];
  fields("noise_limits", limits);
  if constexpr (std::remove_reference_t<decltype(fields)>::kReads)
    for (std::size_t c = 0; c < 3; ++c)
      options.rowNoiseLimits[c] = limits[c].value_or(FitOptions::kUnlimited);
  fields("trade_off_steps", options.tradeOffSteps);
  fields("tone_curve", options.toneCurve);
  fields("given_curve", options.givenCurve);
  fields("light_field", options.light);
  fields("uncertainty", options.uncertainty);
  fields("held_out", options.heldOut);
  fields("compare_stated", options.compareStated);
}

void describe(auto& fields, Like<BestFitOptions> auto& options) {
  describe(fields, options.chart);
  fields("best", options.best);
}

void describe(auto& fields, Like<FitFigures> auto& figures) {
  fields("objective", figures.objective);
  fields("mean", figures.mean2000);
  fields("rms", figures.rms2000);
  fields("percentile_95", figures.percentile95);
  fields("worst", figures.max2000);
  fields("mean_levelled", figures.meanLevelled);
  fields("mean_cie76", figures.mean76);
  fields("mean_cie94", figures.mean94);
  fields("mean_cam16", figures.meanCam16);
  fields("mean_dl", figures.meanL);
  fields("mean_dc", figures.meanC);
  fields("mean_dh", figures.meanH);
  fields("metamerism_index", figures.metamerismIndex);
}

void describe(auto& fields, Like<HeldOutFigures> auto& figures) {
  fields("mean", figures.mean);
  fields("percentile_95", figures.percentile95);
}

void describe(auto& fields, Like<FitUncertainty> auto& errors) {
  fields("matrix", errors.matrix);
  fields("white_balance_gains", errors.gains);
  fields("curve_numbers", errors.curve);
  fields("exposure_gain", errors.exposure);
  fields("light_range", errors.lightRange);
  fields("delta_e", errors.dE2000);
}

void describe(auto& fields, Like<FittedPhotograph> auto& photograph) {
  fields("exposure_gain", photograph.exposure);
  fields("figures", photograph.figures);
  fields("stated", photograph.stated);
  fields("stated_refusal", photograph.statedRefusal);
  fields("light_range", photograph.lightRange);
  fields("light_coefficients", photograph.lightCoefficients);
  fields("lab", photograph.lab);
  fields("delta_e", photograph.dE2000);
  fields("split", photograph.split);
  fields("light", photograph.light);
  fields("left_out", photograph.leftOut);
}

void describe(auto& fields, Like<FitTradeOff> auto& row) {
  fields("limit", row.limit);
  fields("row_noise", row.rowNoise);
  fields("figures", row.figures);
}

void describe(auto& fields, Like<MatrixFitResult> auto& result) {
  fields("matrix", result.matrix);
  fields("white_balance_gains", result.gains);
  fields("row_noise", result.rowNoise);
  fields("condition_number", result.conditionNumber);
  fields("figures", result.figures);
  fields("leave_one_out", result.leaveOneOut);
  fields("six_fold", result.sixFold);
  fields("metamerism_basis", result.metamerismBasis);
  fields("curve_numbers", result.curveNumbers);
  fields("grey_residual", result.greyResidual);
  fields("tone_curve", result.toneCurve);
  fields("standard_errors", result.uncertainty);
  fields("trade_off", result.tradeOff);
  fields("photographs", result.photographs);
  fields("starts", result.starts);
  fields("best_start", result.bestStart);
  fields("evaluations", result.evaluations);
  fields("converged", result.converged);
  fields("notes", result.notes);
}

void describe(auto& fields, Like<BestChartFit> auto& fit) {
  using Fields = std::remove_reference_t<decltype(fields)>;
  if constexpr (!Fields::kReads) {
    const ChartFit first = fit.shown(0);
    const PatchTable light = fit.lightRgb(0);
    fields("photo", first.photo);
    fields("light", first.light);
    fields("gamma", first.gamma.name);
    fields("matrix", first.matrix);
    fields("white_balance_gains", first.whiteBalance);
    fields("exposure_gain", first.exposure);
    fields("delta_e", first.after);
    fields.rows("patches", kPatchCount, [&](auto& row, std::size_t i) {
      row("patch", i + 1);
      row("name", patchName(static_cast<int>(i)));
      row("rgb", light[i]);
      row("corrected_lab", first.correctedLab[i]);
      row("reference_lab", first.fit.m_targetLab[i]);
      row("delta_e", PatchErrors(first.after, i));
    });
  }
  fields("options", fit.options);
  fields("best", fit.best);
  fields("stated", fit.stated);
  fields("warnings", fit.warnings);
}

}  // namespace greycard::present
