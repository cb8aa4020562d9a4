// greycard gamma show: one curve with its control points, as text, JSON and plot.

#include <iostream>
#include <memory>
#include <vector>

#include "command.h"
#include "curve_options.h"
#include "export_requests.h"
#include "gamma_commands.h"
#include "greycard/names.h"
#include "greycard/present/gamma.h"
#include "option_checks.h"
#include "text_output.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

struct ShowOptions : CommonOptions {
  CurveChoice choice;
  CurvePlotOptions plot;
  int points = 17;
  ExportRequests exports;
};

void printTable(std::span<const std::int32_t> table, std::size_t perLine) {
  TextTable text(std::vector<TextTable::Column>(perLine + 1));
  for (std::size_t i = 0; i < table.size(); i += perLine) {
    std::vector<std::string> cells{std::to_string(i) + ":"};
    for (std::size_t k = i; k < std::min(i + perLine, table.size()); ++k)
      cells.push_back(std::to_string(table[k]));
    text.addRow(std::move(cells));
  }
  std::cout << text.text();
}

void printText(const ShowOptions& options, const ShownCurve& shown) {
  std::cout << printable(options.choice.name) << ", " << shown.table.size() << " entries of "
            << kCurveBits << " bits, channel " << options.choice.channel << "\n\n";
  printTable(shown.table, options.wide ? 16 : 8);
  std::cout << (shown.pointsAreSamples
                    ? "\nNo control points; the table sampled at as many places:\n"
                    : "\nControl points:\n");
  TextTable text({{"X (index / 4)"}, {"Y (code / 64)"}});
  for (const auto& point : shown.points)
    text.addRow({std::to_string(point.X), std::to_string(point.Y)});
  std::cout << text.text();
}

void run(ShowOptions& options) {
  options.choice.nameFile(options.files);
  options.plot.nameFiles(options.files);
  options.files.output("--json", options.json);
  options.exports.nameFiles(options.files);
  const GammaCurvePtr curve = options.choice.curve();
  const ShownCurve shown = showCurve(*curve, {options.choice.curveChannel(), options.points});
  options.plot.write(options.files, [&](const auto& against) {
    return present::curvePlot(*curve, shown, against);
  });
  options.writeJson(present::toJson(shown));
  if (options.exports.any()) options.exports.write(options.files, curveTables(*curve));
  if (!options.printsText()) return;
  printText(options, shown);
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
  options->exports.addTo(app, exchange::MaterialKind::Curve);
  setJob(app, options, run);
}

}  // namespace greycard::cli
