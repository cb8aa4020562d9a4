#include "token_stream.h"

#include <algorithm>
#include <utility>

#include "greycard/files.h"
#include "text.h"

namespace greycard {
namespace {

bool isWhiteSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isLineEnd(char c) {
  return c == '\n' || c == '\r';
}

template <typename Unwanted>
std::string_view withoutEnds(std::string_view text, const Unwanted& isUnwanted) {
  while (!text.empty() && isUnwanted(text.front())) text.remove_prefix(1);
  while (!text.empty() && isUnwanted(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view trimmed(std::string_view text) {
  return withoutEnds(text, isWhiteSpace);
}

}  // namespace

TokenStream::TokenStream(const std::filesystem::path& filename, std::string_view delimStr)
    : TokenStream(Text{readWholeFile(filename)}, delimStr) {}

TokenStream TokenStream::ofText(std::string text, std::string_view delimStr) {
  return {Text{std::move(text)}, delimStr};
}

TokenStream::TokenStream(Text text, std::string_view delimStr)
    : m_text(std::move(text.bytes)), m_unread(withoutByteOrderMark(m_text)) {
  for (const char c : delimStr) m_delimiters[static_cast<unsigned char>(c)] = true;
}

void TokenStream::readLine() {
  m_line = {m_unread.begin(), std::find_if(m_unread.begin(), m_unread.end(), isLineEnd)};
  m_unread.remove_prefix(m_line.size());
  m_unread.remove_prefix(m_unread.starts_with("\r\n") ? 2 : m_unread.empty() ? 0 : 1);
  ++m_lineNumber;
}

std::optional<std::string> TokenStream::ReadToken(bool& bBlankLine) {
  bBlankLine = false;
  if (!m_stack.empty()) {
    std::string token = std::move(m_stack.back());
    m_stack.pop_back();
    return token;
  }
  const auto isDelim = [this](char c) { return isDelimiter(c); };
  while (m_line.empty()) {
    if (m_unread.empty()) return std::nullopt;
    readLine();
    m_line = trimmed(withoutEnds(trimmed(m_line), isDelim));
    bBlankLine = bBlankLine || m_line.empty();
  }
  const auto begin = std::find_if_not(m_line.begin(), m_line.end(), isDelim);
  const auto end = std::find_if(begin, m_line.end(), isDelim);
  const auto next = std::find_if_not(end, m_line.end(), isDelim);
  const std::string_view token = trimmed({begin, end});
  m_line = {next, m_line.end()};
  return std::string(token);
}

std::optional<std::string> TokenStream::ReadToken() {
  bool bBlankLine = false;
  return ReadToken(bBlankLine);
}

void TokenStream::PushBack(std::string token) {
  m_stack.push_back(std::move(token));
}

}  // namespace greycard
