#include "best_text.h"

#include <cstddef>

#include "greycard/files.h"
#include "greycard/number_text.h"
#include "patch_table.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

using Align = TextTable::Align;

std::string matrixText(const MatrixFitResult& best) {
  TextTable table({{"", Align::Left}, {""}, {""}, {""}, {"noise"}});
  const char* const names[] = {"  R", "  G", "  B"};
  for (std::size_t r = 0; r < 3; ++r) {
    std::vector<std::string> row = {names[r]};
    for (std::size_t c = 0; c < 3; ++c)
      row.push_back(fixed(best.matrix[r][c], 5) +
                    (best.uncertainty ? " +- " + fixed(best.uncertainty->matrix[r][c], 5) : ""));
    row.push_back(fixed(best.rowNoise[r], 3));
    table.addRow(std::move(row));
  }
  return table.text();
}

std::string gainText(const BestChartFit& fit) {
  const MatrixFitResult& best = fit.best;
  std::string text = "White-balance gains  R " + fixed(best.gains[0], 4) + "  G " +
                     fixed(best.gains[1], 4) + "  B " + fixed(best.gains[2], 4) +
                     "\nExposure gain       ";
  for (const FittedPhotograph& photograph : best.photographs)
    text += " " + fixed(photograph.exposure, 4);
  text += "\nCondition number     " + fixed(best.conditionNumber, 2) + "\n";
  if (best.greyResidual)
    text += "Tone curve           " +
            std::string(kFitToneCurveNames.at(static_cast<std::size_t>(fit.options.toneCurve))) +
            " " + fixed(best.curveNumbers[0], 4) + " " + fixed(best.curveNumbers[1], 4) +
            "; the greys miss it by " + fixed(*best.greyResidual, 2) + " L*\n";
  for (const FittedPhotograph& photograph : best.photographs)
    if (photograph.lightRange > 0.0)
      text += "Light over the chart falls off by " + fixed(photograph.lightRange, 1) + " %\n";
  return text;
}

void addFigures(TextTable& table, const std::string& name, const FitFigures& f) {
  table.addRow({name, fixed(f.mean2000, 2), fixed(f.percentile95, 2), fixed(f.max2000, 2),
                fixed(f.meanLevelled, 2), fixed(f.mean94, 2), fixed(f.mean76, 2),
                fixed(f.meanCam16, 2), fixed(f.meanL, 2), fixed(f.meanC, 2), fixed(f.meanH, 2),
                fixed(f.metamerismIndex, 1)});
}

std::string comparisonText(const BestChartFit& fit) {
  TextTable table({{"", Align::Left},
                   {"mean dE00"},
                   {"95 %"},
                   {"worst"},
                   {"levelled"},
                   {"dE94"},
                   {"dE76"},
                   {"CAM16"},
                   {"|dL*|"},
                   {"|dC*|"},
                   {"|dH*|"},
                   {"SMI"}});
  const auto& photographs = fit.best.photographs;
  for (std::size_t k = 0; k < photographs.size(); ++k) {
    const std::string of =
        photographs.size() > 1 ? ", photograph " + std::to_string(k + 1) : std::string();
    if (photographs[k].stated) addFigures(table, "  stated" + of, *photographs[k].stated);
    addFigures(table, "  best" + of, photographs[k].figures);
  }
  if (photographs.size() > 1) addFigures(table, "  best, all", fit.best.figures);
  const auto addHeldOut = [&](const char* name, const std::optional<HeldOutFigures>& figures) {
    if (figures) table.addRow({name, fixed(figures->mean, 2), fixed(figures->percentile95, 2)});
  };
  addHeldOut("  patches held out", fit.best.leaveOneOut);
  addHeldOut("  sixths held out", fit.best.sixFold);
  return table.text();
}

std::string tradeOffText(const MatrixFitResult& best) {
  if (best.tradeOff.empty()) return "";
  TextTable table({{"  limit"}, {"noise R"}, {"G"}, {"B"}, {"mean dE00"}, {"95 %"}});
  for (const FitTradeOff& row : best.tradeOff)
    table.addRow({fixed(row.limit, 3), fixed(row.rowNoise[0], 3), fixed(row.rowNoise[1], 3),
                  fixed(row.rowNoise[2], 3), fixed(row.figures.mean2000, 2),
                  fixed(row.figures.percentile95, 2)});
  return "\nColour error against noise\n" + table.text();
}

std::string patchText(const BestChartFit& fit, bool wide) {
  std::string leftOut;
  const auto& photographs = fit.best.photographs;
  TextTable table({{""},
                   {"patch", Align::Left},
                   {"L*"},
                   {"a*"},
                   {"b*"},
                   {"reference L*"},
                   {"a*"},
                   {"b*"},
                   {"dE00"},
                   {"dL*"},
                   {"dC*"},
                   {"dH*"},
                   {"", Align::Left}});
  for (std::size_t k = 0; k < photographs.size(); ++k)
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      const FittedPhotograph& photograph = photographs[k];
      std::vector<std::string> row = {std::to_string(i + 1), patchName(static_cast<int>(i))};
      for (const double value : photograph.lab[i]) row.push_back(fixed(value, 1));
      for (const double value : fit.stated[k].fit.m_targetLab[i]) row.push_back(fixed(value, 1));
      row.push_back(fixed(photograph.dE2000[i], 2) +
                    (wide && fit.best.uncertainty
                         ? " +- " + fixed(fit.best.uncertainty->dE2000[k][i], 3)
                         : std::string()));
      for (const double value : photograph.split[i]) row.push_back(fixed(value, wide ? 2 : 1));
      if (!photograph.leftOut[i].empty()) {
        row.push_back("*");
        leftOut +=
            "* " + patchList({static_cast<int>(i)}) + " left out: " + photograph.leftOut[i] + "\n";
      }
      table.addRow(std::move(row));
    }
  return "\n" + table.text() + leftOut;
}

}  // namespace

std::string bestText(const BestChartFit& fit, bool wide) {
  const ChartFit& first = fit.stated.front();
  std::string text = "Best colour correction for " + quoted(first.photo);
  for (std::size_t k = 1; k < fit.stated.size(); ++k) text += ", " + quoted(fit.stated[k].photo);
  text += std::string(", light ") + illumTitle(first.light) + ",\ntone curve " + first.gamma.name +
          ", " + samplesText(*first.levels) + "\n\nMatrix\n" + matrixText(fit.best) +
          gainText(fit) + "\nColour error of the stated and the best fit\n" + comparisonText(fit) +
          tradeOffText(fit.best) + patchText(fit, wide);
  text +=
      "Levelled: without the common difference of L*. SMI: sensitivity metamerism index by the "
      "matrix\n(" +
      fit.best.metamerismBasis + ").\nBest of " + std::to_string(fit.best.starts) + " searches, " +
      std::to_string(fit.best.evaluations) + " evaluations.\n";
  return text;
}

}  // namespace greycard::cli
