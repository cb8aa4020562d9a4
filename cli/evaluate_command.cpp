// greycard evaluate: the colour error of a camera as it is, before any correction is fitted.

#include <iostream>
#include <memory>

#include "chart_source.h"
#include "colour_errors.h"
#include "command.h"
#include "greycard/color_correction_utils.h"
#include "greycard/files.h"
#include "light_option.h"
#include "option_checks.h"
#include "patch_table.h"
#include "sub_commands.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

struct EvaluateOptions : CommonOptions {
  ChartSource source;
  std::string light = "D65";
  double scale = 1.0;
};

void print(const EvaluateOptions& options, const LocatedChart& chart, const PatchTable& reference,
           const PatchTable& measured, const ColourErrors& errors) {
  std::cout << "Chart in " << quoted(options.source.photo)
            << " as linear sRGB, against the reference under " << options.light << "\n\n"
            << patchTableText({{"measured", measured}, {"reference", reference}}, {{"", errors}})
            << "\nMean dE76 " << fixed(errors.cie76.mean, 2) << ", dE94 "
            << fixed(errors.cie94.mean, 2) << ", dE00 " << fixed(errors.ciede2000.mean, 2)
            << "; worst dE76 " << fixed(errors.cie76.worst, 2) << " at patch "
            << errors.cie76.worstPatch + 1 << "\n";
  for (const std::string& warning : chartWarnings(chart))
    std::cout << "Warning: " << warning << "\n";
}

Json evaluationJson(const EvaluateOptions& options, const LocatedChart& chart,
                    const MacbethChartData& data, const PatchTable& measured,
                    const ColourErrors& errors) {
  Json json = {{"photo", options.source.photo.string()},  {"light", options.light},
               {"mean_cie76", errors.cie76.mean},         {"mean_cie94", errors.cie94.mean},
               {"mean_ciede2000", errors.ciede2000.mean}, {"chart", chartJson(chart)}};
  json["patches"] = Json::array();
  for (std::size_t i = 0; i < kPatchCount; ++i)
    json["patches"].push_back({{"patch", i + 1},
                               {"name", patchName(static_cast<int>(i))},
                               {"rgb", data.m_RGB[i]},
                               {"noise", data.m_Noise[i]},
                               {"measured_lab", measured[i]},
                               {"reference_lab", data.m_RefLab[i]},
                               {"cie76", errors.cie76.patch[i]},
                               {"cie94", errors.cie94.patch[i]},
                               {"ciede2000", errors.ciede2000.patch[i]}});
  return json;
}

void run(const EvaluateOptions& options) {
  JobFiles files;
  options.source.nameFiles(files);
  files.textOutput("--json", options.json);
  MacbethChartData data;
  data.LoadMCCCIELAB(lightFromOption(options.light));

  const Picture picture = readPicture(options.source.photo);
  const LocatedChart chart = locateChart(options.source, picture);
  SampleLevels levels = options.source.levels(picture);
  levels.scale = options.scale;
  data.CollectRGBData(picture, chart.regions, levels);

  ColorCorrectionUtils facade;
  facade.CalculateDeltaE(data);
  const ColourErrors errors = colourErrors(data.m_RefLab, facade.m_macbethLab);
  writeJson(options.json, evaluationJson(options, chart, data, facade.m_macbethLab, errors));
  if (options.printsText()) print(options, chart, data.m_RefLab, facade.m_macbethLab, errors);
}

}  // namespace

void addEvaluate(CLI::App& parent) {
  const auto options = std::make_shared<EvaluateOptions>();
  CLI::App& app = addSubCommand(parent, "evaluate",
                                "Colour error of a photographed chart as it is, without correction",
                                "greycard evaluate photo.jpg --light D65", *options);
  options->source.addTo(app, true);
  addLightOption(app, options->light);
  app.add_option("--scale", options->scale, "Factor on the linear samples before they are judged")
      ->check(numbersFrom(1e-6, 1e6))
      ->capture_default_str()
      ->type_name("FACTOR");
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
