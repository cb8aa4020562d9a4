#pragma once

#include <cstddef>
#include <string_view>

namespace greycard::reading {

/// A place in a text with its line and column, which count from 1. Lines end at LF, CR LF or CR.
class TextCursor {
 public:
  explicit TextCursor(std::string_view text) : m_rest(text) {}

  bool atEnd() const { return m_rest.empty(); }
  /// The character here; a zero character at the end.
  char peek() const { return atEnd() ? '\0' : m_rest.front(); }
  bool startsWith(std::string_view word) const { return m_rest.starts_with(word); }
  std::size_t line() const { return m_line; }
  std::size_t column() const { return m_column; }

  void skip(std::size_t count = 1) {
    for (; count > 0 && !atEnd(); --count) step();
  }
  /// Past the next occurrence, or to the end. \return whether there was one
  bool skipPast(std::string_view word) {
    const auto at = m_rest.find(word);
    skip(at == std::string_view::npos ? m_rest.size() : at + word.size());
    return at != std::string_view::npos;
  }
  /// To the line's end, which stays.
  void skipLine() { skip(m_rest.find_first_of("\r\n")); }
  /// The characters up to one of these, which are passed.
  std::string_view takeUntil(std::string_view ends) {
    const std::string_view taken = m_rest.substr(0, m_rest.find_first_of(ends));
    skip(taken.size());
    return taken;
  }

 private:
  void step() {
    const bool endsLine =
        m_rest.front() == '\n' || (m_rest.front() == '\r' && !m_rest.starts_with("\r\n"));
    m_rest.remove_prefix(1);
    m_line += endsLine ? 1 : 0;
    m_column = endsLine ? 1 : m_column + 1;
  }

  std::string_view m_rest;
  std::size_t m_line = 1, m_column = 1;
};

}  // namespace greycard::reading
