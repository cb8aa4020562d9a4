// The initialisers of a C or C++ text: lists of numbers between braces, by the names before them.

#include <algorithm>

#include "text_node.h"

namespace greycard::reading {
namespace {

bool isNamePart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// 12u, 0xFFul, 0.5f
std::string_view withoutSuffix(std::string_view word) {
  const bool hex = word.starts_with("0x") || word.starts_with("0X");
  const auto last = word.find_last_not_of(hex ? "uUlL" : "uUlLfF");
  return word.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

bool isOctal(std::string_view word) {
  return word.size() > 1 && word[0] == '0' &&
         std::ranges::all_of(word, [](char c) { return c >= '0' && c <= '9'; });
}

class CArrayReader {
 public:
  explicit CArrayReader(std::string_view text) : m_cursor(text) {}

  TextNode document() {
    TextNode map = emptyNode(TextNode::Kind::Map, m_cursor);
    std::string name;
    for (skipBlanks(); !m_cursor.atEnd(); skipBlanks()) {
      const char c = m_cursor.peek();
      if (c == '{') {
        map.keys.push_back(name);
        map.items.push_back(braces(0));
        name.clear();
      } else if (c == '[') {
        m_cursor.skipPast("]");
      } else if (c == '"') {
        m_cursor.skip();
        m_cursor.skipPast("\"");
      } else if (isNamePart(c)) {
        name = nameHere();
      } else {
        m_cursor.skip();
      }
    }
    return map;
  }

 private:
  std::string nameHere() {
    std::string name;
    for (; isNamePart(m_cursor.peek()); m_cursor.skip()) name += m_cursor.peek();
    return name;
  }

  // Blanks, comments and lines for the preprocessor.
  void skipBlanks() {
    while (!m_cursor.atEnd()) {
      if (m_cursor.startsWith("//") || m_cursor.peek() == '#') {
        m_cursor.skipLine();
      } else if (m_cursor.startsWith("/*")) {
        const std::size_t line = m_cursor.line(), column = m_cursor.column();
        m_cursor.skip(2);
        if (!m_cursor.skipPast("*/"))
          throw Refusal(line, column, "/*", "the comment that begins here never ends");
      } else if (std::string_view(" \t\r\n\v\f").find(m_cursor.peek()) != std::string_view::npos) {
        m_cursor.skip();
      } else {
        return;
      }
    }
  }

  TextNode braces(int depth) {
    TextNode list = emptyNode(TextNode::Kind::List, m_cursor);
    if (depth > kDeepest)
      throw Refusal(list.line, list.column, {}, "lists are nested deeper than 64 here");
    m_cursor.skip();
    for (skipBlanks(); m_cursor.peek() != '}'; skipBlanks()) {
      if (m_cursor.atEnd())
        throw Refusal(list.line, list.column, "{", "the bracket that opens here is never closed");
      if (m_cursor.peek() == ',')
        m_cursor.skip();
      else
        list.items.push_back(m_cursor.peek() == '{' ? braces(depth + 1) : number());
    }
    m_cursor.skip();
    return list;
  }

  TextNode number() {
    const std::size_t line = m_cursor.line(), column = m_cursor.column();
    std::string_view word = m_cursor.takeUntil(", \t\r\n\v\f{}/");
    if (word.empty()) {
      word = "/";
      m_cursor.skip();
    }
    if (isOctal(word))
      throw Refusal(line, column, word, "C reads this as an octal number; leave out its first 0");
    TextNode node = scalarNode(withoutSuffix(word), line, column);
    if (!node.isNumber()) throw Refusal(line, column, word, "this is no number");
    return node;
  }

  TextCursor m_cursor;
};

}  // namespace

RawCurve readCArrays(std::string_view text) {
  return curveOf(CArrayReader(text).document());
}

}  // namespace greycard::reading
