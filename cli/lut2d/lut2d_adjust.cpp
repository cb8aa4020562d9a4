// greycard lut2d adjust: drags one node and its neighbours.

#include <cmath>
#include <filesystem>
#include <iostream>
#include <memory>
#include <vector>

#include "command.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/two_d_lut_helper.h"
#include "job_files.h"
#include "lut2d_commands.h"
#include "lut2d_file.h"
#include "lut2d_reach.h"
#include "option_checks.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

constexpr int kRows = kLut2dHueRows, kColumns = kLut2dSatColumns;

struct AdjustOptions : CommonOptions {
  std::filesystem::path lut, output;
  std::vector<double> at, by;
  std::vector<int> range{1, 1};
  bool keepsHitNode = false;
};

// -180 to below 180.
double shortestTurn(double degrees) {
  const double turned = std::fmod(degrees + 180.0, 360.0);
  return turned < 0.0 ? turned + 180.0 : turned - 180.0;
}

struct Node {
  int row = 0, column = 0;
};

Node nearestNode(const Lut2DConfig& config, double hue, double sat) {
  Node node;
  const auto hueDistance = [&](int row) {
    return std::fabs(shortestTurn(config.lut_1d_h[static_cast<std::size_t>(row)] - hue));
  };
  const auto satDistance = [&](int column) {
    return std::fabs(config.lut_1d_s[static_cast<std::size_t>(column)] - sat);
  };
  for (int row = 1; row < kRows; ++row)
    if (hueDistance(row) < hueDistance(node.row)) node.row = row;
  for (int column = 1; column < kColumns; ++column)
    if (satDistance(column) < satDistance(node.column)) node.column = column;
  return node;
}

int wholeDegrees(double hue) {
  return static_cast<int>(std::lround(shortestTurn(hue)) + 360) % 360;
}

// Where the nodes take their colours: what a drag edits.
struct Targets {
  std::vector<double> sat;
  std::vector<std::int32_t> hue;

  explicit Targets(const Lut2DConfig& config) {
    for (std::size_t i = 0; i < kLut2dNodes; ++i) {
      hue.push_back(wholeDegrees(config.lut_1d_h[i / kLut2dSatColumns] + config.lut_2d_h[i]));
      sat.push_back(config.lut_1d_s[i % kLut2dSatColumns] + config.lut_2d_s[i]);
    }
  }
};

// Adds what the drag moved to the changes, so that nodes beyond its reach keep their fractions.
int drag(Lut2DConfig& config, const Node& node, const AdjustOptions& options) {
  const Targets before(config);
  Targets after = before;
  TwoDLutHelper::Adjust(options.at[1], wholeDegrees(options.at[0]), options.by[1], options.by[0],
                        options.range[1], options.range[0], node.row, node.column, after.sat,
                        after.hue, kRows, kColumns, !options.keepsHitNode);
  int moved = 0;
  for (std::size_t i = 0; i < kLut2dNodes; ++i) {
    config.lut_2d_h[i] += shortestTurn(after.hue[i] - before.hue[i]);
    config.lut_2d_s[i] += after.sat[i] - before.sat[i];
    if (after.hue[i] != before.hue[i] || after.sat[i] != before.sat[i]) ++moved;
  }
  return moved;
}

std::string adviceAbout(const AdjustOptions& options, int moved, const CutChanges& cut) {
  std::string advice;
  if (moved == 0 && (options.by[0] != 0.0 || options.by[1] != 0.0))
    advice +=
        "Warning: no node moved; a drag towards larger hues needs a --range wider than itself\n";
  if (!cut.warning.empty()) advice += "Warning: " + cut.warning + "\n";
  return advice;
}

void run(const AdjustOptions& options) {
  JobFiles files;
  files.input("LUT", options.lut);
  files.textOutput("--output", options.output);
  files.textOutput("--json", options.json);
  if (options.at[1] < 0.0 || options.at[1] > 1.0)
    throw UsageError("--at: a saturation lies in 0 to 1");
  if (std::fabs(options.by[1]) > 1.0)
    throw UsageError("--by: saturations run from 0 to 1, so a drag is at most 1 up or down");
  Lut2DConfig config = readLut2d(options.lut);
  const Node node = nearestNode(config, options.at[0], options.at[1]);
  const int moved = drag(config, node, options);
  const double hue = config.lut_1d_h[static_cast<std::size_t>(node.row)];
  const double sat = config.lut_1d_s[static_cast<std::size_t>(node.column)];
  const CutChanges cut = cutChanges(config);
  writeJson(options.output.string(), lut2dJson(config));
  writeJson(options.json, {{"row", node.row},
                           {"column", node.column},
                           {"hue_deg", hue},
                           {"saturation", sat},
                           {"moved_nodes", moved},
                           {"cut_nodes", cut.nodes}});
  if (options.printsText() && options.output != "-")
    std::cout << "Moved " << moved << " nodes round hue " << fixed(hue, 1)
              << " degrees, saturation " << fixed(sat, 3) << " (row " << node.row << ", column "
              << node.column << "); wrote " << quoted(options.output) << "\n"
              << adviceAbout(options, moved, cut);
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
  app.add_option("lut", options->lut, "Table to start from")->required()->type_name("LUT");
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
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
