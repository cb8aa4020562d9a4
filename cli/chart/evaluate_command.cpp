// greycard evaluate: the colour error of a camera as it is, before any correction is fitted.

#include <iostream>
#include <memory>

#include "chart_source.h"
#include "command.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/present/chart.h"
#include "light_option.h"
#include "option_checks.h"
#include "patch_table.h"
#include "sub_commands.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

struct EvaluateOptions : CommonOptions {
  ChartSource source;
  std::string light = "D65";
  double scale = 1.0;
  std::filesystem::path report;
};

void print(const EvaluateOptions& options, const ChartEvaluation& evaluation) {
  const ColourErrors& errors = evaluation.errors;
  std::cout << "Chart in " << quoted(evaluation.photo)
            << " as linear sRGB, against the reference under " << illumTitle(evaluation.light)
            << ",\n"
            << samplesText(*evaluation.levels) << "\n\n"
            << patchTableText(
                   {{"measured", evaluation.measuredLab}, {"reference", evaluation.referenceLab}},
                   {{"", errors}}, options.wide)
            << kSplitNote << "\nMean dE76 " << fixed(errors.cie76.mean, 2) << ", dE94 "
            << fixed(errors.cie94.mean, 2) << ", dE00 " << fixed(errors.ciede2000.mean, 2) << " ("
            << fixed(errors.levelled2000.mean, 2)
            << " without the common difference of L*);\nworst dE76 " << fixed(errors.cie76.worst, 2)
            << " at patch " << errors.cie76.worstPatch + 1 << "\n";
  options.printWarnings(evaluation.warnings);
}

void run(EvaluateOptions& options) {
  options.source.nameFiles(options.files);
  options.files.pageOutput("--report", options.report);
  options.files.output("--json", options.json);
  const EvaluationOptions evaluation{options.source.options(), lightFromOption(options.light),
                                     options.scale};
  options.tellOptions(present::toJson(evaluation), present::toJson(EvaluationOptions{}));
  const Photograph photograph = options.source.read();
  const ChartEvaluation result = locating([&] { return evaluateChart(photograph, evaluation); });
  if (!options.report.empty())
    options.files.write(options.report,
                        present::evaluationReport(result, photograph.picture, options.provenance));
  options.writeJson(present::toJson(result));
  if (options.printsText()) print(options, result);
}

}  // namespace

void addEvaluate(CLI::App& parent) {
  const auto options = std::make_shared<EvaluateOptions>();
  CLI::App& app = addSubCommand(
      parent, "evaluate", "Colour error of a photographed chart as it is, without correction",
      "greycard evaluate photo.jpg --light D65 --report report.html", *options);
  options->source.addTo(app);
  addLightOption(app, options->light);
  app.add_option("--scale", options->scale, "Factor on the linear samples before they are judged")
      ->check(numbersFrom(1e-6, 1e6))
      ->capture_default_str()
      ->type_name("FACTOR");
  app.add_option("--report", options->report, "Report as one HTML file")->type_name("FILE");
  setJob(app, options, run);
}

}  // namespace greycard::cli
