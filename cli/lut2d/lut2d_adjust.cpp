// greycard lut2d adjust: drags one node and its neighbours.

#include <cmath>
#include <filesystem>
#include <iostream>
#include <memory>
#include <vector>

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

struct AdjustOptions : CommonOptions {
  std::filesystem::path lut, output;
  std::vector<double> at, by;
  std::vector<int> range{1, 1};
  bool keepsHitNode = false;

  Lut2dDragOptions drag() const {
    return {at[0], at[1], by[0], by[1], range[0], range[1], keepsHitNode};
  }
};

void print(const AdjustOptions& options, const Lut2dDragReport& report,
           const std::string& cutWarning) {
  std::cout << "Moved " << report.movedNodes << " nodes round hue " << fixed(report.hueDeg, 1)
            << " degrees, saturation " << fixed(report.sat, 3) << " (row " << report.node.row
            << ", column " << report.node.column << "); wrote " << quoted(options.output) << "\n";
  if (report.movedNodes == 0 && (options.by[0] != 0.0 || options.by[1] != 0.0))
    options.printWarnings(
        {"no node moved; a drag towards larger hues needs a --range wider than itself"});
  if (!cutWarning.empty()) options.printWarnings({cutWarning});
}

void run(AdjustOptions& options) {
  options.files.input("LUT", options.lut);
  options.files.output("--output", options.output);
  options.files.output("--json", options.json);
  if (options.at[1] < 0.0 || options.at[1] > 1.0)
    throw UsageError("--at: a saturation lies in 0 to 1");
  if (std::fabs(options.by[1]) > 1.0)
    throw UsageError("--by: saturations run from 0 to 1, so a drag is at most 1 up or down");
  Lut2DConfig table = present::readLut2d(options.lut);
  const Lut2dDragReport report = dragLut2d(table, options.drag());
  options.files.write(options.output, present::toJson(table));
  options.writeJson(present::toJson(report));
  if (options.printsText()) print(options, report, cutChanges(table).warning);
}

}  // namespace

void addLut2dAdjust(CLI::App& lut2d) {
  const auto options = std::make_shared<AdjustOptions>();
  CLI::App& app = addSubCommand(
      lut2d, "adjust",
      "Drag the node next to a colour; its neighbours follow, the less the farther they are.\n"
      "Hues move by whole degrees. Greys (the first column) stay.",
      "greycard lut2d adjust table.json --at 20,0.5 --by 15,-0.1 --range 2,4 -o warmer.json",
      *options);
  app.add_option("lut", options->lut, "Table to start from")
      ->required()
      ->transform(inputFile())
      ->type_name("LUT");
  app.add_option("-o,--output", options->output, "Table to write, as JSON")
      ->required()
      ->type_name("FILE");
  app.add_option("--at", options->at, "Hue in degrees and saturation of the colour to drag")
      ->required()
      ->expected(2)
      ->delimiter(',')
      ->type_name("H,S")
      ->check(numbersFrom(-360.0, 360.0));
  app.add_option("--by", options->by, "The drag in degrees and in saturation")
      ->required()
      ->expected(2)
      ->delimiter(',')
      ->type_name("dH,dS")
      ->check(numbersFrom(-360.0, 360.0));
  app.add_option("--range", options->range,
                 "How many hue rows and saturation columns to each side follow (default 1,1). On "
                 "the side of the drag more do, but a drag towards larger hues takes rows away, "
                 "about as many as it is wide")
      ->expected(2)
      ->delimiter(',')
      ->type_name("h,s")
      ->check(wholeNumbersFrom(0, 100));
  app.add_flag("--keep-node", options->keepsHitNode, "Leave the dragged node itself as it is");
  setJob(app, options, run);
}

}  // namespace greycard::cli
