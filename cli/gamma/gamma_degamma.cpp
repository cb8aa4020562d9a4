// greycard gamma degamma: the linear inputs behind an encoded colour.

#include <array>
#include <cmath>
#include <iostream>
#include <memory>
#include <vector>

#include "command.h"
#include "curve_plot.h"
#include "curve_source.h"
#include "gamma_commands.h"
#include "greycard/de_gamma.h"
#include "greycard/number_text.h"
#include "option_checks.h"
#include "text_table.h"
#include "transition.h"

namespace greycard::cli {
namespace {

constexpr double kTableUnitsPerLevel = 4.0;

struct DegammaOptions : CommonOptions {
  std::string curve;
  std::array<double, 3> colour{};
  CurvePlotOptions plot;
};

// The 256-entry table of 10 bits that a pipeline of 8-bit colours works with.
std::vector<double> pipelineTable(const GammaTable& table) {
  std::vector<double> entries;
  for (std::size_t i = 0; i < 256; ++i) entries.push_back(table[4 * i] / 16.0);
  return entries;
}

void draw(const DegammaOptions& options, const GammaCurve& curve,
          const std::array<double, 3>& found) {
  CurvePlot plot("Inputs behind a colour, by " + curve.Name(),
                 {"Input (entry of the table, 1..256)", 1.0, 256.0},
                 {"Output (10-bit code, 4 per 8-bit level)", 0.0, 1023.0});
  plot.addCurve(curve.Name(), curve);
  for (std::size_t c = 0; c < found.size(); ++c)
    plot.addMarker(kChannelNames[c], {found[c], kTableUnitsPerLevel * options.colour[c]},
                   channelColour(c));
  plot.write(options.plot);
}

void run(const DegammaOptions& options) {
  JobFiles files;
  nameCurveFile(files, "the curve file", options.curve);
  options.plot.nameFiles(files);
  files.textOutput("--json", options.json);
  const GammaCurvePtr curve = curveByNameOrFile(options.curve);
  const std::array tables{curve->DataR(), curve->DataG(), curve->DataB()};
  std::array<double, 3> found{};
  for (std::size_t c = 0; c < found.size(); ++c) {
    std::array<double, 3> positions{};
    DeGamma().runDeGamma(pipelineTable(*tables[c]), options.colour, positions);
    found[c] = positions[c];
  }
  if (!options.plot.plot.empty()) draw(options, *curve, found);
  writeJson(options.json, {{"name", curve->Name()},
                           {"colour", options.colour},
                           {"positions", found},
                           {"table_red", pipelineTable(*tables[0])},
                           {"table_green", pipelineTable(*tables[1])},
                           {"table_blue", pipelineTable(*tables[2])}});
  if (!options.printsText()) return;
  TextTable text(
      {{"channel", TextTable::Align::Left}, {"level"}, {"entry (1..256)"}, {"input (%)"}});
  bool flat = false;
  for (std::size_t c = 0; c < found.size(); ++c) {
    flat = flat || std::isnan(found[c]);
    text.addRow({kChannelNames[c], fixed(options.colour[c], 2), fixed(found[c], 3),
                 fixed((found[c] - 1.0) / 2.55, 2)});
  }
  std::cout << text.text();
  if (flat)
    std::cout
        << "A dash: the level lies at the edge of a flat stretch of the curve, where straight "
           "lines give no single input.\n";
}

}  // namespace

void addGammaDegamma(CLI::App& gamma) {
  const auto options = std::make_shared<DegammaOptions>();
  CLI::App& app = addSubCommand(
      gamma, "degamma",
      "The inputs at which a curve gives an encoded colour, as entries 1 to 256 of its 256-entry\n"
      "table, by straight lines; levels that the curve doesn't reach are extrapolated",
      "greycard gamma degamma VGammaSRGB 200 128 64", *options);
  app.add_option("curve", options->curve, "A curve of the catalogue, or a curve file")
      ->required()
      ->type_name("NAME|FILE");
  constexpr std::array kNames{"R", "G", "B"};
  for (std::size_t c = 0; c < kNames.size(); ++c)
    app.add_option(kNames[c], options->colour[c], "Encoded 8-bit level, 0 to 255")
        ->required()
        ->check(numbersFrom(0.0, 255.0));
  options->plot.addTo(app);
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
