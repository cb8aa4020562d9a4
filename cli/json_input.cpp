#include "json_input.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "names.h"

namespace greycard::cli {
namespace {

// "line 12, column 5" of a byte in the text.
std::string placeOf(std::string_view text, std::size_t byte) {
  const auto before = text.substr(0, byte == 0 ? 0 : byte - 1);
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const auto start = before.rfind('\n');
  const auto column = before.size() - (start == std::string_view::npos ? 0 : start + 1) + 1;
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

}  // namespace

Json parsedJson(std::string_view text) {
  try {
    return Json::parse(text);
  } catch (const Json::parse_error& error) {
    throw std::invalid_argument("it is not JSON from " + placeOf(text, error.byte) + " on");
  } catch (const Json::exception&) {
    throw std::invalid_argument("it holds a number that is too large");
  }
}

void refuseField(const std::string& name, const std::string& must) {
  throw std::invalid_argument(name + " must be " + must);
}

double numberFrom(const std::string& name, const Json& json) {
  if (!json.is_number()) refuseField(name, "a number");
  return json.get<double>();
}

void readNumbers(const std::string& name, const Json& json, std::span<double> values) {
  if (!json.is_array() || json.size() != values.size())
    refuseField(name, "a list of " + std::to_string(values.size()) + " numbers");
  for (std::size_t i = 0; i < values.size(); ++i)
    values[i] = numberFrom(name + "[" + std::to_string(i) + "]", json[i]);
}

void refuseUnknownFields(const std::string& prefix, const Json& object,
                         std::initializer_list<const char*> known) {
  for (const auto& item : object.items()) {
    const std::string_view name = item.key();
    if (std::find(known.begin(), known.end(), name) != known.end()) continue;
    const std::vector<std::string> names(known.begin(), known.end());
    throw std::invalid_argument(unknownName("field", prefix + item.key(), names));
  }
}

}  // namespace greycard::cli
