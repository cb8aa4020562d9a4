#include "json_text.h"

#include <algorithm>
#include <stdexcept>

namespace greycard::present {
namespace {

bool holdsOnlyNumbers(const Json& json) {
  return json.is_array() && std::ranges::all_of(json, [](const Json& item) {
           return item.is_number() || item.is_null();
         });
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

// "line 12, column 5" of a byte in the text.
std::string placeOf(std::string_view text, std::size_t byte) {
  const auto before = text.substr(0, byte == 0 ? 0 : byte - 1);
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const auto start = before.rfind('\n');
  const auto column = before.size() - (start == std::string_view::npos ? 0 : start + 1) + 1;
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

// Whatever walks through a document calls itself for each level of it.
bool nestsDeeperThan(std::string_view text, int most) {
  int depth = 0;
  bool inText = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (inText) {
      if (c == '\\')
        ++i;
      else
        inText = c != '"';
    } else if (c == '"') {
      inText = true;
    } else if (c == '{' || c == '[') {
      if (++depth > most) return true;
    } else if (c == '}' || c == ']') {
      --depth;
    }
  }
  return false;
}

}  // namespace

std::string jsonText(const Json& json) {
  std::string text;
  append(text, json, 0);
  return text + '\n';
}

Json parsedJson(std::string_view text) {
  if (text.empty()) throw std::invalid_argument("the file is empty");
  constexpr int kDeepest = 64;
  if (nestsDeeperThan(text, kDeepest))
    throw std::invalid_argument("it holds lists or objects in more than " +
                                std::to_string(kDeepest) + " levels");
  try {
    return Json::parse(text);
  } catch (const Json::parse_error& error) {
    throw std::invalid_argument("it is not JSON from " + placeOf(text, error.byte) + " on");
  } catch (const Json::exception&) {
    throw std::invalid_argument("it holds a number that is too large");
  }
}

}  // namespace greycard::present
