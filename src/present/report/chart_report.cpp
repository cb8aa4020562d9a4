#include "camera_sections.h"
#include "chart_pages.h"
#include "colour_sections.h"
#include "greycard/number_text.h"
#include "greycard/present/chart.h"
#include "html_page.h"
#include "neutral_sections.h"

namespace greycard::present {
namespace {

std::string searchNote(const ChartFit& result) {
  const ColorFitReport& fit = result.fit;
  std::string note = std::string("Minimised: ") + formulaName(result.formula) + ". Cost " +
                     fixed(fit.m_firstCost, 4) + " to " + fixed(fit.m_lastCost, 4) + " in " +
                     std::to_string(fit.m_evaluations) + " evaluations; " + fit.m_stopReason + ".";
  if (fit.m_chromaChangeWanted && fit.m_chromaChange)
    note += " Chroma against the target: wanted " + fixed(100 * *fit.m_chromaChangeWanted, 1) +
            " %, reached " + fixed(100 * *fit.m_chromaChange, 1) + " %.";
  return htmlNote(note);
}

// Of a fit or an evaluation.
template <typename Result>
std::vector<std::string> factsOf(const Result& result, const Picture& photograph) {
  std::vector<std::string> facts = {result.photo.string(), sizeText(photograph),
                                    "light " + illumTitle(result.light)};
  if (result.capture)
    for (const auto& [name, value] : captureRows(*result.capture))
      facts.push_back(name + " " + value);
  return facts;
}

}  // namespace

ReportHead fitHead(const std::string& what, const ChartFit& fit, const Picture& photograph) {
  ReportHead head{what + ": " + fit.photo.filename().string(), factsOf(fit, photograph),
                  fit.warnings};
  head.facts.push_back("tone curve " + fit.gamma.name);
  return head;
}

std::string fitFigures(const ChartFit& fit, const Picture& photograph, const Develop& before,
                       const Develop& after, const ChartStory& story) {
  return htmlSection("Before and after", beforeAndAfter(photograph, before, after)) +
         htmlSection("The chart", chartFigures(story, photograph, before)) +
         htmlSection("Colour errors",
                     htmlSideBySide({errorBars(story), chromaPlane(story)}) + errorTable(story)) +
         htmlSection("Neutral row", htmlSideBySide({greyLightness(story), greyBalance(story)})) +
         htmlSection("Matrix and gains", matrixTables(fit));
}

std::string fitDetails(const ChartFit& fit, const Picture& photograph, const Develop& before,
                       const ChartStory& story) {
  return htmlSection("Light and tone curve",
                     htmlSideBySide({lightPlot(fit.light), toneCurvePlot(fit.gamma)})) +
         htmlSection(
             "How the patches were measured",
             htmlSideBySide({samplingMap(story), sampledFigure(story, photograph, before)})) +
         htmlSection("Patches", patchTable(story));
}

std::string fitReport(const ChartFit& fit, const Picture& photograph,
                      const std::optional<Provenance>& provenance) {
  const ChartStory story = storyOf(fit);
  const SampleMeaning samples = meaningOf(fit.levels);
  const Develop before = asPhotographed(samples);
  const Develop after = [&](const Picture& picture) {
    return correctedPhotograph(picture, fit, samples);
  };
  const std::string body = verdictCard(story, " after correction") +
                           fitFigures(fit, photograph, before, after, story) + searchNote(fit) +
                           fitDetails(fit, photograph, before, story);
  return reportPage(fitHead("Colour correction", fit, photograph), body, provenance);
}

std::string evaluationReport(const ChartEvaluation& evaluation, const Picture& photograph,
                             const std::optional<Provenance>& provenance) {
  const ChartStory story = storyOf(evaluation);
  const Develop develop = asPhotographed(meaningOf(evaluation.levels));
  const std::string body =
      verdictCard(story, " as photographed") +
      htmlSection("The photograph", htmlSideBySide({photographFigure(photograph, develop),
                                                    sampledFigure(story, photograph, develop)})) +
      htmlSection("The chart", chartFigures(story, photograph, develop)) +
      htmlSection("Colour errors",
                  htmlSideBySide({errorBars(story), chromaPlane(story)}) + errorTable(story)) +
      htmlSection("Neutral row", htmlSideBySide({greyLightness(story), greyBalance(story)})) +
      htmlSection("Light and measurement",
                  htmlSideBySide({lightPlot(evaluation.light), samplingMap(story)})) +
      htmlSection("Patches", patchTable(story));
  return reportPage({"Colour error: " + evaluation.photo.filename().string(),
                     factsOf(evaluation, photograph), evaluation.warnings},
                    body, provenance);
}

}  // namespace greycard::present
