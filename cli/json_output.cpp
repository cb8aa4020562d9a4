#include "json_output.h"

#include <iostream>

#include "greycard/files.h"

namespace greycard::cli {
namespace {

bool holdsOnlyNumbers(const Json& json) {
  if (!json.is_array()) return false;
  for (const auto& item : json)
    if (!item.is_number() && !item.is_null()) return false;
  return true;
}

// A name that is not UTF-8 (a file name may be anything) is written with replacement characters.
std::string compact(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// Indented, but with a row of numbers on one line, so that a matrix looks like one.
void append(std::string& text, const Json& json, std::size_t indent) {
  if (!json.is_structured() || json.empty() || holdsOnlyNumbers(json)) {
    text += compact(json);
    return;
  }
  const std::string inner(indent + 2, ' ');
  text += json.is_object() ? "{" : "[";
  const char* separator = "\n";
  for (const auto& [key, value] : json.items()) {
    text += separator + inner;
    if (json.is_object()) text += compact(Json(key)) + ": ";
    append(text, value, indent + 2);
    separator = ",\n";
  }
  text += "\n" + std::string(indent, ' ') + (json.is_object() ? "}" : "]");
}

}  // namespace

void writeJson(const std::string& target, const Json& json) {
  if (target.empty()) return;
  std::string text;
  append(text, json, 0);
  text += '\n';
  if (target == "-")
    std::cout << text;
  else
    writeWholeFile(target, text);
}

}  // namespace greycard::cli
