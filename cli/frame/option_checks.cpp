#include "option_checks.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <utility>

#include "greycard/names.h"
#include "greycard/number_text.h"
#include "job_files.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

// Of the words for which `holds` is true.
CLI::Validator checkOf(const std::string& wanted,
                       const std::function<bool(const std::string&)>& holds,
                       const std::string& inHelp) {
  CLI::Validator check;
  check.operation([wanted, holds](std::string& word) {
    return holds(word) ? std::string() : "\"" + word + "\" is not " + wanted;
  });
  check.description(inHelp);
  return check;
}

}  // namespace

CLI::Validator numbersFrom(double low, double high) {
  const std::string range = general(low, 6) + " to " + general(high, 6);
  return checkOf(
      "a number from " + range,
      [low, high](const std::string& word) {
        const auto value = numberOf<double>(word);
        return value && *value >= low && *value <= high;
      },
      range);
}

CLI::Validator inputFile() {
  CLI::Validator change;
  change.operation([](std::string& word) {
    if (word == "-") word = kStandardInput;
    return std::string();
  });
  change.description("");
  return change;
}

CLI::Validator anyFiniteNumber() {
  return checkOf(
      "a finite number",
      [](const std::string& word) {
        const auto value = numberOf<double>(word);
        return value && std::isfinite(*value);
      },
      "");
}

CLI::Validator oneOf(std::vector<std::string> names) {
  const std::string list = listed(names);
  return CLI::Validator(
      [names = std::move(names)](std::string& word) {
        if (std::ranges::find(names, word) != names.end()) return std::string();
        return unknownName("choice", word, names);
      },
      list);
}

CLI::Validator namesOrNumbers(std::vector<std::string> names, double low, double high) {
  const auto isName = [names](const std::string& text) {
    return std::ranges::find(names, text) != names.end();
  };
  return CLI::Validator(
      [isName, check = numbersFrom(low, high), names](std::string& text) -> std::string {
        if (isName(text) || check(text).empty()) return {};
        std::string list;
        for (const std::string& name : names) list += name + ", ";
        return "\"" + text + "\" is neither one of " + list + "nor a number within the range";
      },
      "");
}

CLI::Validator wholeNumbersFrom(std::int64_t low, std::int64_t high) {
  const std::string range = std::to_string(low) + " to " + std::to_string(high);
  return checkOf(
      "a whole number from " + range,
      [low, high](const std::string& word) {
        const auto value = numberOf<std::int64_t>(word);
        return value && *value >= low && *value <= high;
      },
      range);
}

}  // namespace greycard::cli
