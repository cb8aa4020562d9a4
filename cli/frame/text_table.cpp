#include "text_table.h"

#include <algorithm>

namespace greycard::cli {
std::size_t widthOf(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

TextTable::TextTable(std::vector<Column> columns) : m_columns(std::move(columns)) {}

void TextTable::addRow(std::vector<std::string> cells) {
  cells.resize(m_columns.size());
  m_rows.push_back(std::move(cells));
}

std::string TextTable::text() const {
  std::vector<std::string> titles;
  std::vector<std::size_t> widths;
  for (const auto& column : m_columns) titles.push_back(column.title);
  for (std::size_t i = 0; i < titles.size(); ++i) {
    widths.push_back(widthOf(titles[i]));
    for (const auto& row : m_rows) widths[i] = std::max(widths[i], widthOf(row[i]));
  }

  std::string text;
  const auto appendRow = [&](const std::vector<std::string>& cells) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const std::string blanks(widths[i] - widthOf(cells[i]), ' ');
      if (i > 0) line += "  ";
      line += m_columns[i].align == Align::Left ? cells[i] + blanks : blanks + cells[i];
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
  };
  if (std::any_of(titles.begin(), titles.end(), [](const auto& title) { return !title.empty(); }))
    appendRow(titles);
  for (const auto& row : m_rows) appendRow(row);
  return text;
}

}  // namespace greycard::cli
