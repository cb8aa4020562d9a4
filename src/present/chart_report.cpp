#include "chart_sections.h"
#include "greycard/number_text.h"
#include "greycard/present/chart.h"
#include "html_page.h"

namespace greycard::present {
namespace {

std::string errorSection(const ChartFit& result) {
  std::vector<std::vector<std::string>> rows = {
      {"", "mean before", "mean after", "worst before", "worst after", "at patch"}};
  const auto add = [&](const char* name, const ErrorColumn& before, const ErrorColumn& after) {
    rows.push_back({name, fixed(before.mean, 2), fixed(after.mean, 2), fixed(before.worst, 2),
                    fixed(after.worst, 2),
                    std::to_string(after.worstPatch + 1) + " " + patchName(after.worstPatch)});
  };
  add("CIE76", result.before.cie76, result.after.cie76);
  add("CIE94", result.before.cie94, result.after.cie94);
  add("CIEDE2000", result.before.ciede2000, result.after.ciede2000);
  const ColorFitReport& fit = result.fit;
  std::string note = std::string("<p class=\"note\">Minimised: ") + formulaName(result.formula) +
                     ". Cost " + fixed(fit.m_firstCost, 4) + " to " + fixed(fit.m_lastCost, 4) +
                     " in " + std::to_string(fit.m_evaluations) + " evaluations; " +
                     htmlEscape(fit.m_stopReason) + ".";
  if (fit.m_chromaChangeWanted && fit.m_chromaChange)
    note += " Chroma against the target: wanted " + fixed(100 * *fit.m_chromaChangeWanted, 1) +
            " %, reached " + fixed(100 * *fit.m_chromaChange, 1) + " %.";
  return "<h2>Colour error to the target</h2>\n" + htmlTable(rows) + note + "</p>\n";
}

}  // namespace

std::string fitReport(const ChartFit& result, const Picture& picture) {
  const std::string name = result.photo.filename().string();
  const std::string body =
      "<h1>Colour correction: " + htmlEscape(name) + "</h1>\n" + aboutPhoto(result, picture) +
      matrixSection(result) + errorSection(result) + swatchSection(result) +
      "<h2>Where the errors point</h2>\n<div class=\"side\">" + chromaPlane(result) +
      greyRow(result) + "</div>\n" + photoSection(result, picture) + patchSection(result);
  return htmlPage("Colour correction: " + name, body);
}

}  // namespace greycard::present
