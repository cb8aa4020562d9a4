#pragma once

// What JSON holds of many photographs, as described in docs/batch.md.

#include <array>

#include "describe.h"
#include "greycard/batch/settings.h"
#include "greycard/batch/summary.h"
#include "light_names.h"

namespace greycard::present {

template <>
struct EnumNames<batch::Job> {
  static constexpr const char* kKind = "job";
  static constexpr auto kNames = namesInOrder<batch::Job>(batch::kJobNames);
};

}  // namespace greycard::present

namespace greycard::batch {

using present::Like;
using present::OneBased;

/// \throws std::invalid_argument that begins with the field
void checkRule(const OutlierRule& rule);

void describe(auto& fields, Like<OutlierRule> auto& rule) {
  fields("factor", rule.factor);
  fields("floor", rule.floor);
}

// All but the job's options and result, which are whole documents.
void describe(auto& fields, Like<Result> auto& result) {
  fields("photo", result.photo);
  fields("job", result.job);
  fields.derived("status", result.failed() ? "failed" : "done");
  fields("reason", result.reason);
  fields("greycard", result.version);
  fields("content_hash", result.contentHash);
  fields("settings_hash", result.settingsHash);
}

void describe(auto& fields, Like<Failure> auto& failure) {
  fields("photo", failure.photo);
  fields("reason", failure.reason);
}

void describe(auto& fields, Like<OutsideFit> auto& fit) {
  fields("photo", fit.photo);
  fields("row", OneBased{fit.row});
  fields("column", OneBased{fit.column});
  fields("value", fit.value);
  fields("distance", fit.distance);
}

void describe(auto& fields, Like<LightSummary> auto& light) {
  fields("light", light.light);
  fields("fits", light.fits);
  fields("mean_matrix", light.mean);
  fields("spread", light.spread);
  fields("median_matrix", light.median);
  fields("median_deviation", light.medianDeviation);
  fields("outside", light.outside);
}

void describe(auto& fields, Like<Summary> auto& summary) {
  fields("job", summary.job);
  fields("greycard", summary.version);
  fields("photographs", summary.photographs);
  fields.derived("failed", summary.failures.size());
  fields("failures", summary.failures);
  fields("outliers", summary.outliers);
  fields("lights", summary.lights);
}

}  // namespace greycard::batch
