// Block lists and maps of YAML with what stands between brackets (text_node.h); no anchors, tags
// are passed over, and a text over several lines is none of a curve's business.

#include <algorithm>

#include "text.h"
#include "text_node.h"

namespace greycard::reading {
namespace {

constexpr std::string_view kLineEnds = "\r\n";

// "0, 13" without brackets, as people write pairs.
TextNode bareValue(std::string_view word, std::size_t line, std::size_t column) {
  const auto pieces = splitText(word, ", \t");
  const bool numbers = std::ranges::all_of(
      pieces, [](std::string_view piece) { return numberIn(piece).has_value(); });
  if (pieces.size() < 2 || !numbers) return scalarNode(word, line, column);
  TextNode list;
  list.kind = TextNode::Kind::List;
  list.line = line;
  list.column = column;
  for (const std::string_view piece : pieces)
    list.items.push_back(
        scalarNode(piece, line, column + static_cast<std::size_t>(piece.data() - word.data())));
  return list;
}

class YamlReader {
 public:
  explicit YamlReader(std::string_view text) : m_cursor(text) {}

  TextNode document() {
    nextLine();
    TextNode node = readNode(0);
    if (!m_cursor.atEnd()) refuse("this line doesn't fit those before it");
    return node;
  }

 private:
  [[noreturn]] void refuse(const char* why) const {
    TextCursor here = m_cursor;
    const std::size_t line = here.line(), column = here.column();
    throw Refusal(line, column, here.takeUntil(kLineEnds), why);
  }

  void skipBlanks() {
    while (m_cursor.peek() == ' ' || m_cursor.peek() == '\t') m_cursor.skip();
  }
  bool atLineEnd() const {
    return m_cursor.atEnd() || kLineEnds.find(m_cursor.peek()) != std::string_view::npos;
  }
  // A # that is here after a blank or at the head of a line.
  void skipComment() {
    skipBlanks();
    if (m_cursor.peek() == '#') m_cursor.skipLine();
  }
  // To the first character of the next line that holds more than a comment or a document's marks.
  void nextLine() {
    while (!m_cursor.atEnd()) {
      skipComment();
      const bool marks =
          m_cursor.column() == 1 &&
          (m_cursor.peek() == '%' || m_cursor.startsWith("---") || m_cursor.startsWith("..."));
      if (marks) m_cursor.skipLine();
      if (!atLineEnd()) return;
      m_cursor.skip(m_cursor.startsWith("\r\n") ? 2 : 1);
    }
  }
  std::size_t indent() const { return m_cursor.column(); }

  bool atDash() const {
    TextCursor here = m_cursor;
    if (here.peek() != '-') return false;
    here.skip();
    return here.atEnd() || std::string_view(" \t\r\n").find(here.peek()) != std::string_view::npos;
  }
  bool atKey() const {
    TextCursor here = m_cursor;
    if (here.takeUntil(":[{,#\r\n").empty() || here.peek() != ':') return false;
    here.skip();
    return here.atEnd() || std::string_view(" \t\r\n").find(here.peek()) != std::string_view::npos;
  }

  TextNode readNode(int depth) {
    if (depth > kDeepest) refuse("lists are nested deeper than 64 here");
    if (atDash()) return readList(depth);
    if (atKey()) return readMap(depth);
    return readValue();
  }

  TextNode readList(int depth) {
    TextNode list = emptyNode(TextNode::Kind::List, m_cursor);
    const std::size_t here = indent();
    while (!m_cursor.atEnd() && indent() == here && atDash()) {
      m_cursor.skip();
      list.items.push_back(readBehind(here, depth));
    }
    return list;
  }

  TextNode readMap(int depth) {
    TextNode map = emptyNode(TextNode::Kind::Map, m_cursor);
    const std::size_t here = indent();
    while (!m_cursor.atEnd() && indent() == here && atKey()) {
      std::string_view key = m_cursor.takeUntil(":");
      if (key.size() > 1 && key.front() == '"' && key.back() == '"')
        key = key.substr(1, key.size() - 2);
      map.keys.emplace_back(key);
      m_cursor.skip();
      // A list may stand no deeper than the key that it belongs to.
      map.items.push_back(readBehind(here, depth, true));
    }
    return map;
  }

  // What follows a dash or a key, in its line or in deeper ones; the cursor goes to the next line.
  TextNode readBehind(std::size_t outer, int depth, bool behindKey = false) {
    skipBlanks();
    if (m_cursor.peek() == '!') m_cursor.takeUntil(" \t\r\n");
    skipComment();
    if (!atLineEnd()) return behindKey ? readValue() : readNode(depth + 1);
    const TextNode nothing = emptyNode(TextNode::Kind::Word, m_cursor);
    nextLine();
    const bool belongs = indent() > outer || (behindKey && indent() == outer && atDash());
    return !m_cursor.atEnd() && belongs ? readNode(depth + 1) : nothing;
  }

  TextNode readValue() {
    const bool open = std::string_view("[{\"'").find(m_cursor.peek()) != std::string_view::npos;
    TextNode value;
    if (open && !m_cursor.atEnd()) {
      value = readFlow(m_cursor, {});
    } else {
      const std::size_t line = m_cursor.line(), column = m_cursor.column();
      std::string_view word = m_cursor.takeUntil("#\r\n");
      word = word.substr(0, word.find_last_not_of(" \t") + 1);
      value = bareValue(word, line, column);
    }
    skipComment();
    if (!atLineEnd()) refuse("the value has ended before this");
    nextLine();
    return value;
  }

  TextCursor m_cursor;
};

}  // namespace

RawCurve readYaml(std::string_view text) {
  return curveOf(YamlReader(text).document());
}

}  // namespace greycard::reading
