// greycard gamma show: one curve with its control points, as text, JSON and plot.

#include <iostream>
#include <memory>
#include <vector>

#include "command.h"
#include "curve_plot.h"
#include "gamma_commands.h"
#include "greycard/names.h"
#include "job_files.h"
#include "option_checks.h"
#include "text_table.h"
#include "transition.h"

namespace greycard::cli {
namespace {

struct ShowOptions : CommonOptions {
  CurveChoice choice;
  CurvePlotOptions plot;
  int points = 17;
};

struct ShownPoints {
  std::vector<ControlPoint> points;
  bool areSamples;  // of the table, as the curve has no control points of its own
};

ShownPoints pointsOf(const GammaCurve& curve, const ShowOptions& options) {
  const auto& own = options.choice.channel == "green"  ? curve.ControlPointsG()
                    : options.choice.channel == "blue" ? curve.ControlPointsB()
                                                       : curve.ControlPoints();
  if (own && !own->empty()) return {*own, false};
  std::vector<std::int32_t> x(static_cast<std::size_t>(options.points)), y(x.size());
  ShownPoints shown{{}, true};
  if (!curve.GetDataDownsampled(options.choice.colorChannel(), x, y)) return shown;
  for (std::size_t i = 0; i < x.size(); ++i) shown.points.push_back({x[i], y[i]});
  return shown;
}

void draw(const ShowOptions& options, const std::string& name, std::span<const std::int32_t> table,
          const ShownPoints& shown) {
  const GammaTable proportional{0, kCurveMax};
  CurvePlot plot("Tone curve " + name, table.size());
  plot.addTable("proportional", proportional, "#888", SvgPlot::Stroke::Dashed);
  plot.addTable(name, table, plotColour(0));
  plot.addControlPoints(shown.areSamples ? "samples" : "control points", shown.points,
                        plotColour(1));
  plot.write(options.plot);
}

void printTable(std::span<const std::int32_t> table) {
  constexpr std::size_t kPerLine = 16;
  TextTable text(std::vector<TextTable::Column>(kPerLine + 1));
  for (std::size_t i = 0; i < table.size(); i += kPerLine) {
    std::vector<std::string> cells{std::to_string(i) + ":"};
    for (std::size_t k = i; k < std::min(i + kPerLine, table.size()); ++k)
      cells.push_back(std::to_string(table[k]));
    text.addRow(std::move(cells));
  }
  std::cout << text.text();
}

void printText(const ShowOptions& options, std::span<const std::int32_t> table,
               const ShownPoints& shown) {
  std::cout << printable(options.choice.name) << ", " << table.size() << " entries of "
            << kCurveBits << " bits, channel " << options.choice.channel << "\n\n";
  printTable(table);
  std::cout << (shown.areSamples ? "\nNo control points; the table sampled at as many places:\n"
                                 : "\nControl points:\n");
  TextTable text({{"X (index / 4)"}, {"Y (code / 64)"}});
  for (const auto& point : shown.points)
    text.addRow({std::to_string(point.X), std::to_string(point.Y)});
  std::cout << text.text();
}

void run(const ShowOptions& options) {
  JobFiles files;
  options.choice.nameFile(files);
  options.plot.nameFiles(files);
  files.textOutput("--json", options.json);
  const GammaCurvePtr curve = options.choice.curve();
  const auto table = options.choice.table(*curve);
  const ShownPoints shown = pointsOf(*curve, options);
  draw(options, curve->Name(), table, shown);
  Json points = Json::array();
  for (const auto& point : shown.points) points.push_back({point.X, point.Y});
  writeJson(options.json, {{"name", curve->Name()},
                           {"channel", options.choice.channel},
                           {"bits", kCurveBits},
                           {"unified", curve->IsUnified()},
                           {"immutable", curve->IsImmutable()},
                           {"table", table},
                           {"points_are_samples", shown.areSamples},
                           {"points", points}});
  if (options.printsText()) printText(options, table, shown);
}

}  // namespace

void addGammaShow(CLI::App& gamma) {
  const auto options = std::make_shared<ShowOptions>();
  CLI::App& app =
      addSubCommand(gamma, "show", "One curve: its table, its control points and a plot",
                    "greycard gamma show VGammaSRGB --plot curve.svg", *options);
  options->choice.addTo(app);
  app.add_option("--points", options->points,
                 "How many samples to show of a curve without control points")
      ->capture_default_str()
      ->check(wholeNumbersFrom(2, 256));
  options->plot.addTo(app);
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
