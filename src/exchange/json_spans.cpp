#include "json_spans.h"

namespace greycard::exchange {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::size_t skipBlanks(std::string_view text, std::size_t at) {
  return std::min(text.find_first_not_of(kBlanks, at), text.size());
}

// From the opening quote to behind the closing one.
std::size_t endOfString(std::string_view text, std::size_t at) {
  for (++at; at < text.size() && text[at] != '"'; ++at)
    if (text[at] == '\\') ++at;
  return std::min(at + 1, text.size());
}

std::size_t endOfValue(std::string_view text, std::size_t at) {
  if (text[at] == '"') return endOfString(text, at);
  if (text[at] != '{' && text[at] != '[')
    return std::min(text.find_first_of(" \t\r\n,]}", at), text.size());
  std::size_t depth = 0;
  while (at < text.size()) {
    if (text[at] == '"') {
      at = endOfString(text, at);
      continue;
    }
    if (text[at] == '{' || text[at] == '[') ++depth;
    if ((text[at] == '}' || text[at] == ']') && --depth == 0) return at + 1;
    ++at;
  }
  return at;
}

// Calls item(start) at each item between the brackets; it returns the item's end.
void eachItem(std::string_view text, Span value, const auto& item) {
  std::size_t at = skipBlanks(text, value.begin + 1);
  while (at + 1 < value.end) {
    at = skipBlanks(text, item(at));
    if (at < value.end && text[at] == ',') at = skipBlanks(text, at + 1);
  }
}

}  // namespace

std::map<std::string, Span, std::less<>> objectMembers(std::string_view text, Span value) {
  std::map<std::string, Span, std::less<>> members;
  eachItem(text, value, [&](std::size_t key) {
    const std::size_t keyEnd = endOfString(text, key);
    const std::size_t begin = skipBlanks(text, text.find(':', keyEnd) + 1);
    const Span member{begin, endOfValue(text, begin)};
    members[std::string(text.substr(key + 1, keyEnd - key - 2))] = member;
    return member.end;
  });
  return members;
}

std::vector<Span> arrayElements(std::string_view text, Span value) {
  std::vector<Span> elements;
  eachItem(text, value, [&](std::size_t begin) {
    elements.push_back({begin, endOfValue(text, begin)});
    return elements.back().end;
  });
  return elements;
}

Span wholeValue(std::string_view text) {
  const std::size_t begin = skipBlanks(text, 0);
  return {begin, endOfValue(text, begin)};
}

}  // namespace greycard::exchange
