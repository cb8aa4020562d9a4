#include <algorithm>

#include "colour_sections.h"
#include "greycard/number_text.h"
#include "greycard/present/comparison.h"
#include "html_page.h"
#include "neutral_sections.h"
#include "report_page.h"
#include "swatch_chart.h"

namespace greycard::present {
namespace {

ColourStory storyOf(const JudgedChart& chart, const char* name) {
  return {chart.referenceLab, {name, chart.lab, chart.errors}, {}};
}

std::string describedBy(const JudgedChart& chart) {
  return chart.kind + " of " + chart.photo.filename().string() + ", light " +
         illumTitle(chart.light);
}

std::string headOf(const JudgedChart& chart, const ColourStory& story) {
  return "<h3>" + htmlEscape(story.result.name) + ": " +
         htmlEscape(chart.file.filename().string()) + "</h3>\n" +
         verdictCard(story, ", " + describedBy(chart));
}

std::string differenceTable(const ChartComparison& comparison) {
  std::vector<std::vector<std::string>> rows = {{"patch", "dE00 of A", "dE00 of B", "B less A",
                                                 "dE00 between A and B", "A L* a* b*",
                                                 "B L* a* b*"}};
  const auto lab = [](const Vector3& colour) {
    return fixed(colour[0], 1) + " " + fixed(colour[1], 1) + " " + fixed(colour[2], 1);
  };
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const double a = comparison.a.errors.ciede2000.patch[i],
                 b = comparison.b.errors.ciede2000.patch[i];
    rows.push_back({numberedPatch(i), fixed(a, 2), fixed(b, 2), fixed(b - a, 2),
                    fixed(comparison.between.ciede2000.patch[i], 2), lab(comparison.a.lab[i]),
                    lab(comparison.b.lab[i])});
  }
  return htmlTable(rows);
}

std::string matrixTable(const JudgedChart& chart, const char* name) {
  if (!chart.matrix)
    return htmlNote(std::string(name) + " has no matrix: its colours are judged as they are.");
  std::vector<std::vector<std::string>> rows = {{name, "R", "G", "B"}};
  const char* const names[] = {"R", "G", "B"};
  for (std::size_t r = 0; r < 3; ++r) {
    rows.push_back({names[r]});
    for (const double entry : (*chart.matrix)[r]) rows.back().push_back(fixed(entry, 5));
  }
  if (chart.whiteBalance) {
    rows.push_back({"white-balance gains"});
    for (const double gain : *chart.whiteBalance) rows.back().push_back(fixed(gain, 4));
  }
  return htmlTable(rows);
}

// Both in the same drawings, where they aim at the same colours.
std::string togetherSections(const ChartComparison& comparison, ColourStory both) {
  both.before.emplace(JudgedColours{"A", comparison.a.lab, comparison.a.errors});
  return htmlSection("Both together", htmlSideBySide({chromaPlane(both), swatchFigure(both)})) +
         htmlSection("Lightness of the neutral row", greyLightness(both));
}

}  // namespace

std::string comparisonReport(const ChartComparison& comparison,
                             const std::optional<Provenance>& provenance) {
  const ColourStory a = storyOf(comparison.a, "A"), b = storyOf(comparison.b, "B");
  const double gain = comparison.a.errors.ciede2000.mean - comparison.b.errors.ciede2000.mean;
  const double worst =
      std::max(comparison.a.errors.ciede2000.worst, comparison.b.errors.ciede2000.worst);
  const std::string body =
      htmlKeyFigure(gain > 0.0 ? "B is nearer" : "A is nearer", fixed(gain > 0.0 ? gain : -gain, 2),
                    "Difference of the mean colour errors (CIEDE2000). The colours of A and B "
                    "differ from each other by " +
                        fixed(comparison.between.ciede2000.mean, 2) + " in the mean.") +
      htmlSideBySide({headOf(comparison.a, a), headOf(comparison.b, b)}) +
      htmlSection("Colour errors",
                  htmlSideBySide({errorBars(a, "A: ", worst), errorBars(b, "B: ", worst)})) +
      (comparison.shareReference()
           ? togetherSections(comparison, b)
           : htmlNote("A and B aim at different reference colours: each is judged by its own.")) +
      htmlSection("Balance of the neutral row", htmlSideBySide({greyBalance(a), greyBalance(b)})) +
      htmlSection("Matrix and gains", htmlSideBySide({matrixTable(comparison.a, "A"),
                                                      matrixTable(comparison.b, "B")})) +
      htmlSection("Patches", differenceTable(comparison));
  return reportPage({"Comparison: " + comparison.a.file.filename().string() + " and " +
                         comparison.b.file.filename().string(),
                     {"A: " + describedBy(comparison.a), "B: " + describedBy(comparison.b)},
                     {}},
                    body, provenance);
}

}  // namespace greycard::present
