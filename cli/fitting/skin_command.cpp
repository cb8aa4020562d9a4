// greycard skin: where skin falls in the colours of a camera whose charts are measured.

#include <cstddef>
#include <iostream>
#include <memory>
#include <stdexcept>

#include "chart_source.h"
#include "command.h"
#include "greycard/camera_gamma.h"
#include "greycard/files.h"
#include "greycard/present/fitting.h"
#include "greycard/present/measured_chart.h"
#include "job_files.h"
#include "matrix_option.h"
#include "option_checks.h"
#include "skin_text.h"
#include "sub_commands.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

struct SkinCommandOptions : CommonOptions {
  ChartSource source;  ///< what the three photographs have in common
  SkinChartFiles charts;
  std::string ccm, gamma = "VGammaSRGB";
  std::filesystem::path csv, plot, report;
};

// The matrix of --ccm, or that of the last chart.
void takeMatrix(const SkinCommandOptions& options, const MeasuredChart& last, SkinOptions& skin) {
  if (!options.ccm.empty()) {
    skin.matrix = matrixFromOption("--ccm", options.ccm);
    skin.matrixFrom = namesFile(options.ccm) ? options.ccm : "--ccm";
  } else if (!last.matrix) {
    throw UsageError(
        "a colour-correction matrix is needed: give --ccm, or as CHART_T84 what greycard ccm "
        "--json wrote");
  }
}

void run(SkinCommandOptions& options) {
  for (std::size_t light = 0; light < kSkinLights.size(); ++light)
    options.files.input(std::string("CHART_") + kSkinLights[light], options.charts[light]);
  if (namesFile(options.ccm)) options.files.input("--ccm", options.ccm);
  options.files.output("--csv", options.csv);
  options.files.plotOutput("--plot", options.plot);
  options.files.pageOutput("--report", options.report);
  options.files.output("--json", options.json);

  cameraGamma(options.gamma);  // a wrong name is told before the charts are looked for
  SkinCharts charts;
  for (std::size_t light = 0; light < charts.size(); ++light)
    charts[light] = locating([&] {
      return present::readMeasuredChart(options.charts[light], options.source.options(light),
                                        options.source.samples.dump());
    });
  SkinOptions skin;
  skin.gamma = options.gamma;
  takeMatrix(options, charts.back(), skin);
  options.tellOptions(present::toJson(skin), present::toJson(SkinOptions{}));
  const SkinCalibration result = calibrateSkin(charts, skin, options.charts);

  if (!options.csv.empty()) options.files.write(options.csv, present::skinCsv(result));
  if (!options.plot.empty()) options.files.writePlot(options.plot, present::skinPlot(result));
  if (!options.report.empty())
    options.files.write(options.report, present::skinReport(result, options.provenance));
  options.writeJson(present::toJson(result));
  if (!options.printsText()) return;
  std::cout << skinText(result);
  options.printWarnings(result.warnings);
}

}  // namespace

void addSkin(CLI::App& parent) {
  const auto options = std::make_shared<SkinCommandOptions>();
  CLI::App& app = addSubCommand(
      parent, "skin",
      "Where human skin falls in a camera's processed colours, from its charts under three "
      "lights:\n"
      "hue ratio, saturation and luma of 3213 synthetic skin colours, for tuning a skin detector",
      "greycard ccm tl84.png --light TL84 --json tl84.json\n"
      "greycard skin d65.png a.png tl84.json --csv skin.csv --plot skin.svg",
      *options);
  constexpr std::array kDescriptions{"daylight D65", "tungsten light A", "fluorescent light TL84"};
  for (std::size_t light = 0; light < kSkinLights.size(); ++light)
    app.add_option(std::string("chart_") + kSkinLights[light], options->charts[light],
                   std::string("The chart under ") + kDescriptions[light] +
                       ": a photograph, or what greycard ccm --json wrote")
        ->required()
        ->transform(inputFile())
        ->type_name(std::string("CHART_") + kSkinLights[light]);
  app.add_option("--ccm", options->ccm,
                 "Colour-correction matrix for all three lights: nine numbers row by row, a file "
                 "of them, or what greycard ccm --json wrote (default: the one in CHART_T84)")
      ->type_name("LIST|FILE");
  app.add_option("--gamma", options->gamma,
                 "The camera's tone curve: a name of the catalogue (greycard gamma list) or a file "
                 "of 256 numbers; its green serves all channels")
      ->capture_default_str()
      ->type_name("NAME|FILE");
  options->source.addSharedOptions(app, static_cast<int>(kSkinLights.size()));
  app.add_option("--csv", options->csv, "A line per synthetic colour")->type_name("FILE");
  app.add_option("--plot", options->plot, "Saturation over hue ratio, as SVG or PNG")
      ->type_name("FILE");
  app.add_option("--report", options->report, "Report as one HTML file")->type_name("FILE");
  setJob(app, options, run);
}

}  // namespace greycard::cli
