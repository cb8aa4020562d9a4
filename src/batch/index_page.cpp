#include <algorithm>
#include <cmath>
#include <vector>

#include "greycard/batch/summary.h"
#include "greycard/names.h"
#include "greycard/number_text.h"
#include "greycard/present/verdict.h"
#include "html_page.h"

namespace greycard::batch {
namespace {

using present::htmlEscape;

std::string plain(const std::string& text) {
  return htmlEscape(printable(text));
}

std::string counted(std::size_t count, const std::string& thing) {
  return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string picture(const Result& result) {
  if (result.thumbnail.empty()) return {};
  return "<img style=\"width:220px;max-width:none\" alt=\"" + plain(result.photo.string()) +
         "\" src=\"" + htmlEscape(result.thumbnail) + "\">";
}

// Text in a cell of a table of numbers.
std::string prose(const std::string& html) {
  return "<div "
         "style=\"text-align:left;white-space:normal;overflow-wrap:anywhere;min-width:11rem\">" +
         html + "</div>";
}

std::string error(const std::optional<double>& value) {
  return value ? fixed(*value, 2) : std::string();
}

std::string gains(const Figures& figures) {
  if (!figures.whiteBalance) return {};
  std::string text;
  for (const double gain : *figures.whiteBalance)
    text += (text.empty() ? "" : "<br>") + fixed(gain, 3);
  return text;
}

std::string warnings(const Result& result, const Summary& summary) {
  std::string text;
  for (const LightSummary& light : summary.lights)
    for (const OutsideFit& fit : light.outside)
      if (fit.photo == result.photo)
        text += "<p><strong>lies outside the other fits under " +
                std::string(illumName(light.light)) + "</strong></p>";
  for (const std::string& warning : result.figures.warnings)
    text += "<p>" + plain(warning) + "</p>";
  return prose(text);
}

std::string failuresSection(const std::vector<const Result*>& failed) {
  if (failed.empty()) return {};
  std::vector<std::vector<std::string>> rows{{"", prose("photograph"), prose("why")}};
  for (const Result* result : failed)
    rows.push_back(
        {picture(*result), prose(plain(result->photo.string())), prose(plain(result->reason))});
  return present::htmlSection("What failed", present::htmlTable(rows));
}

std::string signedText(double value, int decimals) {
  return (value < 0.0 ? "" : "+") + fixed(value, decimals);
}

std::string matrixTable(const LightSummary& light) {
  std::vector<std::vector<std::string>> rows{{"", "R", "G", "B"}};
  constexpr const char* kRows[] = {"R", "G", "B"};
  for (std::size_t row = 0; row < 3; ++row) {
    rows.push_back({kRows[row]});
    for (std::size_t column = 0; column < 3; ++column)
      rows.back().push_back(signedText(light.mean[row][column], 4) + " \u00b1 " +
                            fixed(light.spread[row][column], 4));
  }
  return present::htmlTable(rows);
}

std::string outsideTable(const LightSummary& light, const OutlierRule& rule) {
  if (light.outside.empty()) return present::htmlNote("No fit lies outside the others.");
  std::vector<std::vector<std::string>> rows{
      {prose("lies outside"), "entry", "value", "median", "distance"}};
  for (const OutsideFit& fit : light.outside)
    rows.push_back(
        {prose(plain(fit.photo.string())),
         "row " + std::to_string(fit.row + 1) + ", column " + std::to_string(fit.column + 1),
         signedText(fit.value, 4), signedText(light.median[fit.row][fit.column], 4),
         fixed(fit.distance, 1)});
  return present::htmlTable(rows) +
         present::htmlNote(
             "The entry furthest from its median, in units of 1.4826 times the "
             "median absolute deviation, or of " +
             general(rule.floor, 6) +
             " where that is larger; outside is what is "
             "further than " +
             general(rule.factor, 6) + ".");
}

std::string lightsSection(const Summary& summary) {
  std::string html;
  for (const LightSummary& light : summary.lights)
    html += "<h3>" + std::string(illumName(light.light)) + ", " + counted(light.fits, "fit") +
            "</h3>\n" +
            present::htmlSideBySide(
                {present::htmlFigure(matrixTable(light), "Mean matrix and standard deviation"),
                 outsideTable(light, summary.outliers)});
  return html.empty() ? html : present::htmlSection("The fits of each light", html);
}

// Which of two photographs is to be looked at first; what is not a number first of all.
bool isWorse(const Result* a, const Result* b) {
  const auto badness = [](const Result* result) {
    const double mean = result->figures.meanError.value_or(0.0);
    return std::isnan(mean) ? HUGE_VAL : mean;
  };
  if (badness(a) != badness(b)) return badness(a) > badness(b);
  return a->figures.warnings.size() > b->figures.warnings.size();
}

std::string photographsSection(std::vector<const Result*> done, const Summary& summary) {
  if (done.empty()) return {};
  std::ranges::stable_sort(done, isWorse);
  const bool judged = summary.job != Job::chart, fitted = summary.job == Job::ccm;
  std::vector<std::vector<std::string>> rows{{"", prose("photograph")}};
  if (judged) rows[0].insert(rows[0].end(), {"light", "mean dE00", "worst dE00", "at patch"});
  if (fitted) rows[0].insert(rows[0].end(), {"gains R, G, B", "exposure"});
  rows[0].push_back(prose("warnings"));
  for (const Result* result : done) {
    const Figures& figures = result->figures;
    std::vector<std::string> row{picture(*result), prose(plain(result->photo.string()))};
    if (judged)
      row.insert(row.end(), {figures.light ? illumName(*figures.light) : "",
                             error(figures.meanError), error(figures.worstError),
                             figures.worstPatch ? std::to_string(*figures.worstPatch + 1) : ""});
    if (fitted)
      row.insert(row.end(), {gains(figures), figures.exposure ? fixed(*figures.exposure, 3) : ""});
    row.push_back(warnings(*result, summary));
    rows.push_back(std::move(row));
  }
  return present::htmlSection(judged ? "Photographs, the worst first" : "Photographs",
                              present::htmlTable(rows));
}

}  // namespace

std::string indexPage(std::span<const Result> results, const Summary& summary) {
  constexpr const char* kTitles[] = {"Charts", "Colour correction", "Colour errors"};
  const std::string title = std::string(kTitles[static_cast<std::size_t>(summary.job)]) + " of " +
                            counted(results.size(), "photograph");
  std::vector<const Result*> done, failed;
  for (const Result& result : results) (result.failed() ? failed : done).push_back(&result);
  std::string facts = std::to_string(done.size()) + " done";
  if (!failed.empty()) facts += " \u00b7 " + std::to_string(failed.size()) + " failed";
  return present::htmlPage(title, "<h1>" + title + "</h1>\n<p class=\"facts\">" + facts +
                                      " \u00b7 greycard " + htmlEscape(summary.version) + "</p>\n" +
                                      failuresSection(failed) + lightsSection(summary) +
                                      photographsSection(std::move(done), summary));
}

}  // namespace greycard::batch
