// greycard batch: the chart, the fit or the evaluation of many photographs.

#include <algorithm>
#include <iostream>
#include <memory>
#include <thread>
#include <utility>

#include "batch_text.h"
#include "command.h"
#include "crew.h"
#include "greycard/batch/folder.h"
#include "greycard/files.h"
#include "greycard/names.h"
#include "greycard/present/chart.h"
#include "light_option.h"
#include "option_checks.h"
#include "sub_commands.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

struct BatchOptions : CommonOptions {
  std::vector<std::filesystem::path> inputs;
  std::filesystem::path folder, settings;
  std::string job, light, gamma;  ///< empty: as the settings say
  std::size_t jobs = std::max(1U, std::thread::hardware_concurrency());
  bool resume = false;
};

// One field of options in JSON, as JSON.
std::string fieldOf(const std::string& options, const std::string& name) {
  const auto changed = present::changedOptions(options, "{}");
  const auto found = std::ranges::find(changed, name, &std::pair<std::string, std::string>::first);
  if (found == changed.end()) return "{}";
  return "{\"options\": {\"" + name + "\": " + found->second + "}}";
}

batch::Settings settingsOf(const BatchOptions& options) {
  batch::Settings settings;
  const auto job = batch::jobFromName(options.job);
  if (job) settings.job = *job;
  if (!options.settings.empty())
    settings = batch::readSettings(options.settings, std::move(settings));
  const std::string name = batch::kJobNames[static_cast<std::size_t>(settings.job)];
  if (job && settings.job != *job)
    throw UsageError("--job says " + options.job + " and " + quoted(options.settings) + " " + name +
                     "; leave out one of them");
  ChartFitOptions given;
  if (!options.light.empty()) {
    if (settings.job == batch::Job::chart)
      throw UsageError("--light is for --job ccm and --job evaluate");
    given.light = lightFromOption(options.light);
    batch::fromJson(fieldOf(present::toJson(given), "light"), settings);
  }
  if (!options.gamma.empty()) {
    if (settings.job != batch::Job::ccm) throw UsageError("--gamma is for --job ccm");
    given.gamma = options.gamma;
    batch::fromJson(fieldOf(present::toJson(given), "gamma"), settings);
  }
  return settings;
}

void print(const BatchOptions& options, const batch::FileList& list,
           const batch::Overview& overview, std::size_t doneBefore) {
  const batch::Summary& summary = overview.summary;
  std::cout << photographsText(overview, options.wide) << "\n";
  for (const std::string& text : lightTexts(summary)) printParagraph(text, options.wide);
  std::string text = std::to_string(summary.photographs) +
                     (summary.photographs == 1 ? " photograph, " : " photographs, ") +
                     std::to_string(summary.failures.size()) + " failed";
  if (doneBefore > 0) text += ", " + std::to_string(doneBefore) + " from an earlier run";
  if (list.passedOver > 0)
    text += "; " + std::to_string(list.passedOver) +
            (list.passedOver == 1 ? " other file" : " other files") + " passed over";
  printParagraph(text, options.wide);
  printParagraph(
      "Wrote index.html, results.csv, summary.json and photographs/ in " + quoted(options.folder),
      options.wide);
}

void run(BatchOptions& options) {
  options.files.input("--settings", options.settings);
  options.files.output("--json", options.json);
  const batch::Settings settings = settingsOf(options);
  options.tellOptions(batch::toJson(settings), batch::toJson(batch::Settings{}));
  const batch::FileList list = batch::photographsOf(options.inputs);
  batch::checkSettings(settings, list.files);
  const batch::Folder folder(
      options.folder, options.resume ? batch::Folder::Start::resume : batch::Folder::Start::fresh);
  CrewWork work = doAll({list.files, settings, options.folder, options.resume, options.jobs});
  const batch::Overview overview = folder.finish(std::move(work.results), settings);
  options.writeJson(batch::toJson(overview.summary));
  if (options.printsText()) print(options, list, overview, work.doneBefore);
  const auto& failures = overview.summary.failures;
  if (failures.empty()) return;
  endJob(options);
  std::cout.flush();
  for (const batch::Failure& failure : failures)
    std::cerr << "Failed: " << printable(failure.photo.string() + ": " + failure.reason) << "\n";
  throw JobError(std::to_string(failures.size()) + " of " + std::to_string(list.files.size()) +
                 " photographs failed; the reasons stand above and in " +
                 quoted(options.folder / "index.html"));
}

}  // namespace

void addBatch(CLI::App& parent) {
  const auto options = std::make_shared<BatchOptions>();
  CLI::App& app =
      addSubCommand(parent, "batch", "Find, fit or judge the charts of many photographs",
                    "greycard batch photos -o results --light D65\n"
                    "greycard batch photos -o results --settings settings.json --resume",
                    *options);
  app.add_option("photographs", options->inputs,
                 "Folders of photographs, lists of them (.txt or .lst, a name a line; - for "
                 "standard input), and photographs")
      ->required()
      ->transform(inputFile())
      ->type_name("FOLDER|LIST|PHOTO");
  app.add_option("-o,--output", options->folder,
                 "Folder for the results: index.html, results.csv, summary.json, and a file of "
                 "each photograph; new or empty but with --resume")
      ->required()
      ->type_name("FOLDER");
  app.add_option("--job", options->job,
                 "What is done with each photograph, as the sub-command of that name does it: "
                 "chart, ccm (default) or evaluate")
      ->check(oneOf({"chart", "ccm", "evaluate"}))
      ->type_name("NAME");
  app.add_option("--settings", options->settings,
                 "The job and its options as JSON, with others for photographs of certain names")
      ->type_name("FILE");
  addLightOption(app, options->light);
  app.add_option("--gamma", options->gamma, "The camera's tone curve, as for ccm")
      ->type_name("NAME|FILE");
  app.add_option("--jobs", options->jobs,
                 "Photographs at a time (default: one for each core); each takes memory for two")
      ->check(wholeNumbersFrom(1, 256))
      ->type_name("N");
  app.add_flag("--resume", options->resume,
               "Go on where an earlier run left off: what is done and unchanged stays");
  setJob(app, options, run);
}

}  // namespace greycard::cli
