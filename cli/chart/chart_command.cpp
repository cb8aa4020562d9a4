// greycard chart: finds the chart in a photograph and says where its patches are.

#include <cmath>
#include <iostream>
#include <memory>
#include <system_error>

#include "chart_source.h"
#include "command.h"
#include "greycard/chart_regions.h"
#include "greycard/chart_search_pictures.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/present/chart.h"
#include "sub_commands.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

struct ChartOptions : CommonOptions {
  ChartSource source;
  std::filesystem::path regionFile, annotated, debugFolder;
  bool quads = false, all = false;
};

std::string regionText(const LocatedChart& chart, bool quads) {
  return quads ? formatQuads(chart.patches) : formatRegions(chart.regions);
}

Picture annotated(const Picture& picture, const LocatedChart& chart) {
  if (chart.detection) return present::annotateDetection(picture, *chart.detection);
  return present::annotatePatches(picture, chart.patches, chart.check->outliers);
}

void makeFolder(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error || !std::filesystem::is_directory(folder, error))
    throw JobError("can't make the folder " + quoted(folder) + " of --debug");
}

// What the lattice search saw on its way, and the outcome.
void writeStages(const std::filesystem::path& folder, const Picture& picture,
                 const LocatedChart& chart, const LocateOptions& options) {
  makeFolder(folder);
  for (const StagePicture& stage : chartSearchStages(picture, detectOptions(picture, options)))
    writePicture(folder / (stage.name + ".png"), stage.picture);
  writePicture(folder / "5_outcome.png", annotated(picture, chart));
}

void printPlacement(const ChartDetection& detection) {
  constexpr double kHalfDigit = 0.05;  // what rounds to 360 is 0
  const ChartPlacement& placement = detection.placement;
  std::cout << "  method " << chartMethodName(detection.method) << ": "
            << placement.supportingPatches << " of 24 patches recognised";
  if (detection.method != ChartMethod::Corners) std::cout << ", gate " << fixed(placement.gate, 2);
  std::cout << "\n"
            << "  patches every " << fixed(placement.pitch, 1) << " pixels, first row at "
            << fixed(std::fmod(placement.orientationDeg + kHalfDigit, 360.0) - kHalfDigit, 1)
            << " degrees\n"
            << "  colour distance to the nominal chart " << fixed(detection.error, 0) << "\n";
}

void printSummary(const ChartOptions& options, const ChartSearch& search) {
  const LocatedChart& chart = search.chart;
  const bool given = !chart.detection || chart.detection->method == ChartMethod::Corners;
  std::cout << "Chart " << (given ? "given" : "found") << " in " << quoted(search.photo) << "\n";
  if (chart.detection) printPlacement(*chart.detection);
  if (chart.check)
    std::cout << "  likeness of the colours to the chart's " << fixed(chart.check->likeness, 2)
              << "\n";
  options.printWarnings(chart.warnings());
}

void runAll(ChartOptions& options, const Photograph& photograph, const LocateOptions& locate) {
  const FoundCharts found = searchCharts(photograph, locate);
  if (found.charts.empty())  // says why
    return locating([&] { searchChart(photograph, locate).require(); });
  if (!options.annotated.empty())
    options.files.write(options.annotated,
                        present::annotateDetections(photograph.picture, found.charts));
  options.writeJson(present::toJson(found));
  if (!options.printsText()) return;
  const std::size_t count = found.charts.size();
  std::cout << count << (count == 1 ? " chart" : " charts") << " found in " << quoted(found.photo)
            << "\n";
  for (const ChartDetection& chart : found.charts) {
    const PatchRegion part = surroundings(chart);
    std::cout << "--within " << fixed(part.left, 0) << "," << fixed(part.top, 0) << ","
              << fixed(part.width, 0) << "," << fixed(part.height, 0) << "\n";
    printPlacement(chart);
  }
  options.printWarnings(photograph.warnings);
}

void run(ChartOptions& options) {
  options.source.nameFiles(options.files);
  options.files.output("--output", options.regionFile);
  options.files.pictureOutput("--annotate", options.annotated);
  options.files.output("--json", options.json);

  const LocateOptions locate = options.source.options();
  options.tellOptions(present::toJson(locate), present::toJson(LocateOptions{}));
  const Photograph photograph = options.source.read();
  if (options.all) return runAll(options, photograph, locate);
  const Picture& picture = photograph.picture;
  const ChartSearch search = searchChart(photograph, locate);
  const LocatedChart& chart = search.chart;

  // Of use where the chart is refused too.
  if (!options.annotated.empty()) options.files.write(options.annotated, annotated(picture, chart));
  if (!options.debugFolder.empty()) writeStages(options.debugFolder, picture, chart, locate);
  options.writeJson(present::toJson(search));
  locating([&] { search.require(); });

  const std::string regions = regionText(chart, options.quads);
  options.files.write(options.regionFile, regions);
  if (!options.printsText()) return;
  printSummary(options, search);
  options.printWarnings(photograph.warnings);
  if (options.regionFile.empty()) std::cout << regions;
}

}  // namespace

void addChart(CLI::App& parent) {
  const auto options = std::make_shared<ChartOptions>();
  CLI::App& app =
      addSubCommand(parent, "chart", "Find the 24-patch chart in a photograph",
                    "greycard chart photo.jpg -o regions.txt --annotate annotated.png\n"
                    "greycard chart photo.jpg --corners 310,205 905,230 890,640 300,610",
                    *options);
  options->source.addTo(app);
  CLI::Option* all = app.add_flag(
      "--all", options->all, "Every chart in the photograph, and the --within that chooses it");
  for (const char* place : {"--regions", "--corners"}) all->excludes(app.get_option(place));
  app.add_option("-o,--output", options->regionFile,
                 "Region file: 24 lines left,top,width,height in chart order")
      ->excludes(all)
      ->type_name("FILE");
  app.add_flag("--quads", options->quads,
               "Regions as the corners of each patch, x1,y1,x2,y2,x3,y3,x4,y4")
      ->excludes(all);
  app.add_option("--annotate", options->annotated,
                 "Picture with the patches and their numbers drawn, or with what was seen instead")
      ->type_name("FILE");
  app.add_option("--debug", options->debugFolder,
                 "Folder for one numbered picture of each stage of the search")
      ->excludes(all)
      ->type_name("FOLDER");
  setJob(app, options, run);
}

}  // namespace greycard::cli
