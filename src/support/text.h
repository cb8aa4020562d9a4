#pragma once

// Numbers and words in files, independent of the host's locale.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace greycard {

/// The pieces between any of the separator characters; empty pieces are dropped.
std::vector<std::string_view> splitText(std::string_view text, std::string_view separators);

/// The lines of a text without their "\n" or "\r\n"; a last line without an end counts.
std::vector<std::string_view> splitLines(std::string_view text);

/// The text without the UTF-8 byte-order mark that it may begin with.
std::string_view withoutByteOrderMark(std::string_view text);

/// A to Z as a to z, whatever the locale; every other byte as it is.
constexpr char lowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Takes a decimal number, "inf" or "nan" (a leading + is accepted) off the front of `text`; empty,
/// with nothing taken, when there is none or it is too large or too small for a double.
std::optional<double> takeDouble(std::string_view& text);

/// The whole of `text` as a decimal number, "inf" or "nan" (a leading + is accepted); empty
/// otherwise, also for a number too large or too small for a double.
std::optional<double> parseDouble(std::string_view text);

/// The whole of `text` as a 32-bit signed decimal number (a leading + is accepted); empty
/// otherwise.
std::optional<std::int32_t> parseInt32(std::string_view text);

/// A piece of somebody's file that is safe to print: in quotes, at most `longest` characters of it,
/// ? for all that is not printable ASCII.
std::string shown(std::string_view text, std::size_t longest = 24);

/// As printf's %.<decimals>f in the "C" locale.
std::string formatFixed(double value, int decimals);

/// As printf's %.<digits>g in the "C" locale; six digits is a stream's default.
std::string formatGeneral(double value, int digits = 6);

}  // namespace greycard
