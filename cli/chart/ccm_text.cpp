#include "ccm_text.h"

#include <cstddef>
#include <vector>

#include "greycard/files.h"
#include "greycard/number_text.h"
#include "patch_table.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

using Align = TextTable::Align;

std::string matrixText(const Matrix3& matrix) {
  TextTable table({{"", Align::Left}, {""}, {""}, {""}});
  const char* const rows[] = {"  R", "  G", "  B"};
  for (std::size_t r = 0; r < 3; ++r)
    table.addRow({rows[r], fixed(matrix[r][0], 5), fixed(matrix[r][1], 5), fixed(matrix[r][2], 5)});
  return table.text();
}

std::string errorText(const ChartFit& result) {
  TextTable table({{"", Align::Left},
                   {"before"},
                   {"worst before"},
                   {"after"},
                   {"worst after"},
                   {"", Align::Left}});
  const auto add = [&](const char* name, const ErrorColumn& before, const ErrorColumn& after) {
    table.addRow(
        {name, fixed(before.mean, 2), fixed(before.worst, 2), fixed(after.mean, 2),
         fixed(after.worst, 2),
         "patch " + std::to_string(after.worstPatch + 1) + " " + patchName(after.worstPatch)});
  };
  add("  mean dE76", result.before.cie76, result.after.cie76);
  add("  mean dE94", result.before.cie94, result.after.cie94);
  add("  mean dE00", result.before.ciede2000, result.after.ciede2000);
  add("  levelled", result.before.levelled2000, result.after.levelled2000);
  return table.text();
}

}  // namespace

std::string ccmText(const ChartFit& result, bool wide) {
  std::string text =
      "Colour correction for " + quoted(result.photo) + ", light " + illumTitle(result.light) +
      ",\ntone curve " + result.gamma.name + ", " + samplesText(*result.levels) +
      "\n\nMatrix (rows sum to 1)\n" + matrixText(result.matrix) + "White-balance gains  R " +
      fixed(result.whiteBalance[0], 4) + "  G " + fixed(result.whiteBalance[1], 4) + "  B " +
      fixed(result.whiteBalance[2], 4) + "\nExposure gain        " + fixed(result.exposure, 4) +
      "\n\nColour error to the target (levelled: dE00 without the common difference of L*)\n" +
      errorText(result);
  if (result.fit.m_chromaChangeWanted && result.fit.m_chromaChange)
    text += "Chroma against the target: wanted " +
            fixed(100 * *result.fit.m_chromaChangeWanted, 1) + " %, reached " +
            fixed(100 * *result.fit.m_chromaChange, 1) + " %\n";
  std::vector<LabColumns> charts;
  if (wide) charts.push_back({"balanced", result.fit.m_uncorrectedLab});
  charts.push_back({"corrected", result.correctedLab});
  charts.push_back({"reference", result.fit.m_targetLab});
  std::vector<DifferenceColumns> differences = {{"", result.after}};
  if (wide) differences.push_back({"before", result.before});
  text += "\n" + patchTableText(charts, differences, wide) + kSplitNote;
  if (wide) text += "Balanced, before: with gains, without the matrix.\n";
  text += "Cost " + fixed(result.fit.m_firstCost, 4) + " to " + fixed(result.fit.m_lastCost, 4) +
          " (" + formulaName(result.formula) + "), " + std::to_string(result.fit.m_evaluations) +
          " evaluations in\n" + std::to_string(result.fit.m_powellRuns) +
          " search(es): " + result.fit.m_stopReason + "\n";
  return text;
}

}  // namespace greycard::cli
