// greycard gamma points: control points made of a curve's table, and how far the curve through them
// is from it.

#include <cstdlib>
#include <iostream>
#include <memory>

#include "command.h"
#include "curve_options.h"
#include "gamma_commands.h"
#include "greycard/number_text.h"
#include "greycard/present/gamma.h"
#include "option_checks.h"
#include "text_output.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

struct PointsOptions : CommonOptions {
  CurveChoice choice;
  std::optional<double> within;
  CurvePlotOptions plot;
};

void print(const ControlPointReduction& reduction) {
  TextTable text({{"X (index / 4)"}, {"Y (code / 64)"}});
  for (const ControlPoint& point : reduction.points)
    text.addRow({std::to_string(point.X), std::to_string(point.Y)});
  const std::int64_t deviation = std::abs(reduction.largestDeviation);
  std::cout << text.text() << "The curve through these points deviates from the table\nby at most "
            << deviation << " of " << kCurveMax << " ("
            << fixed(100.0 * static_cast<double>(deviation) / kCurveMax, 2) << " %), at index "
            << reduction.largestDeviationIndex << ".\n";
}

void run(PointsOptions& options) {
  options.choice.nameFile(options.files);
  options.plot.nameFiles(options.files);
  options.files.output("--json", options.json);
  const GammaCurvePtr curve = options.choice.curve();
  const CurveChannel channel = options.choice.curveChannel();
  const ControlPointReduction reduction = options.within
                                              ? fewestPointsOf(*curve, *options.within, channel)
                                              : reduceToControlPoints(*curve, channel);
  options.plot.write(options.files,
                     [&](const auto& against) { return present::curvePlot(reduction, against); });
  options.writeJson(present::toJson(reduction));
  if (options.printsText()) print(reduction);
}

}  // namespace

void addGammaPoints(CLI::App& gamma) {
  const auto options = std::make_shared<PointsOptions>();
  CLI::App& app = addSubCommand(
      gamma, "points",
      "Control points made of a curve's table, as an editor starts from them, and the largest\n"
      "deviation of the curve through them over the whole table",
      "greycard gamma points VOutdoor --plot points.svg", *options);
  options->choice.addTo(app);
  app.add_option("--within", options->within,
                 "Instead: the fewest points found whose curve stays within so many percent of\n"
                 "full scale of the table")
      ->type_name("PERCENT")
      ->check(numbersFrom(0.01, 100.0));
  options->plot.addTo(app);
  setJob(app, options, run);
}

}  // namespace greycard::cli
