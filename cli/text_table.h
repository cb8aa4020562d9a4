#pragma once

#include <string>
#include <vector>

namespace greycard::cli {

/// The number with a fixed count of decimals, the same in every locale; "-0.00" becomes "0.00" and
/// what is not a number becomes "-".
std::string fixed(double value, int decimals);

/// The number with that many significant digits, in powers of ten where that is shorter; what is
/// not a number becomes "-".
std::string general(double value, int digits);

/// The shortest text that reads back to the same bits, for files; "inf" and "nan" are possible.
std::string exact(double value);
std::string exact(float value);

/// A table for people: columns as wide as their widest cell, two blanks between them.
class TextTable {
 public:
  enum class Align { Left, Right };
  struct Column {
    std::string title;
    Align align = Align::Right;
  };

  explicit TextTable(std::vector<Column> columns);
  /// Missing cells are empty; a cell beyond the last column is dropped.
  void addRow(std::vector<std::string> cells);
  /// The lines with their ends. Titles that are all empty make no line.
  std::string text() const;

 private:
  std::vector<Column> m_columns;
  std::vector<std::vector<std::string>> m_rows;
};

}  // namespace greycard::cli
