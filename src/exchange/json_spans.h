#pragma once

// Where values stand in a JSON text, so that one can be replaced and all else left to the byte.

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace greycard::exchange {

struct Span {
  std::size_t begin = 0, end = 0;
  std::string_view of(std::string_view text) const { return text.substr(begin, end - begin); }
};

/// The values of an object by their keys, and those of an array. The text must be valid JSON, and
/// `value` the span of an object (or array) in it. Of a key that stands twice the last value
/// counts. Keys are compared as they are written; none of ours needs an escape.
std::map<std::string, Span, std::less<>> objectMembers(std::string_view text, Span value);
std::vector<Span> arrayElements(std::string_view text, Span value);

/// The span of the document's one value.
Span wholeValue(std::string_view text);

}  // namespace greycard::exchange
