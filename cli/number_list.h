#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

namespace greycard::cli {

/// The whole of a word as a number; empty when it is none or doesn't fit.
template <typename Number>
std::optional<Number> numberOf(std::string_view word) {
  if (word.starts_with('+')) word.remove_prefix(1);
  const char* const end = word.data() + word.size();
  Number value{};
  const auto [stop, error] = std::from_chars(word.data(), end, value);
  if (error != std::errc{} || stop != end) return std::nullopt;
  return value;
}

/// The numbers of a text with blanks, commas or line ends between them.
/// \throws std::invalid_argument about the first word that is not a finite number; its what() is a
///         part of a sentence: "x" is not a finite number
std::vector<double> finiteNumbers(std::string_view text);

}  // namespace greycard::cli
