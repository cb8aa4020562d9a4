#include "job_options.h"

#include <set>
#include <span>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "content_hash.h"
#include "glob.h"
#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/present/chart.h"
#include "json_text.h"

namespace greycard::batch {
namespace {

using present::Json;

std::variant<LocateOptions, ChartFitOptions, EvaluationOptions> defaultsOf(Job job) {
  switch (job) {
    case Job::chart:
      return LocateOptions{};
    case Job::ccm:
      return ChartFitOptions{};
    case Job::evaluate:
      return EvaluationOptions{};
  }
  throw std::invalid_argument("job is none that there is");
}

Json objectOf(const std::string& text) {
  Json json = present::parsedJson(text);
  if (!json.is_object()) throw std::invalid_argument("they must be an object");
  return json;
}

// The fields that were given, the overrides that fit merged in.
Json given(const Settings& settings, const std::filesystem::path& photo) {
  Json fields = Json::object();
  fields.merge_patch(objectOf(settings.options));
  const std::string name = photo.filename().string();
  for (const Override& override : settings.overrides)
    if (fits(override.pattern, name)) fields.merge_patch(objectOf(override.options));
  return fields;
}

}  // namespace

const LocateOptions& JobOptions::locate() const {
  if (const auto* fit = std::get_if<ChartFitOptions>(&job)) return fit->locate;
  if (const auto* evaluation = std::get_if<EvaluationOptions>(&job)) return evaluation->locate;
  return std::get<LocateOptions>(job);
}

std::vector<std::filesystem::path> JobOptions::files() const {
  std::vector<std::filesystem::path> named{locate().regions};
  if (const auto* fit = std::get_if<ChartFitOptions>(&job))
    named.insert(named.end(), {fit->referenceLab, fit->referenceSRgb, fit->gamma});
  std::error_code ignored;
  std::erase_if(named, [&](const std::filesystem::path& path) {
    return !std::filesystem::is_regular_file(path, ignored);
  });
  return named;
}

JobOptions jobOptions(const Settings& settings, const std::filesystem::path& photo) {
  JobOptions options;
  options.job = defaultsOf(settings.job);
  Json fields = given(settings, photo);
  std::string dump;
  if (const auto layout = fields.find("dump"); layout != fields.end()) {
    if (!layout->is_string()) throw std::invalid_argument("dump must be a text");
    dump = layout->get<std::string>();
    try {
      options.dump = dumpLayoutFromText(dump);
    } catch (const std::invalid_argument& error) {
      throw std::invalid_argument(std::string("dump: ") + error.what());
    }
    fields.erase("dump");
  }
  std::visit([&](auto& job) { present::fromJson(present::jsonText(fields), job); }, options.job);
  Json whole = present::parsedJson(
      std::visit([](const auto& job) { return present::toJson(job); }, options.job));
  if (options.dump) whole["dump"] = dump;
  options.text = present::jsonText(whole);
  return options;
}

std::string hashOf(const JobOptions& options, Job job, const std::filesystem::path& photo) {
  Hash hash;
  hash.addText(kJobNames[static_cast<std::size_t>(job)]);
  hash.addText(options.text);
  hash.addText(photo.string());
  for (const auto& file : options.files()) {
    hash.addText(file.string());
    hash.addText(contentHash(file));
  }
  return hash.digits();
}

std::string resolved(const Settings& settings, const std::filesystem::path& photo) {
  return jobOptions(settings, photo).text;
}

void checkSettings(const Settings& settings, std::span<const File> files) {
  std::set<std::string> checked;
  for (const File& file : files) {
    const JobOptions options = jobOptions(settings, file.photo);
    if (!checked.insert(options.text).second) continue;
    try {
      std::visit([](const auto& job) { checkOptions(job); }, options.job);
    } catch (const std::exception& error) {
      throw JobError("the options for " + quoted(file.photo) + " can't be: " + error.what());
    }
  }
}

std::string settingsHash(const Settings& settings, const std::filesystem::path& photo) {
  return hashOf(jobOptions(settings, photo), settings.job, photo);
}

}  // namespace greycard::batch
