#include "greycard/batch/settings.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "batch_fields.h"
#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/present/chart.h"
#include "job_options.h"
#include "json_reader.h"
#include "json_writer.h"

namespace greycard::batch {
namespace {

using present::Json;

// Takes an object out of another, to be read on its own.
Json takenObject(Json& from, const char* field, const std::string& name) {
  if (!from.contains(field)) return Json::object();
  Json object = std::move(from[field]);
  from.erase(field);
  if (!object.is_object()) present::refuseField(name, "an object");
  return object;
}

Override overrideFrom(Json& json, const std::string& name) {
  if (!json.is_object()) present::refuseField(name, "an object");
  Override override;
  override.options = present::jsonText(takenObject(json, "options", name + ".options"));
  present::JsonReader reader(json, present::JsonKind::Document, name + ".");
  reader("pattern", override.pattern);
  reader.finish();
  if (override.pattern.empty()) present::refuseField(name + ".pattern", "a pattern of file names");
  return override;
}

std::vector<Override> overridesFrom(Json& json) {
  std::vector<Override> overrides;
  if (!json.contains("overrides")) return overrides;
  Json list = std::move(json["overrides"]);
  json.erase("overrides");
  if (!list.is_array()) present::refuseField("overrides", "a list of objects");
  for (Json& item : list)
    overrides.push_back(overrideFrom(item, "overrides[" + std::to_string(overrides.size()) + "]"));
  return overrides;
}

// Each override over the options alone, so that what is wrong is found whatever the files are.
void check(const Settings& settings) {
  const auto checkOne = [](const Settings& some, const std::string& name) {
    try {
      jobOptions(some, {});
    } catch (const std::invalid_argument& error) {
      throw std::invalid_argument(name + ": " + error.what());
    }
  };
  Settings alone = settings;
  alone.overrides.clear();
  checkOne(alone, "options");
  for (std::size_t i = 0; i < settings.overrides.size(); ++i) {
    alone.overrides = {{"*", settings.overrides[i].options}};
    checkOne(alone, "overrides[" + std::to_string(i) + "].options");
  }
  checkRule(settings.outliers);
}

}  // namespace

void checkRule(const OutlierRule& rule) {
  if (!(rule.factor > 0.0 && std::isfinite(rule.factor)))
    present::refuseField("outliers.factor", "a number above 0");
  if (!(rule.floor >= 0.0 && std::isfinite(rule.floor)))
    present::refuseField("outliers.floor", "a number of 0 or more");
}

std::optional<Job> jobFromName(std::string_view name) {
  const auto found = std::ranges::find(kJobNames, name);
  if (found == kJobNames.end()) return std::nullopt;
  return static_cast<Job>(found - kJobNames.begin());
}

std::string toJson(const Settings& settings) {
  present::JsonWriter writer;
  writer("job", settings.job);
  Json json = writer.json();
  json["options"] = present::parsedJson(settings.options);
  json["overrides"] = Json::array();
  for (const Override& override : settings.overrides)
    json["overrides"].push_back(
        {{"pattern", override.pattern}, {"options", present::parsedJson(override.options)}});
  present::JsonWriter rule;
  describe(rule, settings.outliers);
  json["outliers"] = rule.json();
  return present::jsonText(json);
}

void fromJson(std::string_view text, Settings& settings) {
  Json json = present::parsedJson(text);
  if (!json.is_object()) throw std::invalid_argument("it must hold one object");
  Settings filled = settings;
  Json options = present::parsedJson(filled.options);
  options.merge_patch(takenObject(json, "options", "options"));
  filled.options = present::jsonText(options);
  for (Override& override : overridesFrom(json)) filled.overrides.push_back(std::move(override));
  present::JsonReader reader(json, present::JsonKind::Options);
  reader("job", filled.job);
  reader("outliers", filled.outliers);
  reader.derived("options", 0);
  reader.derived("overrides", 0);
  reader.finish();
  check(filled);
  settings = std::move(filled);
}

Settings readSettings(const std::filesystem::path& file, Settings settings) {
  const std::string text = readWholeFile(file);
  try {
    fromJson(text, settings);
  } catch (const std::invalid_argument& error) {
    throw JobError(quoted(file) + " can't be used as settings: " + error.what());
  }
  return settings;
}

}  // namespace greycard::batch
