// greycard ae: the parameters of an auto-exposure luma-target rule that meet wanted targets.

#include <iostream>
#include <memory>

#include "ae_commands.h"
#include "ae_text.h"
#include "command.h"
#include "greycard/files.h"
#include "greycard/present/fitting.h"
#include "job_files.h"
#include "option_checks.h"
#include "progress_bar.h"
#include "sub_commands.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

struct AeOptions : CommonOptions {
  std::filesystem::path fit, plot, report;
  std::vector<std::filesystem::path> pictures;
  std::vector<double> targets;
  std::optional<int> whiteLevel;
  bool manual = false;
  SearchOptions search = exposureSearch();
};

// The pictures of a file come before those of the command line.
ExposureJob jobOf(AeOptions& options) {
  if (options.fit.empty() && options.pictures.empty())
    throw UsageError("name a FIT.json, or pictures with --image and --target");
  if (options.pictures.size() != options.targets.size())
    throw UsageError("there must be one --target for each --image");
  if (options.search.maxSeconds == 0.0 && options.search.maxEvaluations == 0)
    throw UsageError("with --time 0, limit the --evaluations");
  options.files.input("FIT.json", options.fit);
  for (const auto& picture : options.pictures) options.files.input("--image", picture);
  options.files.plotOutput("--plot", options.plot);
  options.files.pageOutput("--report", options.report);
  options.files.output("--json", options.json);
  ExposureJob job = options.fit.empty() ? ExposureJob() : present::readExposureJob(options.fit);
  for (std::size_t i = 0; i < job.images.size(); ++i)
    if (const auto& picture = job.images[i].picture)
      options.files.input("images[" + std::to_string(i) + "].picture", *picture);
  for (std::size_t i = 0; i < options.pictures.size(); ++i) {
    ExposureImage& image = job.images.emplace_back();
    image.picture = options.pictures[i];
    image.newTarget = options.targets[i];
    image.whiteLevel = options.whiteLevel;
  }
  if (job.images.empty())
    throw JobError(quoted(options.fit) + " has no images; add some, or name pictures with --image");
  return job;
}

template <typename Result>
void write(AeOptions& options, const ExposureJob& job, const Result& result) {
  if (!options.plot.empty()) options.files.writePlot(options.plot, present::exposurePlot(result));
  if (!options.report.empty())
    options.files.write(options.report, present::exposureReport(job, result, options.provenance));
  options.writeJson(present::toJson(result));
  if (options.printsText()) std::cout << aeText(job, result);
}

void run(AeOptions& options) {
  const ExposureJob job = jobOf(options);
  options.tellOptions(present::toJson(options.search), present::toJson(exposureSearch()));
  if (options.manual) return write(options, job, evaluateExposure(job));
  write(options, job, [&] {
    ProgressBar progress("fitting");
    SearchOptions search = options.search;
    search.progress = progress.callback();
    return fitExposure(job, search);
  }());
}

}  // namespace

void addAe(CLI::App& parent) {
  const auto options = std::make_shared<AeOptions>();
  CLI::App& app = addSubCommand(
      parent, "ae",
      "Fit the parameters of an auto-exposure luma-target rule to the targets wanted for pictures",
      "greycard ae fit.json --plot targets.svg\n"
      "greycard ae --image dark.jpg --target 60 --image bright.jpg --target 45 --time 5\n"
      "greycard ae luma-match 200,100,50 100,100,100",
      *options);
  app.add_option(
         "fit", options->fit,
         "Bounds, start, flags and images as JSON (docs/ae_json.md); not needed with --image")
      ->transform(inputFile())
      ->type_name("FIT.json");
  CLI::Option* const image =
      app.add_option("--image", options->pictures, "A picture more, of which histograms are made")
          ->allow_extra_args(false)
          ->type_name("PICTURE");
  app.add_option("--target", options->targets, "The luma target wanted for it, in 8-bit codes")
      ->allow_extra_args(false)
      ->type_name("T")
      ->check(numbersFrom(0.0, 255.0));
  app.add_option("--white", options->whiteLevel,
                 "Sample of full scale in the pictures of --image (default 255 or 65535)")
      ->needs(image)
      ->type_name("LEVEL")
      ->check(wholeNumbersFrom(1, 65535));
  app.add_flag("--manual", options->manual, "Evaluate initial_parameter without a search");
  app.add_option("--seed", options->search.seed, "Seed of the random numbers")
      ->capture_default_str()
      ->check(wholeNumbersFrom(0, UINT32_MAX));
  app.add_option("--time", options->search.maxSeconds,
                 "Longest time of the search, which its result then depends on; 0 = no limit")
      ->capture_default_str()
      ->type_name("SECONDS")
      ->check(numbersFrom(0.0, 1e6));
  app.add_option("--evaluations", options->search.maxEvaluations,
                 "Most evaluations of the rule; 0 = no limit")
      ->capture_default_str()
      ->type_name("COUNT")
      ->check(wholeNumbersFrom(0, INT32_MAX));
  app.add_option("--plot", options->plot,
                 "Plot to write, as SVG or PNG: the targets reached against those wanted")
      ->type_name("FILE");
  app.add_option("--report", options->report, "Report as one HTML file")->type_name("FILE");
  addAeLumaMatch(app);
  for (CLI::Option* option : app.get_options())  // which luma-match would pass over in silence
    if (option != app.get_help_ptr()) app.get_subcommand("luma-match")->excludes(option);
  setJob(app, options, run);
}

}  // namespace greycard::cli
