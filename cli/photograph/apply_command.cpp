// greycard apply: what a fit found, over other photographs of the same camera.

#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

#include "command.h"
#include "greycard/files.h"
#include "greycard/picture.h"
#include "greycard/present/lut2d.h"
#include "greycard/present/photograph.h"
#include "option_checks.h"
#include "progress_bar.h"
#include "sample_options.h"
#include "sub_commands.h"

namespace greycard::cli {
namespace {

struct ApplyFitCommand : CommonOptions {
  std::vector<std::filesystem::path> photos;
  std::filesystem::path fit, lut2d, output;
  std::string curve;
  SampleOptions samples;

  bool several() const { return photos.size() > 1; }
};

// Where each result goes. A folder is made for several photographs; one may go into a folder too.
std::vector<std::filesystem::path> outputsOf(const ApplyFitCommand& options) {
  std::error_code error;
  if (!options.several() && !std::filesystem::is_directory(options.output, error))
    return {options.output};
  if (std::filesystem::exists(options.output, error) &&
      !std::filesystem::is_directory(options.output, error))
    throw UsageError("--output: " + quoted(options.output) +
                     " is a file; several photographs go into a folder");
  return resultPaths(options.photos, options.output);
}

void makeOutputFolder(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) throw JobError("can't make the folder " + quoted(folder) + ": " + error.message());
}

std::vector<AppliedFit> applied(ApplyFitCommand& options,
                                const std::vector<std::filesystem::path>& outputs,
                                const FittedPipeline& pipeline, const ApplyFitOptions& with,
                                const PhotographOptions& reading) {
  const auto note = [](const std::filesystem::path& photo) { return " of " + quoted(photo); };
  if (!options.several()) {
    const auto& photo = options.photos.front();
    const Photograph photograph = options.samples.read(photo);
    options.files.write(outputs.front(), applyFit(photograph, pipeline, with), note(photo));
    return {{photo, outputs.front(), {}, photograph.warnings}};
  }
  ProgressBar progress("correcting");
  auto results =
      *applyFitToFiles(options.photos, outputs, pipeline, with, reading, progress.callback());
  for (const AppliedFit& one : results)
    if (one.failure.empty()) options.files.remember(one.output, note(one.photo));
  return results;
}

void report(ApplyFitCommand& options, const std::vector<AppliedFit>& results) {
  options.writeJson(present::toJson(results));
  std::string failures;
  int failed = 0;
  for (const AppliedFit& one : results) {
    if (!one.failure.empty()) {
      failures += (failures.empty() ? "" : "; ") + one.failure;
      ++failed;
    } else if (options.printsText()) {
      options.printWarnings(one.warnings);
    }
  }
  if (failed > 0)
    throw JobError(std::to_string(failed) + " of " + std::to_string(results.size()) +
                   " photographs failed: " + failures);
}

void run(ApplyFitCommand& options) {
  const auto outputs = outputsOf(options);
  for (const auto& photo : options.photos) options.files.input("PHOTO", photo);
  options.files.input("--fit", options.fit);
  options.files.input("--lut2d", options.lut2d);
  const PhotographOptions reading = options.samples.reading();
  const FittedPipeline pipeline = present::readFittedPipeline(options.fit);
  ApplyFitOptions with;
  if (!options.curve.empty()) with.gamma = cameraGamma(options.curve);
  if (!options.lut2d.empty()) with.lut2d = present::readLut2d(options.lut2d);

  if (options.several()) makeOutputFolder(options.output);
  for (const auto& output : outputs) options.files.pictureOutput("--output", output);
  options.files.output("--json", options.json);
  report(options, applied(options, outputs, pipeline, with, reading));
}

}  // namespace

void addApply(CLI::App& parent) {
  const auto options = std::make_shared<ApplyFitCommand>();
  CLI::App& app = addSubCommand(
      parent, "apply",
      "Correct photographs of a camera with a fit: its gains, matrix and tone curve",
      "greycard ccm chart.dng --light D65 --json fit.json\n"
      "greycard apply portrait.dng --fit fit.json -o portrait.png\n"
      "greycard apply *.dng --fit fit.json --curve VOutdoor --lut2d warmer.json -o corrected",
      *options);
  app.add_option("photos", options->photos, "Photographs, raw or not")
      ->required()
      ->transform(inputFile())
      ->type_name("PHOTO...");
  app.add_option("--fit", options->fit, "What greycard ccm --json wrote")
      ->required()
      ->type_name("FILE");
  app.add_option("--curve", options->curve,
                 "Another tone curve than the fit's: a name of the catalogue (greycard gamma list) "
                 "or a file of 256 numbers")
      ->type_name("NAME|FILE");
  app.add_option("--lut2d", options->lut2d, "Hue/saturation table to apply to the result")
      ->type_name("FILE");
  app.add_option("-o,--output", options->output,
                 "Picture to write; of several photographs the folder for theirs, each NAME.png")
      ->required()
      ->type_name("OUT");
  options->samples.addTo(app);
  setJob(app, options, run);
}

}  // namespace greycard::cli
