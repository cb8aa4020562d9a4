#pragma once

// Exposure fits, luma matches, white-balance mappings and skin calibrations, as described in
// docs/ae_json.md, wb_map_json.md and skin_json.md.

#include <string>

#include "describe.h"
#include "greycard/jobs/calibrate_skin.h"
#include "greycard/jobs/fit_exposure.h"
#include "greycard/jobs/map_white_balance.h"
#include "greycard/jobs/match_luma.h"

namespace greycard::present {

void describe(auto& fields, Like<ExposureImage> auto& image) {
  fields.optional("name", image.name);
  fields.optional("picture", image.picture);
  fields.optional("white_level", image.whiteLevel, 1, 65535);
  fields.optional("hist_CDF", image.hist_CDF);
  fields.optional("hist_RGB", image.hist_RGB);
  fields("Weight", image.Weight);
  fields.optional("newTarget", image.newTarget);
  fields.optional("curr_luma", image.curr_luma);
  fields.optional("cur_target", image.cur_target);
  fields("max_pushup_mean", image.max_pushup_mean);
  fields("max_pushdown_mean", image.max_pushdown_mean);
  fields("max_dark_mean", image.max_dark_mean);
}

void describe(auto& fields, Like<ExposureJob> auto& job) {
  fields("lowerBound", job.lowerBound);
  fields("upperBound", job.upperBound);
  fields("initialBound", job.initialBound);
  fields.optional("initial_parameter", job.initial_parameter);
  fields("parameters_enable", job.parameters_enable);
  fields("max_drc_gain", job.max_drc_gain);
  fields("ADRC_Enable", job.ADRC_Enable);
  fields.list(
      "images", job.images, [](auto& row, auto& image) { describe(row, image); }, kGaMaxImages);
}

void describe(auto& fields, Like<SearchOptions> auto& options) {
  fields("seed", options.seed);
  fields("max_seconds", options.maxSeconds);
  fields("max_evaluations", options.maxEvaluations);
}

void describe(auto& fields, Like<ExposureFigures> auto& image) {
  fields("name", image.name);
  fields("Weight", image.Weight);
  fields("curr_luma", image.curr_luma);
  fields("cur_target", image.cur_target);
  fields("newTarget", image.newTarget);
}

void describe(auto& fields, Like<ExposureEvaluation> auto& evaluation) {
  fields("parameters", evaluation.parameters);
  fields("histBasedSafeTarget", evaluation.target);
  fields("fourTargets", evaluation.fourTargets);
  fields("final_sat_pushup_pos", evaluation.pushUp);
  fields("final_sat_pushdown_pos", evaluation.pushDown);
  fields("final_dark_pos", evaluation.dark);
  fields("error", evaluation.error);
  fields("avg_targeterror", evaluation.meanError);
}

void describe(auto& fields, Like<ExposureFit> auto& fit) {
  fields("opt_endCond", fit.resultCode);
  fields.derived("stop_reason", std::string(stopReason(fit.resultCode)));
  fields("errorValue", fit.least);
  fields("evaluations", fit.evaluations);
  fields("seconds", fit.seconds);
  fields.derived("evaluations_per_second", fit.evaluationsPerSecond());
  fields("seed", fit.seed);
  fields("best_keeps_constraints", fit.bestKeepsConstraints);
  fields("images", fit.images);
  fields("start", fit.start);
  fields("best", fit.best);
  fields("returned", fit.returned);
}

void describe(auto& fields, Like<ExposureTrial> auto& trial) {
  fields("images", trial.images);
  fields("manual", trial.manual);
}

void describe(auto& fields, Like<LumaMatchOptions> auto& options) {
  fields("test", options.test);
  fields("target", options.target);
  describe(fields, options.search);
}

void describe(auto& fields, Like<LumaMatch> auto& match) {
  fields("factor", match.factor);
  fields("test_L", match.testL);
  fields("scaled_L", match.scaledL);
  fields("target_L", match.targetL);
}

void describe(auto& fields, Like<WhiteBalanceOptions> auto& options) {
  fields("from", options.from);
  fields("to", options.to);
  fields("points", options.points);
}

void describe(auto& fields, Like<AffineTransform> auto& t) {
  fields("a", t.a);
  fields("b", t.b);
  fields("c", t.c);
  fields("d", t.d);
  fields("e", t.e);
  fields("f", t.f);
}

void describe(auto& fields, Like<WhiteBalanceMapping> auto& mapping) {
  fields("coefficients", mapping.transform);
  fields.derived("spans_plane", mapping.spansPlane());
  fields.derived("largest_residual", mapping.largestResidual());
  fields.rows("references", mapping.from.size(), [&](auto& row, std::size_t k) {
    row("from", mapping.from[k]);
    row("to", mapping.to[k]);
    row.derived("mapped", mapping.transform(mapping.from[k]));
  });
  fields.list("points", mapping.points, [&](auto& row, auto& point) {
    row("point", point);
    row.derived("mapped", mapping.transform(point));
  });
}

void describe(auto& fields, Like<SkinOptions> auto& options) {
  fields.optional("matrix", options.matrix);
  fields("matrix_from", options.matrixFrom);
  fields("gamma", options.gamma);
}

void describe(auto& fields, Like<SkinSet> auto& set) {
  fields("accepted", set.accepted);
  fields.group("accepted_under", [&](auto& inner) {
    for (std::size_t light = 0; light < kSkinLights.size(); ++light)
      inner(kSkinLights[light], set.acceptedUnder[light]);
  });
  fields("h_not_finite", set.hueNotFinite);
  fields("h", set.h);
  fields("s", set.s);
  fields("y", set.y);
}

void describe(auto& fields, Like<SkinCalibration> auto& skin) {
  fields.group("charts", [&](auto& inner) {
    for (std::size_t light = 0; light < kSkinLights.size(); ++light)
      inner(kSkinLights[light], skin.charts[light]);
  });
  fields("matrix", skin.matrix);
  fields("matrix_from", skin.matrixFrom);
  fields("gamma", skin.gammaName);
  fields.derived("synthetic_colours", SkinColorHelper::kPoints);
  fields("upper", skin.upper);
  fields("lower", skin.lower);
  fields("warnings", skin.warnings);
}

}  // namespace greycard::present
