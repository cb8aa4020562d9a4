// greycard lut2d invert: the table that undoes another, and how well it does.

#include <filesystem>
#include <iostream>
#include <memory>

#include "command.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/present/lut2d.h"
#include "job_files.h"
#include "lut2d_commands.h"
#include "option_checks.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

struct InvertOptions : CommonOptions {
  std::filesystem::path lut, output;
};

void run(InvertOptions& options) {
  options.files.input("LUT", options.lut);
  options.files.output("--output", options.output);
  options.files.output("--json", options.json);
  const Lut2dInverse inverse = invertLut2d(present::readLut2d(options.lut));
  options.files.write(options.output, present::toJson(inverse.table));
  options.writeJson(present::toJson(inverse.report));
  if (!options.printsText()) return;
  const int uncovered = inverse.report.uncoveredNodes;
  const auto& [hueDeg, sat] = inverse.report.roundTrip;
  std::cout << uncovered
            << (uncovered == 1 ? " node lies in no triangle of the table's targets and changes"
                               : " nodes lie in no triangle of the table's targets and change")
            << " nothing\n"
            << "There and back over a chart of colours:\n"
            << "  hue         mean " << fixed(hueDeg.mean, 2) << ", worst "
            << fixed(hueDeg.worst, 2) << " degrees\n"
            << "  saturation  mean " << fixed(sat.mean, 4) << ", worst " << fixed(sat.worst, 4)
            << "\n";
}

}  // namespace

void addLut2dInvert(CLI::App& lut2d) {
  const auto options = std::make_shared<InvertOptions>();
  CLI::App& app = addSubCommand(
      lut2d, "invert",
      "The table that undoes a table, and the error of going there and back: over hues every 5\n"
      "degrees, saturations 0.1 to 0.9 and lightnesses 0.35, 0.5 and 0.65, in 10 bits",
      "greycard lut2d invert warmer.json -o back.json", *options);
  app.add_option("lut", options->lut, "Table to invert")
      ->required()
      ->transform(inputFile())
      ->type_name("LUT");
  app.add_option("-o,--output", options->output, "Table to write, as JSON")
      ->required()
      ->type_name("FILE");
  setJob(app, options, run);
}

}  // namespace greycard::cli
