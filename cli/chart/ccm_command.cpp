// greycard ccm: from a photographed chart to white-balance gains and a colour-correction matrix.

#include <iostream>
#include <memory>

#include "ccm_options.h"
#include "ccm_text.h"
#include "greycard/files.h"
#include "greycard/present/chart.h"
#include "progress_bar.h"
#include "sub_commands.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

void run(const CcmOptions& options) {
  JobFiles files;
  options.source.nameFiles(files);
  files.input("--reference-lab", options.fit.referenceLab);
  files.input("--reference-srgb", options.fit.referenceSRgb);
  files.output("--report", options.report);
  files.pictureOutput("--corrected", options.corrected);
  files.textOutput("--json", options.json);

  const ChartFitOptions fitOptions = options.fitOptions();
  const Picture picture = options.source.read();
  const ChartFit fit = locating([&] {
    ProgressBar progress("fitting");
    return *fitChart(picture, fitOptions, options.source.photo, progress.callback());
  });

  if (!options.corrected.empty())
    writePicture(options.corrected, correctedPhotograph(picture, fit, fitOptions.locate.samples));
  if (!options.report.empty()) writeWholeFile(options.report, present::fitReport(fit, picture));
  if (!options.json.empty()) writeText(options.json, present::toJson(fit));
  if (!options.printsText()) return;
  std::cout << ccmText(fit);
  printWarnings(fit.warnings);
}

}  // namespace

void addCcm(CLI::App& parent) {
  const auto options = std::make_shared<CcmOptions>();
  CLI::App& app = addSubCommand(
      parent, "ccm",
      "Fit white-balance gains and a colour-correction matrix to a photographed chart",
      "greycard ccm photo.jpg --light D65 --report report.html --corrected corrected.png",
      *options);
  options->addTo(app);
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
