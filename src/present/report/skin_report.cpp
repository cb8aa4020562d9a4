#include "greycard/number_text.h"
#include "greycard/present/fitting.h"
#include "html_page.h"
#include "report_page.h"

namespace greycard::present {
namespace {

std::string setTable(const SkinCalibration& skin) {
  std::vector<std::vector<std::string>> rows = {{"", "accepted"}};
  for (const char* light : kSkinLights) rows[0].push_back(std::string("under ") + light);
  for (const char* value : {"h", "s", "y"}) rows[0].push_back(value);
  rows[0].push_back("h not finite");
  const auto add = [&](const char* name, const SkinSet& set) {
    rows.push_back({name, std::to_string(set.accepted)});
    for (const int count : set.acceptedUnder) rows.back().push_back(std::to_string(count));
    for (const auto* range : {&set.h, &set.s, &set.y})
      rows.back().push_back(*range ? fixed((**range)[0], 4) + " to " + fixed((**range)[1], 4)
                                   : "-");
    rows.back().push_back(std::to_string(set.hueNotFinite));
  };
  add("upper set", skin.upper);
  add("lower set", skin.lower);
  return htmlTable(rows) + htmlNote("h is Cb / Cr, s is (|Cr| + |Cb|) / 2Y, y is the luma.");
}

std::string cameraTables(const SkinCalibration& skin) {
  std::vector<std::vector<std::string>> charts = {{"light", "chart"}},
                                        matrix = {{"", "R", "G", "B"}};
  for (std::size_t light = 0; light < kSkinLights.size(); ++light)
    charts.push_back({kSkinLights[light], htmlEscape(skin.charts[light].string())});
  const char* const names[] = {"R", "G", "B"};
  for (std::size_t r = 0; r < 3; ++r) {
    matrix.push_back({names[r]});
    for (const double entry : skin.matrix[r]) matrix.back().push_back(fixed(entry, 5));
  }
  return htmlSideBySide(
      {htmlTextTable(charts),
       htmlTable(matrix) + htmlNote("Matrix for all three lights from " + skin.matrixFrom + ".")});
}

}  // namespace

std::string skinReport(const SkinCalibration& skin, const std::optional<Provenance>& provenance) {
  constexpr int kPoints = SkinColorHelper::kPoints;
  const double share = 100.0 * skin.upper.accepted / kPoints;
  std::string plot = htmlFigure(
      skinPlot(skin),
      "Each accepted point in its own colour; the light is told by shape and rim. Of points that "
      "would cover each other the first is drawn.");
  const std::string body =
      htmlKeyFigure("In the upper set", fixed(share, 1) + " %",
                    std::to_string(skin.upper.accepted) + " of " + std::to_string(kPoints) +
                        " synthetic skin colours: " + std::to_string(SkinColorHelper::kSpectra) +
                        " spectra, dark, plain and bright, under D65, A and T84. The lower set "
                        "holds " +
                        std::to_string(skin.lower.accepted) + ".") +
      htmlSection("Where skin falls", plot + setTable(skin)) +
      htmlSection("The camera", cameraTables(skin));
  return reportPage({"Skin colours of the camera",
                     {"tone curve " + skin.gammaName, "matrix from " + skin.matrixFrom},
                     skin.warnings},
                    body, provenance);
}

}  // namespace greycard::present
