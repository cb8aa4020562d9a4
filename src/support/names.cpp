#include "greycard/names.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "text.h"

namespace greycard {
namespace {

// Levenshtein's distance, in halves: a change of case alone counts half of another change.
std::size_t distance(std::string_view a, std::string_view b) {
  const auto costOf = [](char left, char right) -> std::size_t {
    if (left == right) return 0;
    return lowerCase(left) == lowerCase(right) ? 1 : 2;
  };
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j < row.size(); ++j) row[j] = 2 * j;
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], 2 * (i + 1));
    for (std::size_t j = 0; j < b.size(); ++j) {
      const auto best = std::min({diagonal + costOf(a[i], b[j]), row[j] + 2, row[j + 1] + 2});
      diagonal = std::exchange(row[j + 1], best);
    }
  }
  return row.back();
}

}  // namespace

const std::string* closestName(const std::string& name, std::span<const std::string> known) {
  const std::string* closest = nullptr;
  // Half the letters may differ.
  std::size_t closestDistance = 1 + std::max<std::size_t>(4, name.size());
  for (const auto& candidate : known) {
    if (const auto d = distance(name, candidate); d < closestDistance) {
      closestDistance = d;
      closest = &candidate;
    }
  }
  return closest;
}

std::string unknownName(const std::string& kind, const std::string& name,
                        std::span<const std::string> known) {
  const std::string* closest = closestName(name, known);
  std::string text = "there is no " + kind + " \"" + name + "\"";
  if (closest != nullptr) text += "; did you mean \"" + *closest + "\"?";
  return text + (closest != nullptr ? " Known: " : "; known: ") + listed(known);
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, lowerCase, lowerCase);
}

std::string listed(std::span<const std::string> names) {
  std::string list;
  for (const auto& name : names) list += (list.empty() ? "" : ", ") + name;
  return list;
}

std::string printable(std::string text) {
  for (char& c : text)
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = '?';
  return text;
}

}  // namespace greycard
