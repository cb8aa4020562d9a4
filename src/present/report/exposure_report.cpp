#include <cmath>

#include "greycard/names.h"
#include "greycard/number_text.h"
#include "greycard/present/fitting.h"
#include "html_page.h"
#include "report_page.h"
#include "svg_bars.h"

namespace greycard::present {
namespace {

struct NamedEvaluation {
  const char* title;
  const ExposureEvaluation& evaluation;
};
using Evaluations = std::vector<NamedEvaluation>;

std::string parameterTable(const ExposureJob& job, const Evaluations& columns) {
  std::vector<std::vector<std::string>> rows = {{"parameter", "from", "to"}};
  for (const auto& column : columns) rows[0].push_back(column.title);
  for (std::size_t k = 0; k < kGaParameters; ++k) {
    rows.push_back({std::to_string(k) + " " + kExposureParameterNames[k]});
    for (const auto* bound : {&job.lowerBound, &job.upperBound})
      rows.back().push_back(job.fits(k) ? general((*bound)[k], 5) : "");
    for (const auto& column : columns)
      rows.back().push_back(fixed(column.evaluation.parameters[k], 4));
  }
  return htmlTable(rows) + htmlNote("Parameters without a range are not fitted.");
}

std::string imageTable(const std::vector<ExposureFigures>& images, const Evaluations& columns) {
  std::vector<std::vector<std::string>> rows = {{"image", "weight", "luma", "current", "wanted"}};
  for (const auto& column : columns) rows[0].push_back(column.title);
  for (std::size_t i = 0; i < images.size(); ++i) {
    const ExposureFigures& image = images[i];
    rows.push_back({htmlEscape(printable(image.name)), fixed(image.Weight, 2),
                    fixed(image.curr_luma, 2), fixed(image.cur_target, 2),
                    fixed(image.newTarget, 2)});
    for (const auto& column : columns)
      rows.back().push_back(fixed(column.evaluation.target.at(i), 2));
  }
  return htmlTable(rows);
}

std::string missedBars(const std::vector<ExposureFigures>& images, const Evaluations& columns) {
  BarChart chart("How far each image misses its target", "8-bit codes", {columns.back().title});
  if (columns.size() > 1) chart.nameMarks(columns.front().title);
  const auto missed = [&](const ExposureEvaluation& evaluation, std::size_t i) {
    return std::abs(evaluation.target.at(i) - images[i].newTarget);
  };
  for (std::size_t i = 0; i < images.size(); ++i) {
    const double error = missed(columns.back().evaluation, i);
    BarChart::Bar bar{images[i].name, {}, {error}, fixed(error, 2), {}};
    if (columns.size() > 1) bar.mark = missed(columns.front().evaluation, i);
    chart.addBar(std::move(bar));
  }
  return chart.svg();
}

std::string pageOf(const std::string& plot, const ExposureJob& job,
                   const std::vector<ExposureFigures>& images, const Evaluations& columns,
                   std::vector<std::string> facts, const std::vector<std::string>& warnings,
                   const std::optional<Provenance>& provenance) {
  const ExposureEvaluation& shown = columns.back().evaluation;
  facts.insert(facts.begin(),
               std::to_string(images.size()) + (images.size() == 1 ? " image" : " images"));
  const std::string body =
      htmlKeyFigure("Mean error", fixed(shown.meanError, 2),
                    "Mean difference of the luma target that the rule reaches from the one that is "
                    "wanted, in 8-bit codes. Weighted mean square " +
                        fixed(shown.error, 4) +
                        (columns.size() > 1 ? "; at the start the mean error was " +
                                                  fixed(columns.front().evaluation.meanError, 2)
                                            : std::string()) +
                        ".") +
      htmlSection("Luma targets", htmlSideBySide({plot, missedBars(images, columns)}) +
                                      imageTable(images, columns)) +
      htmlSection("Parameters of the rule", parameterTable(job, columns));
  return reportPage({"Auto-exposure targets", std::move(facts), warnings}, body, provenance);
}

}  // namespace

std::string exposureReport(const ExposureJob& job, const ExposureFit& fit,
                           const std::optional<Provenance>& provenance) {
  std::vector<std::string> warnings;
  if (!fit.bestKeepsConstraints)
    warnings.emplace_back("no point was found that keeps the constraints; look at the bounds");
  return pageOf(exposurePlot(fit), job, fit.images, {{"start", fit.start}, {"best", fit.best}},
                {std::to_string(fit.evaluations) + " evaluations",
                 std::string(stopReason(fit.resultCode)), "seed " + std::to_string(fit.seed)},
                warnings, provenance);
}

std::string exposureReport(const ExposureJob& job, const ExposureTrial& trial,
                           const std::optional<Provenance>& provenance) {
  return pageOf(exposurePlot(trial), job, trial.images, {{"the rule", trial.manual}},
                {"evaluated as it stands"}, {}, provenance);
}

}  // namespace greycard::present
