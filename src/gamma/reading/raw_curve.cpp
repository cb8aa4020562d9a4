#include "raw_curve.h"

#include <charconv>
#include <cstdint>

#include "text.h"

namespace greycard::reading {

Refusal::Refusal(std::size_t line, std::size_t column, std::string_view word, std::string text)
    : Refusal(GammaImportNote{line, keptWord(word), std::move(text),
                              column > 0 ? std::optional(column) : std::nullopt}) {}

std::string keptWord(std::string_view word) {
  constexpr std::size_t kBytesKept = 40;
  return std::string(word.substr(0, kBytesKept));
}

std::optional<double> numberIn(std::string_view word) {
  if (!word.starts_with("0x") && !word.starts_with("0X")) return parseDouble(word);
  std::uint64_t value = 0;
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data() + 2, end, value, 16);
  if (error != std::errc{} || stop != end) return std::nullopt;
  return static_cast<double>(value);
}

}  // namespace greycard::reading
