#include "colour_sections.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "greycard/delta_e.h"
#include "greycard/number_text.h"
#include "html_page.h"
#include "svg_bars.h"
#include "svg_elements.h"

namespace greycard::present {
namespace {

// The scale of the verdict as a strip with three parts and two marks.
std::string gradeScale(const ColourVerdict& verdict) {
  constexpr double kStripWidth = 520.0, kStripTop = 40.0, kStripHeight = 14.0;
  const double least = 2.0 * kTwiceNoticed;
  const double end = std::isfinite(verdict.percentile95)
                         ? std::max({least, 1.1 * verdict.mean, 1.1 * verdict.percentile95})
                         : least;
  const auto x = [&](double value) {
    return 10.0 + (kStripWidth - 20.0) * std::clamp(value / end, 0.0, 1.0);
  };
  std::string drawn =
      "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"plot\" viewBox=\"0 0 520 84\""
      " width=\"520\" font-family=\"sans-serif\" font-size=\"12\" role=\"img\">"
      "<title>The scale of the verdict</title>\n";
  const struct {
    double from, to;
    const char* name;
    std::size_t colour;
  } parts[] = {{0.0, kNoticedDifference, "good", 0},
               {kNoticedDifference, kTwiceNoticed, "fair", 5},
               {kTwiceNoticed, end, "poor", 1}};
  for (const auto& part : parts) {
    drawn += svg::rectangle(x(part.from), kStripTop, x(part.to) - x(part.from) - 1.5, kStripHeight,
                            svg::fill(plotColour(part.colour)));
    drawn += svg::text(0.5 * (x(part.from) + x(part.to)), kStripTop + 40.0,
                       " text-anchor=\"middle\"", part.name);
    if (part.from > 0.0)
      drawn += svg::text(x(part.from), kStripTop + 27.0, " font-size=\"11\" text-anchor=\"middle\"",
                         fixed(part.from, 1));
  }
  // Texts in two rows, so that they can't meet.
  const auto mark = [&](double value, const std::string& name, double row) {
    const double at = x(value);
    const bool atEnd = at > 0.75 * kStripWidth;
    drawn += svg::line({at, row - 10.0}, {at, kStripTop + kStripHeight},
                       " stroke-width=\"2\"" + svg::stroke(plotColour(4)));
    drawn += svg::text(at + (atEnd ? -6.0 : 6.0), row, atEnd ? " text-anchor=\"end\"" : "",
                       name + " " + fixed(value, 2));
  };
  if (std::isfinite(verdict.mean)) mark(verdict.mean, "mean", 14.0);
  if (std::isfinite(verdict.percentile95)) mark(verdict.percentile95, "95 %", 32.0);
  return drawn + "</svg>\n";
}

std::string upperFirst(std::string text) {
  if (!text.empty()) text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
  return text;
}

}  // namespace

std::string verdictCard(const ColourStory& story, const std::string& what) {
  const ErrorColumn& errors = story.result.errors.ciede2000;
  const ColourVerdict verdict = colourVerdict(errors);
  const std::string grade = kColourGradeNames.at(static_cast<std::size_t>(verdict.grade));
  std::string html = "<div class=\"verdict " + grade + "\">\n<div><div class=\"word\">" +
                     upperFirst(grade) + "</div><div class=\"number\">" + fixed(verdict.mean, 2) +
                     "</div></div>\n<div><p>Mean colour error of the 24 patches" +
                     htmlEscape(what) + " (CIEDE2000). 95 % of them lie within " +
                     fixed(verdict.percentile95, 2) + "; the worst is " + fixed(errors.worst, 2) +
                     " at " + numberedPatch(static_cast<std::size_t>(errors.worstPatch)) + ".";
  if (story.before)
    html += " " + upperFirst(htmlEscape(story.before->name)) + ": mean " +
            fixed(story.before->errors.ciede2000.mean, 2) + ", worst " +
            fixed(story.before->errors.ciede2000.worst, 2) + ".";
  return html + "</p>\n" + gradeScale(verdict) +
         htmlNote("Good: mean up to " + fixed(kNoticedDifference, 1) +
                  ", about the least difference noticed side by side, and 95 % within " +
                  fixed(kTwiceNoticed, 1) + ". Fair: both up to twice that. Poor: beyond.") +
         "</div></div>\n";
}

std::string errorTable(const ColourStory& story) {
  std::vector<std::vector<std::string>> rows = {{""}};
  if (story.before)
    for (const char* figure : {"mean, ", "worst, "})
      rows[0].push_back(figure + htmlEscape(story.before->name));
  for (const char* figure : {"mean, ", "worst, "})
    rows[0].push_back(figure + htmlEscape(story.result.name));
  rows[0].push_back("at patch");
  constexpr std::array<std::pair<const char*, ErrorColumn ColourErrors::*>, 4> kFormulas{
      {{"CIEDE2000", &ColourErrors::ciede2000},
       {"CIEDE2000, levelled", &ColourErrors::levelled2000},
       {"CIE94", &ColourErrors::cie94},
       {"CIE76", &ColourErrors::cie76}}};
  for (const auto& [name, formula] : kFormulas) {
    std::vector<std::string> row = {name};
    const auto add = [&](const ErrorColumn& column) {
      row.push_back(fixed(column.mean, 2));
      row.push_back(fixed(column.worst, 2));
    };
    if (story.before) add(story.before->errors.*formula);
    add(story.result.errors.*formula);
    row.push_back(
        numberedPatch(static_cast<std::size_t>((story.result.errors.*formula).worstPatch)));
    rows.push_back(std::move(row));
  }
  return htmlTable(rows) + htmlNote(
                               "Levelled: without the mean difference of L*, what is left when "
                               "only brightness is off.");
}

std::string errorBars(const ColourStory& story, const std::string& of, double axisEnd) {
  BarChart chart(of + "Colour error of each patch", "dE00", {"lightness", "chroma", "hue"});
  chart.reachTo(axisEnd);
  if (story.before) chart.nameMarks(story.before->name);
  chart.addLimit(kNoticedDifference, fixed(kNoticedDifference, 1));
  chart.addLimit(kTwiceNoticed, fixed(kTwiceNoticed, 1));
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const double error = story.result.errors.ciede2000.patch[i];
    const auto terms = deltaE2000Terms(story.referenceLab[i], story.result.lab[i]);
    // Shares of the squares: what a bar's parts would be without the others would not add up.
    const double squares[] = {terms.lightness * terms.lightness, terms.chroma * terms.chroma,
                              terms.hue * terms.hue};
    const double sum = squares[0] + squares[1] + squares[2];
    BarChart::Bar bar{
        numberedPatch(i), hexColourOfLab(story.referenceLab[i]), {}, fixed(error, 2), {}};
    for (const double square : squares) bar.parts.push_back(sum > 0.0 ? error * square / sum : 0.0);
    if (story.before) bar.mark = story.before->errors.ciede2000.patch[i];
    chart.addBar(std::move(bar));
  }
  return htmlFigure(chart.svg(),
                    "In chart order. Parts in proportion to the squares of the weighted "
                    "differences of lightness, chroma and hue.");
}

