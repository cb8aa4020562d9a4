// greycard gamma points: control points made of a curve's table, and how far the curve through them
// is from it.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <memory>

#include "command.h"
#include "curve_plot.h"
#include "gamma_commands.h"
#include "greycard/gamma_curve_model.h"
#include "greycard/number_text.h"
#include "text_table.h"
#include "transition.h"

namespace greycard::cli {
namespace {

struct PointsOptions : CommonOptions {
  CurveChoice choice;
  CurvePlotOptions plot;
};

struct Deviation {
  std::size_t index = 0;
  std::int64_t codes = 0;
};

Deviation largestDeviation(std::span<const std::int32_t> table, const GammaTable& through) {
  Deviation worst;
  for (std::size_t i = 0; i < std::min(table.size(), through.size()); ++i) {
    const std::int64_t codes = std::int64_t{through[i]} - table[i];
    if (std::abs(codes) > std::abs(worst.codes)) worst = {i, codes};
  }
  return worst;
}

void run(const PointsOptions& options) {
  JobFiles files;
  options.choice.nameFile(files);
  options.plot.nameFiles(files);
  files.textOutput("--json", options.json);
  const GammaCurvePtr curve = options.choice.curve();
  const auto table = options.choice.table(*curve);

  GammaCurveModel model(false);
  GammaCurve through(curve->Name(), model);
  through.SetGammaTable(ColorChannel::All,
                        std::make_shared<GammaTable>(table.begin(), table.end()));
  through.GenerateControlPoints(ColorChannel::All);
  through.CalculateCurve();
  const ControlPointList& points = *through.ControlPoints();
  const Deviation worst = largestDeviation(table, *through.Data());

  CurvePlot plot("Control points of " + curve->Name(), table.size());
  plot.addTable(curve->Name(), table, plotColour(0));
  plot.addTable("through the points", *through.Data(), plotColour(2), SvgPlot::Stroke::Dashed);
  plot.addControlPoints("control points", points, plotColour(1));
  plot.write(options.plot);

  TextTable text({{"X (index / 4)"}, {"Y (code / 64)"}});
  Json pairs = Json::array();
  for (const ControlPoint& point : points) {
    text.addRow({std::to_string(point.X), std::to_string(point.Y)});
    pairs.push_back({point.X, point.Y});
  }
  writeJson(options.json, {{"name", curve->Name()},
                           {"channel", options.choice.channel},
                           {"bits", kCurveBits},
                           {"points", pairs},
                           {"largest_deviation", worst.codes},
                           {"largest_deviation_index", worst.index},
                           {"table", table},
                           {"table_through_points", *through.Data()}});
  if (options.printsText())
    std::cout << text.text() << "The curve through these points deviates from the table by at most "
              << std::abs(worst.codes) << " of " << kCurveMax << " ("
              << fixed(100.0 * static_cast<double>(std::abs(worst.codes)) / kCurveMax, 2)
              << " %), at index " << worst.index << ".\n";
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
  options->plot.addTo(app);
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
