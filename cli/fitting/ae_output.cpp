// The results of greycard ae as text, JSON and a plot.

#include <algorithm>

#include "ae_fit.h"
#include "greycard/names.h"
#include "greycard/number_text.h"
#include "text_table.h"
#include "transition.h"

namespace greycard::cli {
namespace {

constexpr std::array<const char*, kGaParameters> kRoles{"target A: numerator",
                                                        "target B: numerator",
                                                        "upper dark target: numerator",
                                                        "lower dark target: numerator",
                                                        "push-up range: 1 - start",
                                                        "push-down range: 1 - start",
                                                        "ceiling factor",
                                                        "floor factor",
                                                        "push-up range: 1 - end",
                                                        "push-down range: 1 - end",
                                                        "dark range: start",
                                                        "dark range: end"};

struct Named {
  std::string title;
  const AeEvaluation& evaluation;
};

// The evaluations worth a column: the last one only when it is not the best.
std::vector<Named> columnsOf(const AeFit& fit) {
  std::vector<Named> columns{{"start", fit.start}, {"best", fit.best}};
  if (!fit.returnsBest()) columns.push_back({"last", fit.returned});
  return columns;
}

std::string parameterTable(const AeJob& job, const std::vector<Named>& columns) {
  std::vector<TextTable::Column> titles{{"x"}, {"parameter", TextTable::Align::Left}};
  for (const Named& column : columns) titles.push_back({column.title});
  titles.push_back({"", TextTable::Align::Left});
  TextTable table(titles);
  for (std::size_t k = 0; k < kGaParameters; ++k) {
    std::vector<std::string> row{std::to_string(k), kRoles[k]};
    for (const Named& column : columns) row.push_back(fixed(column.evaluation.parameters[k], 4));
    row.push_back(job.fits(k) ? "" : "not fitted");
    table.addRow(row);
  }
  return table.text();
}

std::string imageTable(const AeJob& job, const std::vector<Named>& columns) {
  std::vector<TextTable::Column> titles{
      {"image", TextTable::Align::Left}, {"weight"}, {"luma"}, {"current"}, {"wanted"}};
  for (const Named& column : columns) titles.push_back({column.title});
  TextTable table(titles);
  for (std::size_t i = 0; i < job.images(); ++i) {
    std::vector<std::string> row{printable(job.names[i]), fixed(job.Weight[i], 2),
                                 fixed(job.curr_luma[i], 2), fixed(job.cur_target[i], 2),
                                 fixed(job.newTarget[i], 2)};
    for (const Named& column : columns) row.push_back(fixed(column.evaluation.target[i], 2));
    table.addRow(row);
  }
  return "Luma targets\n" + table.text();
}

std::string errorTable(const std::vector<Named>& columns) {
  TextTable table({{"", TextTable::Align::Left}, {"weighted mean square"}, {"mean |error|"}});
  for (const auto& [title, evaluation] : columns)
    table.addRow({title, fixed(evaluation.error, 4), fixed(evaluation.meanError, 3)});
  return table.text();
}

std::string tables(const AeJob& job, const std::vector<Named>& columns) {
  return parameterTable(job, columns) + "\n" + imageTable(job, columns) + "\n" +
         errorTable(columns);
}

Json imageJson(const AeJob& job, std::size_t i) {
  return {{"name", job.names[i]},
          {"Weight", job.Weight[i]},
          {"curr_luma", job.curr_luma[i]},
          {"cur_target", job.cur_target[i]},
          {"newTarget", job.newTarget[i]}};
}

Json evaluationJson(const AeEvaluation& evaluation) {
  return {{"parameters", evaluation.parameters},
          {"histBasedSafeTarget", evaluation.target},
          {"fourTargets", evaluation.fourTargets},
          {"final_sat_pushup_pos", evaluation.pushUp},
          {"final_sat_pushdown_pos", evaluation.pushDown},
          {"final_dark_pos", evaluation.dark},
          {"error", evaluation.error},
          {"avg_targeterror", evaluation.meanError}};
}

Json imagesJson(const AeJob& job) {
  Json images = Json::array();
  for (std::size_t i = 0; i < job.images(); ++i) images.push_back(imageJson(job, i));
  return images;
}

}  // namespace

std::string aeText(const AeJob& job, const AeFit& fit) {
  std::string text = std::to_string(job.images()) + (job.images() == 1 ? " image: " : " images: ");
  if (!job.fitsAny())
    return text + "no group is enabled, so nothing was fitted\n\n" +
           tables(job, {{"value", fit.best}});
  text += std::string(stopReason(fit.resultCode)) + " after " +
          std::to_string(fit.report.evaluations) + " evaluations";
  if (fit.report.seconds > 0.0)
    text += " in " + fixed(fit.report.seconds, 2) + " s (" + fixed(fit.evaluationsPerSecond(), 0) +
            " a second, seed " + std::to_string(fit.options.seed) + ")";
  text += "\n\n" + tables(job, columnsOf(fit));
  if (!fit.returnsBest())
    text +=
        "\nThe time ran out: \"last\" are the parameters that NLoptHelper::GA returns then, those "
        "of\nthe last evaluation; \"best\" are the best that the search met.\n";
  if (!fit.report.bestKeepsConstraints)
    text +=
        "\nNo point was found that keeps the constraints ([4] - [8] and [5] - [9] 0.005, [2] - [3] "
        "40,\n[11] - [10] 0.08 or more); \"best\" breaks them least. Look at the bounds.\n";
  return text;
}

std::string aeText(const AeJob& job, const AeEvaluation& manual) {
  return "Evaluated as it stands\n\n" + tables(job, {{"value", manual}});
}

Json aeJson(const AeJob& job, const AeFit& fit) {
  return {{"opt_endCond", fit.resultCode},
          {"stop_reason", stopReason(fit.resultCode)},
          {"errorValue", fit.minimum},
          {"evaluations", fit.report.evaluations},
          {"seconds", fit.report.seconds},
          {"evaluations_per_second", fit.evaluationsPerSecond()},
          {"seed", fit.options.seed},
          {"best_keeps_constraints", fit.report.bestKeepsConstraints},
          {"images", imagesJson(job)},
          {"start", evaluationJson(fit.start)},
          {"best", evaluationJson(fit.best)},
          {"returned", evaluationJson(fit.returned)}};
}

Json aeJson(const AeJob& job, const AeEvaluation& manual) {
  return {{"images", imagesJson(job)}, {"manual", evaluationJson(manual)}};
}

std::string aePlot(const AeJob& job, const AeEvaluation* before, const AeEvaluation& after) {
  SvgPlot plot("Luma targets: wanted and reached", {"wanted target (bins)", {}, {}},
               {"target of the rule (bins)", {}, {}});
  double top = *std::max_element(job.newTarget.begin(), job.newTarget.end());
  double bottom = *std::min_element(job.newTarget.begin(), job.newTarget.end());
  const auto points = [&](const AeEvaluation& evaluation) {
    std::vector<Point2> list;
    for (std::size_t i = 0; i < job.images(); ++i) {
      list.push_back({job.newTarget[i], evaluation.target[i]});
      top = std::max(top, evaluation.target[i]);
      bottom = std::min(bottom, evaluation.target[i]);
    }
    return list;
  };
  const auto reached = points(after);
  const auto started = before != nullptr ? points(*before) : std::vector<Point2>();
  plot.useEqualScales();
  plot.addLine("reached = wanted", {{bottom, bottom}, {top, top}}, "#888888",
               SvgPlot::Stroke::Dashed);
  if (before != nullptr) plot.addMarkers("before", started, plotColour(1), SvgPlot::Marker::Ring);
  plot.addMarkers(before != nullptr ? "after (best)" : "the rule", reached, plotColour(0));
  return plot.svg();
}

}  // namespace greycard::cli
