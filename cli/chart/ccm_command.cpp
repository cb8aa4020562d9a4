// greycard ccm: from a photographed chart to white-balance gains and a colour-correction matrix.

#include <iostream>
#include <memory>

#include "best_text.h"
#include "ccm_options.h"
#include "ccm_text.h"
#include "greycard/files.h"
#include "greycard/present/best_fit.h"
#include "greycard/present/chart.h"
#include "progress_bar.h"
#include "sub_commands.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

// Writes what is asked for; the picture is corrected only when it is.
template <typename Fit, typename Correct>
void write(CcmOptions& options, const Picture& picture, const Fit& fit, Correct correct) {
  if (!options.corrected.empty()) options.files.write(options.corrected, correct());
  if (!options.report.empty())
    options.files.write(options.report, present::fitReport(fit, picture, options.provenance));
  options.writeJson(present::toJson(fit));
}

void runStated(CcmOptions& options) {
  const ChartFitOptions fitOptions = options.fitOptions();
  options.tellOptions(present::toJson(fitOptions), present::toJson(ChartFitOptions{}));
  const Photograph photograph = options.source.read();
  const Picture& picture = photograph.picture;
  const ChartFit fit = locating([&] {
    ProgressBar progress("fitting");
    return *fitChart(photograph, fitOptions, progress.callback());
  });
  options.writeExports(fit);
  write(options, picture, fit,
        [&] { return correctedPhotograph(picture, fit, photograph.samples); });
  if (!options.printsText()) return;
  std::cout << ccmText(fit, options.wide);
  options.printWarnings(fit.warnings);
}

std::vector<ChartPhotograph> photographs(const CcmOptions& options) {
  std::optional<Photograph> flatField;
  if (const auto file = options.best.flatField(); !file.empty())
    flatField = options.source.samples.read(file);
  std::vector<ChartPhotograph> all;
  all.push_back(chartPhotograph(options.source.read(), options.best.weightOf(0), flatField));
  for (const auto& file : options.best.also)
    all.push_back(chartPhotograph(options.source.samples.read(file),
                                  options.best.weightOf(all.size()), flatField));
  return all;
}

void runBest(CcmOptions& options) {
  const BestFitOptions fitOptions = options.bestFitOptions();
  options.tellOptions(present::toJson(fitOptions), present::toJson(BestFitOptions{}));
  const std::vector<ChartPhotograph> all = photographs(options);
  const Picture& picture = all.front().picture;
  const BestChartFit fit = locating([&] {
    ProgressBar progress("fitting");
    return *fitChartBest(all, fitOptions, progress.callback());
  });
  options.writeExports(fit.shown(0));
  write(options, picture, fit,
        [&] { return correctedPhotograph(picture, fit, 0, *all.front().samples); });
  if (!options.printsText()) return;
  std::cout << bestText(fit, options.wide);
  options.printWarnings(fit.warnings);
}

void run(CcmOptions& options) {
  options.best.check();
  options.source.nameFiles(options.files);
  options.files.input("--reference-lab", options.fit.referenceLab);
  options.files.input("--reference-srgb", options.fit.referenceSRgb);
  options.files.pageOutput("--report", options.report);
  options.files.pictureOutput("--corrected", options.corrected);
  options.files.output("--json", options.json);
  options.best.nameFiles(options.files);
  options.nameExports();
  if (options.best.asked())
    runBest(options);
  else
    runStated(options);
}

}  // namespace

void addCcm(CLI::App& parent) {
  const auto options = std::make_shared<CcmOptions>();
  CLI::App& app = addSubCommand(
      parent, "ccm",
      "Fit white-balance gains and a colour-correction matrix to a photographed chart",
      "greycard ccm photo.jpg --light D65 --report report.html --corrected corrected.png\n"
      "greycard ccm photo.jpg --fit best --estimate-curve",
      *options);
  options->addTo(app);
  setJob(app, options, run);
}

}  // namespace greycard::cli
