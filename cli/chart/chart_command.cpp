// greycard chart: finds the chart in a photograph and says where its patches are.

#include <iostream>
#include <memory>

#include "chart_source.h"
#include "command.h"
#include "greycard/chart_regions.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/present/chart.h"
#include "sub_commands.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

struct ChartOptions : CommonOptions {
  ChartSource source;
  std::filesystem::path regionFile, annotated;
};

void printSummary(const ChartSearch& search) {
  const ChartDetection& detection = *search.chart.detection;
  std::cout << "Chart found in " << quoted(search.photo) << "\n"
            << "  patch squares found " << detection.quads << ", used " << detection.quadsUsed
            << "; half patch side " << fixed(detection.size, 0) << " pixels\n"
            << "  colour distance to the nominal chart " << fixed(detection.error, 0) << "\n";
  printWarnings(search.chart.warnings());
}

void run(const ChartOptions& options) {
  JobFiles files;
  options.source.nameFiles(files);
  files.output("--output", options.regionFile);
  files.pictureOutput("--annotate", options.annotated);
  files.textOutput("--json", options.json);

  const Picture picture = options.source.read();
  const ChartSearch search = locating(
      [&] { return searchChart(picture, options.source.options(), options.source.photo); });
  const PatchRegions& regions = search.chart.patches();

  if (!options.annotated.empty())
    writePicture(options.annotated, present::annotateRegions(picture, regions));
  if (!options.regionFile.empty()) writeRegions(options.regionFile, regions);
  if (!options.json.empty()) writeText(options.json, present::toJson(search));
  if (!options.printsText()) return;
  printSummary(search);
  if (options.regionFile.empty()) std::cout << formatRegions(regions);
}

}  // namespace

void addChart(CLI::App& parent) {
  const auto options = std::make_shared<ChartOptions>();
  CLI::App& app =
      addSubCommand(parent, "chart", "Find the 24-patch chart in a photograph",
                    "greycard chart photo.jpg -o regions.txt --annotate annotated.png", *options);
  options->source.addTo(app, false);
  app.add_option("-o,--output", options->regionFile,
                 "Region file: 24 lines left,top,width,height in chart order")
      ->type_name("FILE");
  app.add_option("--annotate", options->annotated,
                 "Picture with the regions and patch numbers drawn")
      ->type_name("FILE");
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
