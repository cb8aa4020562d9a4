// greycard skin: where skin falls in the colours of a camera whose charts are measured.

#include <cstddef>
#include <iostream>
#include <memory>
#include <utility>

#include "chart_source.h"
#include "command.h"
#include "greycard/camera_gamma.h"
#include "greycard/files.h"
#include "greycard/illum.h"
#include "greycard/present/measured_chart.h"
#include "job_files.h"
#include "skin_result.h"
#include "sub_commands.h"

namespace greycard::cli {
namespace {

constexpr std::size_t kBalancePatch = 19;

struct SkinOptions : CommonOptions {
  ChartSource source;  ///< what the three photographs have in common
  std::array<std::filesystem::path, kSkinLights.size()> charts;
  std::string ccm, gamma = "VGammaSRGB";
  std::filesystem::path csv, plot;
};

using Charts = std::array<MeasuredChart, kSkinLights.size()>;

std::vector<std::string> chartWarningsOf(const SkinOptions& options, const Charts& charts) {
  constexpr std::array kIllums{illum_D65, illum_A, illum_TL84};
  std::vector<std::string> warnings;
  for (std::size_t light = 0; light < charts.size(); ++light) {
    const std::string which = quoted(options.charts[light]) + ": ";
    for (const std::string& warning : charts[light].warnings) warnings.push_back(which + warning);
    if (const auto told = charts[light].light; told && *told != kIllums[light])
      warnings.push_back(which + "fitted for light " + illumName(*told) + " but given as " +
                         kSkinLights[light]);
    const Vector3& grey = charts[light].rgb[kBalancePatch];
    if (!(grey[0] > 0.0 && grey[1] > 0.0 && grey[2] > 0.0))
      warnings.push_back(which +
                         "patch 20 is not above black in every channel, so white balance "
                         "has nothing to go by");
  }
  return warnings;
}

// The matrix and where it comes from.
std::pair<Matrix3, std::string> matrixFor(const SkinOptions& options, const Charts& charts) {
  if (namesFile(options.ccm)) return {present::readMatrix(options.ccm), options.ccm};
  if (!options.ccm.empty()) try {
      return {present::matrixFromNumbers(options.ccm), "--ccm"};
    } catch (const std::invalid_argument& error) {
      throw UsageError("--ccm " + options.ccm + " is neither a file nor a matrix: " + error.what());
    }
  if (charts.back().matrix) return {*charts.back().matrix, options.charts.back().string()};
  throw UsageError(
      "a colour-correction matrix is needed: give --ccm, or as CHART_T84 what greycard ccm --json "
      "wrote");
}

std::array<std::vector<double>, 3> channelsOf(const PatchTable& rgb) {
  std::array<std::vector<double>, 3> channels;
  for (const Vector3& patch : rgb)
    for (std::size_t c = 0; c < channels.size(); ++c) channels[c].push_back(patch[c]);
  return channels;
}

void run(const SkinOptions& options) {
  JobFiles files;
  for (std::size_t light = 0; light < kSkinLights.size(); ++light)
    files.input(std::string("CHART_") + kSkinLights[light], options.charts[light]);
  if (namesFile(options.ccm)) files.input("--ccm", options.ccm);
  files.output("--csv", options.csv);
  files.output("--plot", options.plot);
  files.textOutput("--json", options.json);

  const CameraGamma gamma = cameraGamma(options.gamma);
  Charts charts;
  for (std::size_t light = 0; light < charts.size(); ++light)
    charts[light] = locating([&] {
      return present::readMeasuredChart(options.charts[light], options.source.options());
    });
  const auto [matrix, matrixFrom] = matrixFor(options, charts);

  SkinColorHelper helper;
  const auto d65 = channelsOf(charts[0].rgb), a = channelsOf(charts[1].rgb),
             t84 = channelsOf(charts[2].rgb);
  helper.SetMCCRGBValues_D65(d65[0], d65[1], d65[2]);
  helper.SetMCCRGBValues_A(a[0], a[1], a[2]);
  helper.SetMCCRGBValues_T84(t84[0], t84[1], t84[2]);
  helper.SetCCMValues_T84(matrix);
  helper.SetGammaTable(gamma.tables[1], gamma.bits);
  helper.Calibrate();

  const SkinResult result{options.charts,
                          gamma.name,
                          matrixFrom,
                          matrix,
                          SkinSet(*helper.GetUpperData()),
                          SkinSet(*helper.GetLowerData()),
                          helper.GetEncodedColours().get(),
                          chartWarningsOf(options, charts)};
  if (!options.csv.empty()) writeWholeFile(options.csv, skinCsv(result));
  if (!options.plot.empty()) writeWholeFile(options.plot, skinPlot(result));
  writeJson(options.json, skinJson(result));
  if (options.printsText()) std::cout << skinText(result);
}

}  // namespace

void addSkin(CLI::App& parent) {
  const auto options = std::make_shared<SkinOptions>();
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
  options->source.addSampleOptions(app);
  app.add_option("--csv", options->csv, "A line per synthetic colour")->type_name("FILE");
  app.add_option("--plot", options->plot, "Saturation over hue ratio, as SVG")->type_name("FILE");
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
