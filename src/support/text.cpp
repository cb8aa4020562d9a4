#include "text.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace greycard {
namespace {

template <typename Number>
std::optional<Number> takeNumber(std::string_view& text) {
  auto rest = text;
  if (rest.starts_with('+') && !rest.starts_with("+-")) rest.remove_prefix(1);
  Number value{};
  const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
  if (error != std::errc{}) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return value;
}

template <typename Number>
std::optional<Number> parseNumber(std::string_view text) {
  const auto value = takeNumber<Number>(text);
  return text.empty() ? value : std::nullopt;
}

// Wide enough for the largest double in fixed notation (309 digits) and its decimals.
using NumberBuffer = char[512];

}  // namespace

std::vector<std::string_view> splitText(std::string_view text, std::string_view separators) {
  std::vector<std::string_view> pieces;
  while (true) {
    const auto begin = text.find_first_not_of(separators);
    if (begin == std::string_view::npos) return pieces;
    text.remove_prefix(begin);
    const auto length = std::min(text.find_first_of(separators), text.size());
    pieces.push_back(text.substr(0, length));
    text.remove_prefix(length);
  }
}

std::vector<std::string_view> splitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const auto length = std::min(text.find('\n'), text.size());
    auto line = text.substr(0, length);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.push_back(line);
    text.remove_prefix(std::min(length + 1, text.size()));
  }
  return lines;
}

std::string_view withoutByteOrderMark(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (text.starts_with(kMark)) text.remove_prefix(kMark.size());
  return text;
}

std::optional<double> takeDouble(std::string_view& text) {
  return takeNumber<double>(text);
}
std::optional<double> parseDouble(std::string_view text) {
  return parseNumber<double>(text);
}
std::optional<std::int32_t> parseInt32(std::string_view text) {
  return parseNumber<std::int32_t>(text);
}

std::string shown(std::string_view text, std::size_t longest) {
  std::string safe = "\"";
  for (const char c : text.substr(0, longest)) safe += c >= ' ' && c <= '~' ? c : '?';
  return safe + (text.size() > longest ? "...\"" : "\"");
}

std::string formatFixed(double value, int decimals) {
  NumberBuffer buffer;
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  return {buffer, end.ptr};
}

std::string formatGeneral(double value, int digits) {
  NumberBuffer buffer;
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits);
  return {buffer, end.ptr};
}

}  // namespace greycard
