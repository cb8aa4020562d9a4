#include "number_list.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "names.h"

namespace greycard::cli {
namespace {

constexpr std::size_t kLongestQuotedWord = 30;

double finiteNumber(std::string_view word) {
  if (const auto value = numberOf<double>(word); value && std::isfinite(*value)) return *value;
  throw std::invalid_argument("\"" + printable(std::string(word.substr(0, kLongestQuotedWord))) +
                              "\" is not a finite number");
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

}  // namespace greycard::cli
