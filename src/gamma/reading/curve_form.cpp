#include "curve_form.h"

#include <algorithm>
#include <array>

#include "text.h"

namespace greycard::reading {
namespace {

constexpr std::string_view kFormBlanks = " \t\r\v\f";

std::string_view trimmedLine(std::string_view line) {
  const auto first = line.find_first_not_of(kFormBlanks);
  if (first == std::string_view::npos) return {};
  return line.substr(first, line.find_last_not_of(kFormBlanks) - first + 1);
}

bool startsWithAny(std::string_view line, auto words) {
  return std::ranges::any_of(words, [&](std::string_view word) { return line.starts_with(word); });
}

bool isNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// "name:" or "name: value" at the head of a line.
bool hasKey(std::string_view line) {
  if (line.starts_with('"')) line.remove_prefix(1);
  const auto end = std::ranges::find_if_not(line, isNameCharacter);
  if (end == line.begin() || end == line.end() || (line[0] >= '0' && line[0] <= '9')) return false;
  auto rest = std::string_view(end, line.end());
  if (rest.starts_with('"')) rest.remove_prefix(1);
  return rest == ":" || rest.starts_with(": ");
}

// "type name[] = {", "type name{{" or a comment, before any key.
bool looksLikeCode(std::string_view text, std::string_view line) {
  const auto brace = text.find('{');
  if (line.starts_with("/*")) return true;
  if (brace == std::string_view::npos) return false;
  return text.find('=') < brace || (!line.empty() && isNameCharacter(line[0]) && !hasKey(line));
}

// {"a": 1} is JSON, {a: 1} is YAML, and { 1, 2 } comes from a C file.
Form formOfBraces(std::string_view text) {
  const std::string_view inside = text.substr(text.find('{') + 1);
  const auto next = inside.find_first_not_of(" \t\r\n");
  const char c = next == std::string_view::npos ? '}' : inside[next];
  if (c == '"' || c == '}') return Form::Json;
  return isNameCharacter(c) && !(c >= '0' && c <= '9') ? Form::Yaml : Form::CArrays;
}

// The first line that is more than a comment of any of the forms.
std::string_view firstLine(std::string_view text) {
  for (std::string_view line : splitLines(text)) {
    line = trimmedLine(line);
    if (line.empty() || line.starts_with('#') || line.starts_with("//")) continue;
    return line;
  }
  return {};
}

}  // namespace

Form formOf(std::string_view text) {
  constexpr std::array kCube{"TITLE", "LUT_1D_", "LUT_3D_", "DOMAIN_M", "LUT_IN_VIDEO_RANGE"};
  constexpr std::array kKeywords{"GammaTable", "GammaControlPoints"};
  for (const std::string_view word : splitText(text, " ,\n\t\r"))
    if (word.ends_with(':') && startsWithAny(word, kKeywords)) return Form::CurveFile;
  const std::string_view line = firstLine(text);
  if (startsWithAny(line, kCube)) return Form::Cube;
  if (looksLikeCode(text, line)) return Form::CArrays;
  if (line.starts_with('[')) return Form::Json;
  if (line.starts_with('{')) return formOfBraces(text);
  if (line.starts_with("%YAML") || line == "---" || line.starts_with("- ") || hasKey(line))
    return Form::Yaml;
  return Form::Numbers;
}

}  // namespace greycard::reading
