#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace greycard {

/// The words of a text file between delimiter characters, line by line, with push-back.
///
/// Lines end at LF, CR LF or CR. White space at the ends of a line or a token is dropped, and so is
/// a UTF-8 byte-order mark before the first line; any other bytes are taken as they are.
class TokenStream {
 public:
  static constexpr std::string_view kDelimiters = " ,\n\t";

  /// Reads the whole file. \throws FileError when it can't be read
  explicit TokenStream(const std::filesystem::path& filename,
                       std::string_view delimStr = kDelimiters);
  /// The same over a text in memory.
  static TokenStream ofText(std::string text, std::string_view delimStr = kDelimiters);

  /// The token pushed back last, else the next of the text; absent at its end.
  /// \param bBlankLine  set when lines without a token were passed on the way
  std::optional<std::string> ReadToken(bool& bBlankLine);
  std::optional<std::string> ReadToken();
  /// Makes the token the next one to be read.
  void PushBack(std::string token);

  /// The line of the last token read from the text, from 1; 0 before the first.
  std::size_t Line() const { return m_lineNumber; }

 private:
  struct Text {
    std::string bytes;
  };
  TokenStream(Text text, std::string_view delimStr);
  // m_line and m_unread look into m_text
  TokenStream(const TokenStream&) = delete;
  TokenStream& operator=(const TokenStream&) = delete;

  void readLine();
  bool isDelimiter(char c) const { return m_delimiters[static_cast<unsigned char>(c)]; }

  std::string m_text;
  std::string_view m_unread;  // the lines after the current one
  std::string_view m_line;    // the unread rest of the current line
  std::size_t m_lineNumber = 0;
  std::array<bool, 256> m_delimiters{};
  std::vector<std::string> m_stack;  // tokens pushed back
};

}  // namespace greycard
