#include "glob.h"

#include <cstddef>

namespace greycard::batch {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

// Where the set that begins with the bracket at the pattern's front ends: its closing bracket. One
// that stands first is a member.
std::size_t endOfSet(std::string_view set) {
  return set.find(']', set.substr(1, 1) == "!" ? 3 : 2);
}

bool isMember(std::string_view members, unsigned char c) {
  for (std::size_t i = 0; i < members.size(); ++i) {
    const auto low = static_cast<unsigned char>(members[i]);
    const bool isRange = i + 2 < members.size() && members[i + 1] == '-';
    const auto high = isRange ? static_cast<unsigned char>(members[i + 2]) : low;
    if (low <= c && c <= high) return true;
    if (isRange) i += 2;
  }
  return false;
}

// How much of the pattern's front, which is not a star, the character takes; 0 when it doesn't fit.
std::size_t taken(std::string_view pattern, char c) {
  if (pattern.empty()) return 0;
  if (pattern.front() == '?') return 1;
  const std::size_t end = pattern.front() == '[' ? endOfSet(pattern) : kNone;
  if (end == kNone) return pattern.front() == c ? 1 : 0;
  const bool others = pattern[1] == '!';
  const auto members = pattern.substr(others ? 2 : 1, end - (others ? 2 : 1));
  return isMember(members, static_cast<unsigned char>(c)) != others ? end + 1 : 0;
}

}  // namespace

// Only the last star is ever tried again, so the work is at most the product of both lengths.
bool fits(std::string_view pattern, std::string_view text) {
  std::size_t p = 0, t = 0, afterStar = kNone, starAt = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      afterStar = ++p;
      starAt = t;
    } else if (const std::size_t step = taken(pattern.substr(p), text[t]); step != 0) {
      p += step;
      ++t;
    } else if (afterStar != kNone) {
      p = afterStar;
      t = ++starAt;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == kNone;
}

}  // namespace greycard::batch