std::string patchTable(const ChartStory& story) {
  const std::string& name = story.result.name;
  std::vector<std::vector<std::string>> rows = {
      {"patch", "measured<br>R G B", "noise", htmlEscape(name) + "<br>L* a* b*",
       "reference<br>L* a* b*", "dL*", "dC*", "dH*", "dE00", "dE94", "dE76"}};
  if (story.before) rows[0].push_back(htmlEscape(story.before->name) + "<br>dE00");
  const auto three = [](const Vector3& values, int decimals) {
    return fixed(values[0], decimals) + " " + fixed(values[1], decimals) + " " +
           fixed(values[2], decimals);
  };
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const Vector3 &lab = story.result.lab[i], &reference = story.referenceLab[i];
    const Vector3& split = story.result.errors.split[i];
    rows.push_back({numberedPatch(i), three(story.measuredRgb[i], 3),
                    fixed(std::ranges::max(story.noise[i]), 4), three(lab, 1), three(reference, 1),
                    fixed(split[0], 1), fixed(split[1], 1), fixed(split[2], 1),
                    fixed(story.result.errors.ciede2000.patch[i], 2),
                    fixed(story.result.errors.cie94.patch[i], 2),
                    fixed(story.result.errors.cie76.patch[i], 2)});
    if (story.before) rows.back().push_back(fixed(story.before->errors.ciede2000.patch[i], 2));
  }
  return htmlTable(rows) +
         htmlNote(
             "Measured: linear, full scale 1. Noise: standard deviation of a pixel, the largest "
             "of the three channels. Differences are " +
             name + " less reference.");
}

}  // namespace greycard::present
