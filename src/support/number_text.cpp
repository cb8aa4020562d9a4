#include "greycard/number_text.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <stdexcept>

#include "greycard/names.h"

namespace greycard {
namespace {

constexpr std::size_t kLongestQuotedWord = 30;

double finiteNumber(std::string_view word) {
  if (const auto value = numberOf<double>(word); value && std::isfinite(*value)) return *value;
  throw std::invalid_argument("\"" + printable(std::string(word.substr(0, kLongestQuotedWord))) +
                              "\" is not a finite number");
}

template <std::floating_point T>
std::string shortest(T value) {
  if (std::isnan(value)) return "nan";  // whatever its sign
  char buffer[64];
  return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

}  // namespace

std::vector<double> finiteNumbers(std::string_view text) {
  constexpr std::string_view kSeparators = " ,\t\r\n";
  std::vector<double> numbers;
  for (std::size_t at = text.find_first_not_of(kSeparators); at != std::string_view::npos;
       at = text.find_first_not_of(kSeparators, at)) {
    const std::size_t end = std::min(text.find_first_of(kSeparators, at), text.size());
    numbers.push_back(finiteNumber(text.substr(at, end - at)));
    at = end;
  }
  return numbers;
}

std::string fixed(double value, int decimals) {
  if (!std::isfinite(value)) return "-";
  char buffer[400];  // the largest double has 309 digits
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed,
                                 std::clamp(decimals, 0, 60));
  std::string text(buffer, end.ptr);
  if (text.front() == '-' && text.find_first_not_of("-0.") == std::string::npos) text.erase(0, 1);
  return text;
}

std::string general(double value, int digits) {
  if (!std::isfinite(value)) return "-";
  char buffer[64];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value + 0.0,  // -0 becomes 0
                                 std::chars_format::general, std::clamp(digits, 1, 17));
  return {buffer, end.ptr};
}

std::string exact(double value) {
  return shortest(value);
}
std::string exact(float value) {
  return shortest(value);
}

}  // namespace greycard
