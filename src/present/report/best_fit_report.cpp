#include <cmath>
#include <cstddef>
#include <utility>

#include "chart_pages.h"
#include "colour_sections.h"
#include "greycard/number_text.h"
#include "greycard/present/best_fit.h"
#include "html_page.h"
#include "svg_plot.h"

namespace greycard::present {
namespace {

using Rows = std::vector<std::vector<std::string>>;

// Both fits in one table, on the same samples and by the same measures.
std::string comparisonSection(const BestChartFit& fit) {
  constexpr std::pair<const char*, double FitFigures::*> kFigures[] = {
      {"CIEDE2000: mean", &FitFigures::mean2000},
      {"95 %", &FitFigures::percentile95},
      {"worst", &FitFigures::max2000},
      {"levelled mean", &FitFigures::meanLevelled},
      {"CIE94: mean", &FitFigures::mean94},
      {"CIE76: mean", &FitFigures::mean76},
      {"CAM16-UCS: mean", &FitFigures::meanCam16},
      {"mean |dL*|", &FitFigures::meanL},
      {"mean |dC*|", &FitFigures::meanC},
      {"mean |dH*|", &FitFigures::meanH},
      {"metamerism index", &FitFigures::metamerismIndex},
      {"objective of the best fit", &FitFigures::objective}};
  Rows rows = {{""}};
  for (const auto& [name, figure] : kFigures) rows.push_back({name});
  const auto add = [&](const std::string& title, const FitFigures& figures) {
    rows.front().push_back(title);
    for (std::size_t i = 0; i < std::size(kFigures); ++i)
      rows[i + 1].push_back(fixed(figures.*kFigures[i].second, 2));
  };
  const auto& photographs = fit.best.photographs;
  for (std::size_t k = 0; k < photographs.size(); ++k) {
    const std::string of =
        photographs.size() > 1 ? ", " + htmlEscape(fit.stated[k].photo.filename().string()) : "";
    if (photographs[k].stated) add("stated fit" + of, *photographs[k].stated);
    add("best fit" + of, photographs[k].figures);
  }
  if (photographs.size() > 1) add("best fit, all", fit.best.figures);
  return htmlSection(
      "Stated and best fit",
      htmlTable(rows) + htmlNote("Over the patches that took part. Levelled: without the common "
                                 "difference of L*. Metamerism index: 100 - 5.5 times the mean "
                                 "error (" +
                                 fit.best.metamerismBasis + ")."));
}

std::string plusMinus(double value, double error, int decimals) {
  return fixed(value, decimals) + " &#177; " + general(error, 2);
}

// Held-out errors, standard errors and noise.
std::string beliefSection(const BestChartFit& fit) {
  const MatrixFitResult& best = fit.best;
  Rows held = {{"dE00 of patches that", "mean", "95 %"}};
  const auto add = [&](const char* name, double mean, double percentile95) {
    held.push_back({name, fixed(mean, 2), fixed(percentile95, 2)});
  };
  add("took part", best.figures.mean2000, best.figures.percentile95);
  if (best.leaveOneOut)
    add("were left out, one at a time", best.leaveOneOut->mean, best.leaveOneOut->percentile95);
  if (best.sixFold)
    add("were left out, a sixth at a time", best.sixFold->mean, best.sixFold->percentile95);
  const char* const names[] = {"R", "G", "B"};
  Rows matrix = {{"matrix", "R", "G", "B", "noise"}};
  for (std::size_t r = 0; r < 3; ++r) {
    matrix.push_back({names[r]});
    for (std::size_t c = 0; c < 3; ++c)
      matrix.back().push_back(best.uncertainty
                                  ? plusMinus(best.matrix[r][c], best.uncertainty->matrix[r][c], 4)
                                  : fixed(best.matrix[r][c], 4));
    matrix.back().push_back(fixed(best.rowNoise[r], 2));
  }
  return htmlSection(
      "How far to believe it",
      htmlTable(held) + htmlTable(matrix) +
          htmlNote((best.uncertainty ? std::string("\u00b1: standard error from the "
                                                   "measured noise of the patches. ")
                                     : std::string()) +
                   "Noise: root of the sum of squares of a row. Condition number of "
                   "the matrix " +
                   fixed(best.conditionNumber, 2) + ". " + std::to_string(best.starts) +
                   " searches, " + std::to_string(best.evaluations) + " evaluations."));
}

std::string tradeOffSection(const MatrixFitResult& best) {
  if (best.tradeOff.empty()) return "";
  SvgPlot plot("Colour error against noise", {"noise amplification of the noisiest row", {}, {}},
               {"mean dE00", {}, {}});
  std::vector<Point2> points;
  Rows rows = {{"limit", "noise R", "G", "B", "mean dE00", "95 %"}};
  for (const FitTradeOff& row : best.tradeOff) {
    points.push_back(
        {std::max({row.rowNoise[0], row.rowNoise[1], row.rowNoise[2]}), row.figures.mean2000});
    rows.push_back({fixed(row.limit, 2), fixed(row.rowNoise[0], 2), fixed(row.rowNoise[1], 2),
                    fixed(row.rowNoise[2], 2), fixed(row.figures.mean2000, 2),
                    fixed(row.figures.percentile95, 2)});
  }
  plot.addLine("", points, plotColour(0));
  plot.addMarkers("", points, plotColour(0));
  return htmlSection("Error against noise", htmlSideBySide({plot.svg(), htmlTable(rows)}));
}

std::string curveSection(const MatrixFitResult& best) {
  if (best.toneCurve.empty()) return "";
  SvgPlot plot("Tone curve of the photographs", {"measured value, sRGB-encoded", 0.0, 1.0},
               {"light, sRGB-encoded", 0.0, 1.0});
  std::vector<Point2> points;
  const double last = static_cast<double>(best.toneCurve.size() - 1);
  for (std::size_t i = 0; i < best.toneCurve.size(); ++i) {
    const double light = best.toneCurve[i];
    const double encoded =
        light > 0.0031308 ? 1.055 * std::pow(light, 1.0 / 2.4) - 0.055 : 12.92 * light;
    points.push_back({static_cast<double>(i) / last, encoded});
  }
  plot.addLine("unchanged", {{0.0, 0.0}, {1.0, 1.0}}, quietColour(), SvgPlot::Stroke::Dashed);
  plot.addLine("curve", points, plotColour(0));
  std::string html = plot.svg();
  if (best.greyResidual)
    html += htmlNote("The greys miss it by " + fixed(*best.greyResidual, 2) +
                     " L* (root mean square); up to " + fixed(MatrixFitResult::kGreysDisagree, 1) +
                     " it is to be believed.");
  return htmlSection("Tone curve of the photographs", html);
}

// Per cent of the light at the chart's centre, as the patches lie.
std::string lightSection(const BestChartFit& fit) {
  std::string html;
  for (std::size_t k = 0; k < fit.best.photographs.size(); ++k) {
    const FittedPhotograph& photograph = fit.best.photographs[k];
    if (!(photograph.lightRange > 0.0)) continue;
    Rows rows = {{"row", "1", "2", "3", "4", "5", "6"}};
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      if (i % 6 == 0) rows.push_back({std::to_string(i / 6 + 1)});
      rows.back().push_back(fixed(100.0 * photograph.light[i], 1));
    }
    html += "<h3>" + htmlEscape(fit.stated[k].photo.filename().string()) + ": falls off by " +
            fixed(photograph.lightRange, 1) + " %</h3>\n" + htmlTable(rows);
  }
  return html.empty() ? "" : htmlSection("Light over the chart, per cent", html);
}

std::string patchBelief(const BestChartFit& fit) {
  const auto& photographs = fit.best.photographs;
  Rows rows = {{"patch", "dE00", "dL*", "dC*", "dH*", "left out because"}};
  for (std::size_t k = 0; k < photographs.size(); ++k)
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      const FittedPhotograph& photograph = photographs[k];
      const auto& split = photograph.split[i];
      rows.push_back(
          {(photographs.size() > 1 ? htmlEscape(fit.stated[k].photo.filename().string()) + ": "
                                   : std::string()) +
               std::to_string(i + 1) + " " + patchName(static_cast<int>(i)),
           fit.best.uncertainty
               ? plusMinus(photograph.dE2000[i], fit.best.uncertainty->dE2000[k][i], 2)
               : fixed(photograph.dE2000[i], 2),
           fixed(split[0], 2), fixed(split[1], 2), fixed(split[2], 2),
           htmlEscape(photograph.leftOut[i])});
    }
  return htmlSection("Errors of the patches", htmlTable(rows));
}

}  // namespace

std::string fitReport(const BestChartFit& fit, const Picture& photograph,
                      const std::optional<Provenance>& provenance) {
  const ChartFit first = fit.shown(0);
  ChartStory story = storyOf(first);
  story.result.name = "best fit";
  story.before.emplace(
      JudgedColours{"stated fit", fit.stated.front().correctedLab, fit.stated.front().after});
  const SampleMeaning samples = meaningOf(first.levels);
  const Develop before = asPhotographed(samples);
  const Develop after = [&](const Picture& picture) {
    return correctedPhotograph(picture, fit, 0, samples);
  };
  const std::string body = verdictCard(story, " after the best fit") +
                           fitFigures(first, photograph, before, after, story) +
                           comparisonSection(fit) + beliefSection(fit) + tradeOffSection(fit.best) +
                           curveSection(fit.best) + lightSection(fit) + patchBelief(fit) +
                           fitDetails(first, photograph, before, story);
  return reportPage(fitHead("Colour correction, best fit", first, photograph), body, provenance);
}

}  // namespace greycard::present
