#include "greycard/present/provenance.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <stdexcept>

#include "greycard/number_text.h"
#include "greycard/version.h"
#include "json_text.h"

namespace greycard::present {
namespace {

std::chrono::sys_seconds timeOfRun() {
  const char* epoch = std::getenv("SOURCE_DATE_EPOCH");
  const auto seconds = numberOf<std::int64_t>(epoch != nullptr ? epoch : "");
  constexpr std::int64_t kYear10000 = 253402300800;
  if (seconds && *seconds >= 0 && *seconds < kYear10000)
    return std::chrono::sys_seconds(std::chrono::seconds(*seconds));
  return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

std::string isoText(std::chrono::sys_seconds time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return text;
}

Json objectOf(std::string_view text) {
  Json json = parsedJson(text);
  if (!json.is_object()) throw std::invalid_argument("it must hold one object");
  return json;
}

std::string oneLine(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

Provenance provenanceNow(std::string commandLine) {
  return {libraryVersion(), isoText(timeOfRun()), std::move(commandLine), {}};
}

std::vector<std::pair<std::string, std::string>> changedOptions(std::string_view options,
                                                                std::string_view defaults) {
  const Json usual = objectOf(defaults), chosen = objectOf(options);
  std::vector<std::pair<std::string, std::string>> changed;
  for (const auto& [name, value] : chosen.items())
    if (!usual.contains(name) || usual[name] != value) changed.emplace_back(name, oneLine(value));
  return changed;
}

std::string plainValue(const std::string& json) {
  const Json value = parsedJson(json);
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_array()) return json;
  std::string text;
  for (const Json& item : value) text += (text.empty() ? "" : ", ") + plainValue(oneLine(item));
  return text;
}

std::string stamped(std::string_view result, const Provenance& provenance) {
  if (!result.starts_with("{\n")) throw std::invalid_argument("it is not a result in JSON");
  Json stamp = Json::object();
  stamp["greycard"] = provenance.version;
  stamp["created"] = provenance.created;
  if (!provenance.commandLine.empty()) stamp["command"] = provenance.commandLine;
  // A result that holds all its options tells more.
  if (result.find("\n  \"options\": ") == std::string_view::npos) {
    stamp["options"] = Json::object();
    for (const auto& [name, value] : provenance.options) stamp["options"][name] = parsedJson(value);
  }
  std::string text = jsonText(stamp);
  text.replace(text.rfind("\n}"), std::string::npos, ",");
  return text.append(result.substr(1));
}

}  // namespace greycard::present
