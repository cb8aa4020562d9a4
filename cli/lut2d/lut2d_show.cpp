// greycard lut2d show: a table's changes as text and as a wheel.

#include <cmath>
#include <filesystem>
#include <iostream>
#include <memory>

#include "command.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "job_files.h"
#include "lut2d_commands.h"
#include "lut2d_file.h"
#include "lut2d_reach.h"
#include "lut2d_wheel.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

struct ShowOptions : CommonOptions {
  std::filesystem::path lut, plot;
};

using Changes = std::array<double, kLut2dNodes>;

double largest(const Changes& changes) {
  double most = 0.0;
  for (const double change : changes) most = std::max(most, std::fabs(change));
  return most;
}

void print(const char* title, const Lut2DConfig& config, const Changes& changes, int decimals) {
  std::vector<TextTable::Column> columns{{"hue \\ sat"}};
  for (const double sat : config.lut_1d_s) columns.push_back({fixed(sat, 2)});
  TextTable table(columns);
  for (std::size_t row = 0; row < kLut2dHueRows; ++row) {
    std::vector<std::string> cells{fixed(config.lut_1d_h[row], 1)};
    for (std::size_t column = 0; column < kLut2dSatColumns; ++column)
      cells.push_back(fixed(changes[row * kLut2dSatColumns + column], decimals));
    table.addRow(std::move(cells));
  }
  std::cout << "\n" << title << "\n" << table.text();
}

void run(const ShowOptions& options) {
  JobFiles files;
  files.input("LUT", options.lut);
  files.output("--plot", options.plot);
  files.textOutput("--json", options.json);
  const Lut2DConfig config = readLut2d(options.lut);
  int changed = 0;
  for (std::size_t i = 0; i < kLut2dNodes; ++i)
    if (config.lut_2d_h[i] != 0.0 || config.lut_2d_s[i] != 0.0) ++changed;
  const CutChanges cut = cutChanges(config);
  const double hue = largest(config.lut_2d_h), sat = largest(config.lut_2d_s);
  if (!options.plot.empty())
    writeWholeFile(options.plot,
                   lut2dWheel("Hue/saturation table " + options.lut.filename().string(), config));
  writeJson(options.json, {{"nodes", kLut2dNodes},
                           {"changed_nodes", changed},
                           {"largest_hue_change_deg", hue},
                           {"largest_saturation_change", sat},
                           {"cut_nodes", cut.nodes},
                           {"table", lut2dJson(config)}});
  if (!options.printsText()) return;
  std::cout << quoted(options.lut) << ": " << changed << " of " << kLut2dNodes
            << " nodes change colour, by up to " << fixed(hue, 1) << " degrees and "
            << fixed(sat, 3) << " in saturation\n";
  if (!cut.warning.empty()) std::cout << "Warning: " << cut.warning << "\n";
  print("Hue change in degrees", config, config.lut_2d_h, 1);
  print("Saturation change", config, config.lut_2d_s, 3);
}

}  // namespace

void addLut2dShow(CLI::App& lut2d) {
  const auto options = std::make_shared<ShowOptions>();
  CLI::App& app = addSubCommand(lut2d, "show", "The changes of a table, as text and as a wheel",
                                "greycard lut2d show table.json --plot wheel.svg", *options);
  app.add_option("lut", options->lut, "Table (greycard lut2d new)")->required()->type_name("LUT");
  app.add_option("--plot", options->plot,
                 "Wheel to write, as SVG: each node with an arrow to where it moves its colour")
      ->type_name("FILE");
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
