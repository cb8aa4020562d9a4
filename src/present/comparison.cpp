#include "greycard/present/comparison.h"

#include <array>
#include <stdexcept>
#include <utility>

#include "chart_fields.h"
#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/present/best_fit.h"
#include "greycard/present/chart.h"
#include "greycard/present/verdict.h"
#include "json_reader.h"
#include "json_writer.h"

namespace greycard::present {
namespace {

JudgedChart judged(const ChartFit& fit, const char* kind) {
  return {{},        fit.photo,        kind,
          fit.light, fit.correctedLab, fit.fit.m_targetLab,
          fit.after, fit.matrix,       fit.whiteBalance};
}

JudgedChart judgedFrom(const std::string& text) {
  const Json json = parsedJson(text);
  if (json.contains("stated")) {
    BestChartFit best;
    fromJson(text, best);
    return judged(best.shown(0), "best fit");
  }
  if (json.contains("matrix")) {
    ChartFit fit;
    fromJson(text, fit);
    return judged(fit, "fit");
  }
  if (!json.contains("mean_ciede2000"))
    throw std::invalid_argument("it is neither a fit nor an evaluation of a chart");
  ChartEvaluation evaluation;
  fromJson(text, evaluation);
  return {{},
          evaluation.photo,
          "evaluation",
          evaluation.light,
          evaluation.measuredLab,
          evaluation.referenceLab,
          evaluation.errors,
          {},
          {}};
}

}  // namespace

template <>
struct EnumNames<ColourGrade> {
  static constexpr const char* kKind = "grade";
  static constexpr auto kNames = namesInOrder<ColourGrade>(kColourGradeNames);
};

void describe(auto& fields, Like<ColourVerdict> auto& verdict) {
  fields("mean", verdict.mean);
  fields("percentile_95", verdict.percentile95);
  fields("grade", verdict.grade);
}

void describe(auto& fields, Like<JudgedChart> auto& chart) {
  fields("file", chart.file);
  fields("photo", chart.photo);
  fields("kind", chart.kind);
  fields("light", chart.light);
  fields.derived("ciede2000", colourVerdict(chart.errors.ciede2000));
  fields("lab", chart.lab);
  fields("reference_lab", chart.referenceLab);
  fields("matrix", chart.matrix);
  fields("white_balance_gains", chart.whiteBalance);
}

void describe(auto& fields, Like<ChartComparison> auto& comparison) {
  fields("a", comparison.a);
  fields("b", comparison.b);
  fields.derived("same_reference", comparison.shareReference());
  fields.derived("mean_ciede2000_between", comparison.between.ciede2000.mean);
  fields.rows("patches", kPatchCount, [&](auto& row, std::size_t i) {
    row.derived("patch", i + 1);
    row.derived("name", patchName(static_cast<int>(i)));
    row.derived("ciede2000_a", comparison.a.errors.ciede2000.patch[i]);
    row.derived("ciede2000_b", comparison.b.errors.ciede2000.patch[i]);
    row.derived("ciede2000_between", comparison.between.ciede2000.patch[i]);
  });
}

ChartComparison::ChartComparison(JudgedChart a_, JudgedChart b_)
    : a(std::move(a_)), b(std::move(b_)), between(colourErrors(a.lab, b.lab)) {}

JudgedChart readJudgedChart(const std::filesystem::path& file) {
  try {
    JudgedChart chart = judgedFrom(readWholeFile(file));
    chart.file = file;
    return chart;
  } catch (const std::invalid_argument& error) {
    throw JobError(quoted(file) + " can't be compared: " + error.what() +
                   "; greycard ccm or evaluate PHOTO --json FILE writes one");
  }
}

std::string toJson(const ChartComparison& comparison) {
  return documentOf(comparison);
}

void fromJson(std::string_view text, ChartComparison& comparison) {
  ChartComparison fresh;
  readFresh(text, fresh);
  for (JudgedChart* chart : {&fresh.a, &fresh.b})
    chart->errors = colourErrors(chart->referenceLab, chart->lab);
  comparison = ChartComparison(std::move(fresh.a), std::move(fresh.b));
}

}  // namespace greycard::present
