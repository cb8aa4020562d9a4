#include "ccm_text.h"

#include <cstddef>

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
  return table.text();
}

}  // namespace

std::string ccmText(const ChartFit& result) {
  std::string text = "Colour correction for " + quoted(result.photo) + ", light " +
                     illumName(result.light) + ", tone curve " + result.gamma.name +
                     "\n\nMatrix (rows sum to 1)\n" + matrixText(result.matrix) +
                     "White-balance gains  R " + fixed(result.whiteBalance[0], 4) + "  G " +
                     fixed(result.whiteBalance[1], 4) + "  B " + fixed(result.whiteBalance[2], 4) +
                     "\nExposure gain        " + fixed(result.exposure, 4) +
                     "\n\nColour error to the target\n" + errorText(result);
  if (result.fit.m_chromaChangeWanted && result.fit.m_chromaChange)
    text += "Chroma against the target: wanted " +
            fixed(100 * *result.fit.m_chromaChangeWanted, 1) + " %, reached " +
            fixed(100 * *result.fit.m_chromaChange, 1) + " %\n";
  text += "\n" + patchTableText({{"balanced", result.fit.m_uncorrectedLab},
                                 {"corrected", result.correctedLab},
                                 {"reference", result.fit.m_targetLab}},
                                {{"", result.after}, {"before", result.before}});
  text += "Balanced: with gains, without the matrix. Cost " + fixed(result.fit.m_firstCost, 4) +
          " to " + fixed(result.fit.m_lastCost, 4) + " (" + formulaName(result.formula) + "), " +
          std::to_string(result.fit.m_evaluations) + " evaluations in " +
          std::to_string(result.fit.m_powellRuns) + " search(es): " + result.fit.m_stopReason +
          "\n";
  return text;
}

}  // namespace greycard::cli
