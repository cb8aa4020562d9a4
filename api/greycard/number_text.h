#pragma once
/// \file
/// \ingroup own

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "greycard/export.h"

namespace greycard {

// Numbers as text and back, the same whatever the host's locale.

/// The whole of a word as a number (a leading + is accepted); empty when it is none or doesn't fit.
template <typename Number>
std::optional<Number> numberOf(std::string_view word) {
  if (word.starts_with('+') && !word.starts_with("+-")) word.remove_prefix(1);
  const char* const end = word.data() + word.size();
  Number value{};
  const auto [stop, error] = std::from_chars(word.data(), end, value);
  if (error != std::errc{} || stop != end) return std::nullopt;
  return value;
}

/// The numbers of a text with blanks, commas or line ends between them.
/// \throws std::invalid_argument about the first word that is not a finite number; its what() is a
///         part of a sentence: "x" is not a finite number
GREYCARD_EXPORT std::vector<double> finiteNumbers(std::string_view text);

/// The number with a fixed count of decimals (0..60); "-0.00" becomes "0.00" and what is not finite
/// becomes "-".
GREYCARD_EXPORT std::string fixed(double value, int decimals);

/// The number with that many significant digits (1..17), in powers of ten where that is shorter;
/// what is not finite becomes "-".
GREYCARD_EXPORT std::string general(double value, int digits);

/// The shortest text that reads back to the same bits, for files; "inf" and "nan" are possible.
GREYCARD_EXPORT std::string exact(double value);
GREYCARD_EXPORT std::string exact(float value);

}  // namespace greycard
