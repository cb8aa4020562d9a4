// greycard gamma degamma: the linear inputs behind an encoded colour.

#include <algorithm>
#include <array>
#include <cmath>
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

struct DegammaOptions : CommonOptions {
  std::string curve;
  Vector3 colour{};
  CurvePlotOptions plot;
};

void print(const DeGammaResult& result) {
  TextTable text(
      {{"channel", TextTable::Align::Left}, {"level"}, {"entry (1..256)"}, {"input (%)"}});
  for (std::size_t c = 0; c < result.positions.size(); ++c)
    text.addRow({kCurveChannelNames[c + 1], fixed(result.colour[c], 2),
                 fixed(result.positions[c], 3), fixed((result.positions[c] - 1.0) / 2.55, 2)});
  std::cout << text.text();
  if (std::ranges::any_of(result.positions, [](double position) { return std::isnan(position); }))
    std::cout
        << "A dash: the level lies at the edge of a flat stretch of the curve, where straight "
           "lines give no single input.\n";
}

void run(DegammaOptions& options) {
  nameCurveFile(options.files, "the curve file", options.curve);
  options.plot.nameFiles(options.files);
  options.files.output("--json", options.json);
  const GammaCurvePtr curve = curveFromOption(options.curve);
  const DeGammaResult result = degammaColour(*curve, options.colour);
  options.plot.write(options.files, [&](const auto& against) {
    return present::curvePlot(result, curveTables(*curve), against);
  });
  options.writeJson(present::toJson(result));
  if (options.printsText()) print(result);
}

}  // namespace

void addGammaDegamma(CLI::App& gamma) {
  const auto options = std::make_shared<DegammaOptions>();
  CLI::App& app = addSubCommand(
      gamma, "degamma",
      "The inputs at which a curve gives an encoded colour, as entries 1 to 256 of its 256-entry\n"
      "table, by straight lines; levels that the curve doesn't reach are extrapolated",
      "greycard gamma degamma VGammaSRGB 200 128 64", *options);
  app.add_option("curve", options->curve,
                 "A curve of the catalogue, HDR10, HLG, or a file of a curve")
      ->required()
      ->type_name("NAME|FILE");
  constexpr std::array kNames{"R", "G", "B"};
  for (std::size_t c = 0; c < kNames.size(); ++c)
    app.add_option(kNames[c], options->colour[c], "Encoded 8-bit level, 0 to 255")
        ->required()
        ->check(numbersFrom(0.0, 255.0));
  options->plot.addTo(app);
  setJob(app, options, run);
}

}  // namespace greycard::cli
