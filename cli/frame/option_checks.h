#pragma once

// Checks of an option's numbers that not-a-number doesn't slip through, with short messages.

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>
#include <vector>

namespace greycard::cli {

CLI::Validator numbersFrom(double low, double high);
CLI::Validator anyFiniteNumber();
/// Not a check: "-" becomes standard input's name as a file (kStandardInput).
CLI::Validator inputFile();
/// One of the names, as they stand here.
CLI::Validator oneOf(std::vector<std::string> names);
/// One of the names, or a number within the bounds.
CLI::Validator namesOrNumbers(std::vector<std::string> names, double low, double high);
CLI::Validator wholeNumbersFrom(std::int64_t low, std::int64_t high);

}  // namespace greycard::cli
