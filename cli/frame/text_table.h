#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace greycard::cli {

/// Characters of a text in UTF-8, which is enough for the letters and signs that we print.
std::size_t widthOf(std::string_view text);

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
