// greycard sigma: the radial noise table of a flat field.

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <memory>

#include "command.h"
#include "export_requests.h"
#include "flat_field_source.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/present/noise.h"
#include "job_files.h"
#include "sub_commands.h"
#include "text_output.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

struct SigmaOptions : CommonOptions {
  FlatFieldSource source;
  std::filesystem::path csv, plot, map, report;
  ExportRequests exports;
  bool force = false;
};

void nameFiles(SigmaOptions& options) {
  options.files.input("FLATFIELD", options.source.file);
  options.files.output("--csv", options.csv);
  options.files.plotOutput("--plot", options.plot);
  options.files.pageOutput("--report", options.report);
  options.files.pictureOutput("--map", options.map);
  options.files.output("--json", options.json);
  options.exports.nameFiles(options.files);
}

std::string percent(double share) {
  return fixed(100.0 * share, 2) + " %";
}

std::string sigmaText(const SigmaEstimate& estimate) {
  constexpr std::size_t kPerLine = 10;
  TextTable table(std::vector<TextTable::Column>(kPerLine + 1));
  for (std::size_t i = 0; i < kSigmaEntries; i += kPerLine) {
    std::vector<std::string> cells{std::to_string(i) + ":"};
    for (std::size_t k = i; k < std::min(i + kPerLine, kSigmaEntries); ++k)
      cells.push_back(fixed(estimate.lut[k], 4));
    table.addRow(std::move(cells));
  }
  const SigmaReport& report = estimate.report;
  return "Centre sigma " + fixed(estimate.centreNoiseSigma, 3) + " (local sigma of ring 0 " +
         fixed(report.centreRingSigma, 3) + "), in code values of 8 bits" +
         (estimate.fileCodes == 1.0
              ? std::string()
              : "; " + fixed(estimate.centreNoiseSigma * estimate.fileCodes, 3) +
                    " in those of the file") +
         "\n" + "Mean " + fixed(report.centreMean, 1) + " at the centre, " +
         fixed(report.cornerMean, 1) + " in the corners; " + percent(report.ceilingShare) +
         " of the samples at 255, " + percent(report.floorShare) + " at 0\n\n" +
         "Factors from the centre to the corners:\n" + table.text();
}

void requireFlat(const SigmaEstimate& estimate) try {
  estimate.require();
} catch (const DoubtfulFlatField& doubt) {
  throw JobError(std::string(doubt.what()) + " (--force goes on all the same)");
}

void run(SigmaOptions& options) {
  nameFiles(options);
  options.tellOptions(present::toJson(options.source.options()),
                      present::toJson(FlatFieldOptions{}));
  const bool showsPixels = !options.map.empty() || !options.report.empty();
  SigmaEstimate estimate = estimateSigma(options.source.read(), showsPixels);
  if (options.force)
    std::ranges::copy(estimate.doubts, std::back_inserter(estimate.advice));
  else
    requireFlat(estimate);

  if (!options.csv.empty()) options.files.write(options.csv, present::sigmaCsv(estimate));
  if (!options.plot.empty()) options.files.writePlot(options.plot, present::sigmaPlot(estimate));
  if (!options.map.empty()) options.files.write(options.map, present::sigmaMap(estimate));
  if (!options.report.empty())
    options.files.write(options.report, present::sigmaReport(estimate, options.provenance));
  options.writeJson(present::toJson(estimate));
  options.exports.write(options.files, estimate);
  if (!options.printsText()) return;
  std::cout << quoted(estimate.file) << ", " << estimate.width << " x " << estimate.height
            << " pixels\n"
            << sigmaText(estimate);
  for (const std::string& sentence : estimate.advice)
    printParagraph("Advice: " + sentence, options.wide);
}

}  // namespace

void addSigma(CLI::App& parent) {
  const auto options = std::make_shared<SigmaOptions>();
  CLI::App& app = addSubCommand(
      parent, "sigma",
      "Estimate the radial noise table of a noise-reduction block from a flat field: how much\n"
      "stronger the noise is at each of 164 distances from the centre than at the centre",
      "greycard sigma flat.png --plot noise.svg --map noise.png\n"
      "greycard sigma flat.raw --raw 4000,3000,8 --csv noise.csv",
      *options);
  options->source.addTo(app);
  app.add_flag("--force", options->force, "Go on with a field that isn't flat or is cut off");
  app.add_option("--csv", options->csv, "Write a line per ring")->type_name("FILE");
  app.add_option("--plot", options->plot, "Draw the factors over the radius, as SVG or PNG")
      ->type_name("FILE");
  app.add_option("--map", options->map, "Picture of the local sigma in code values (.png, ...)")
      ->type_name("FILE");
  app.add_option("--report", options->report, "Report as one HTML file")->type_name("FILE");
  options->exports.addTo(app, exchange::MaterialKind::Noise);
  setJob(app, options, run);
}

}  // namespace greycard::cli
