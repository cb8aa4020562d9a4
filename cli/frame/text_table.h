#pragma once

#include <string>
#include <vector>

namespace greycard::cli {

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
