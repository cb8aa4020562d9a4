#include "json_input.h"

#include <algorithm>
#include <stdexcept>

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
  if (text.empty()) throw std::invalid_argument("the file is empty");
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
                         const std::vector<std::string>& known) {
  for (const auto& item : object.items())
    if (std::find(known.begin(), known.end(), item.key()) == known.end())
      throw std::invalid_argument(unknownName("field", prefix + item.key(), known));
}

}  // namespace greycard::cli
