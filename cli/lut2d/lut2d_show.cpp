// greycard lut2d show: a table's changes as text and as a wheel.

#include <algorithm>
#include <array>
#include <filesystem>
#include <iostream>
#include <memory>

#include "command.h"
#include "export_requests.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/present/lut2d.h"
#include "job_files.h"
#include "lut2d_commands.h"
#include "option_checks.h"
#include "text_output.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

struct ShowOptions : CommonOptions {
  std::filesystem::path lut, plot;
  ExportRequests exports;
};

using Changes = std::array<double, kLut2dNodes>;

// \param perTable  saturations side by side
void printChanges(const char* title, const Lut2DConfig& table, const Changes& changes, int decimals,
                  std::size_t perTable) {
  std::cout << "\n" << title << "\n";
  for (std::size_t first = 0; first < kLut2dSatColumns; first += perTable) {
    const std::size_t end = std::min(first + perTable, kLut2dSatColumns);
    std::vector<TextTable::Column> columns{{"hue \\ sat"}};
    for (std::size_t column = first; column < end; ++column)
      columns.push_back({fixed(table.lut_1d_s[column], 2)});
    TextTable text(columns);
    for (std::size_t row = 0; row < kLut2dHueRows; ++row) {
      std::vector<std::string> cells{fixed(table.lut_1d_h[row], 1)};
      for (std::size_t column = first; column < end; ++column)
        cells.push_back(fixed(changes[row * kLut2dSatColumns + column], decimals));
      text.addRow(std::move(cells));
    }
    std::cout << (first == 0 ? "" : "\n") << text.text();
  }
}

void run(ShowOptions& options) {
  options.files.input("LUT", options.lut);
  options.files.plotOutput("--plot", options.plot);
  options.files.output("--json", options.json);
  options.exports.nameFiles(options.files);
  const Lut2dSummary summary = summariseLut2d(present::readLut2d(options.lut));
  const Lut2DConfig& table = summary.table;
  if (!options.plot.empty())
    options.files.writePlot(options.plot,
                            present::lut2dWheel(table, options.lut.filename().string()));
  options.writeJson(present::toJson(summary));
  options.exports.write(options.files, table);
  if (!options.printsText()) return;
  std::cout << quoted(options.lut) << ": " << summary.changedNodes << " of " << kLut2dNodes
            << " nodes change colour, by up to " << fixed(summary.largestHueChangeDeg, 1)
            << " degrees and " << fixed(summary.largestSatChange, 3) << " in saturation\n";
  if (const CutChanges cut = cutChanges(table); !cut.warning.empty())
    options.printWarnings({cut.warning});
  const std::size_t perTable = options.wide ? kLut2dSatColumns : kLut2dSatColumns / 2;
  printChanges("Hue change in degrees", table, table.lut_2d_h, 1, perTable);
  printChanges("Saturation change", table, table.lut_2d_s, 3, perTable);
}

}  // namespace

void addLut2dShow(CLI::App& lut2d) {
  const auto options = std::make_shared<ShowOptions>();
  CLI::App& app = addSubCommand(lut2d, "show", "The changes of a table, as text and as a wheel",
                                "greycard lut2d show table.json --plot wheel.svg", *options);
  app.add_option("lut", options->lut, "Table (greycard lut2d new)")
      ->required()
      ->transform(inputFile())
      ->type_name("LUT");
  app.add_option(
         "--plot", options->plot,
         "Wheel to write, as SVG or PNG: each node with an arrow to where it moves its colour")
      ->type_name("FILE");
  options->exports.addTo(app, exchange::MaterialKind::Lut2d);
  setJob(app, options, run);
}

}  // namespace greycard::cli
