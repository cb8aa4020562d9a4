#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

/// Compares a text with tests/<file>, line by line. With GREYCARD_REGENERATE set in the environment
/// the file is written instead: look at what `git diff` shows before committing it.
void expectGolden(const std::string& file, const std::string& text);

/// The name and the numbers behind it, as a line. \param digits  significant ones
std::string goldenLine(const std::string& name, std::span<const double> values, int digits);

/// A sum that every value changes in its own way.
template <typename Values>
std::int64_t traceOf(const Values& values) {
  std::int64_t sum = 0;
  for (std::size_t i = 0; i < values.size(); ++i)
    sum += static_cast<std::int64_t>(values[i]) * static_cast<std::int64_t>(i % 97 + 1);
  return sum;
}
