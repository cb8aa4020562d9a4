#include "text_node.h"

#include <algorithm>

#include "greycard/names.h"

namespace greycard::reading {
namespace {

constexpr std::string_view kFlowEnds = ",[]{}:\"' \t\r\n#";

std::string_view trimmedRight(std::string_view word) {
  const auto last = word.find_last_not_of(" \t");
  return word.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

TextNode quotedWord(TextCursor& cursor) {
  TextNode node = emptyNode(TextNode::Kind::Word, cursor);
  const char quote = cursor.peek();
  cursor.skip();
  while (!cursor.atEnd() && cursor.peek() != quote) {
    if (quote == '"' && cursor.peek() == '\\') cursor.skip();
    node.word += cursor.peek();
    cursor.skip();
  }
  if (cursor.atEnd())
    throw Refusal(node.line, node.column, {}, "the text that begins here in quotes never ends");
  cursor.skip();
  return node;
}

[[noreturn]] void refuseOpen(const TextNode& node, char bracket) {
  throw Refusal(node.line, node.column, std::string(1, bracket),
                "the bracket that opens here is never closed");
}

// "key:" and its value; false, with a value alone, in a list.
TextNode readMember(TextCursor& cursor, TextNode& owner, int depth) {
  TextNode item = readFlow(cursor, kFlowEnds, depth + 1);
  if (!owner.isMap()) return item;
  skipFlowBlanks(cursor);
  if (cursor.peek() != ':')
    throw Refusal(cursor.line(), cursor.column(), {}, "a \":\" is wanted behind the name here");
  cursor.skip();
  skipFlowBlanks(cursor);
  owner.keys.push_back(item.word);
  return readFlow(cursor, kFlowEnds, depth + 1);
}

TextNode readBracket(TextCursor& cursor, int depth) {
  const char open = cursor.peek(), close = open == '[' ? ']' : '}';
  TextNode node = emptyNode(open == '[' ? TextNode::Kind::List : TextNode::Kind::Map, cursor);
  if (depth > kDeepest)
    throw Refusal(node.line, node.column, {}, "lists are nested deeper than 64 here");
  cursor.skip();
  while (true) {
    skipFlowBlanks(cursor);
    if (cursor.atEnd()) refuseOpen(node, open);
    if (cursor.peek() == close) break;
    node.items.push_back(readMember(cursor, node, depth));
    skipFlowBlanks(cursor);
    if (cursor.atEnd()) refuseOpen(node, open);
    if (cursor.peek() == ',')
      cursor.skip();
    else if (cursor.peek() != close)
      throw Refusal(cursor.line(), cursor.column(), std::string(1, cursor.peek()),
                    std::string("a comma or \"") + close + "\" is wanted here");
  }
  cursor.skip();
  return node;
}

}  // namespace

const TextNode* TextNode::find(std::string_view key) const {
  for (std::size_t i = 0; i < keys.size(); ++i)
    if (equalIgnoringCase(keys[i], key)) return &items[i];
  return nullptr;
}

TextNode scalarNode(std::string_view word, std::size_t line, std::size_t column) {
  TextNode node;
  node.line = line;
  node.column = column;
  node.word = std::string(word);
  if (const auto number = numberIn(word)) {
    node.kind = TextNode::Kind::Number;
    node.number = *number;
  }
  return node;
}

TextNode emptyNode(TextNode::Kind kind, const TextCursor& at) {
  TextNode node;
  node.kind = kind;
  node.line = at.line();
  node.column = at.column();
  return node;
}

void skipFlowBlanks(TextCursor& cursor) {
  while (!cursor.atEnd()) {
    if (cursor.peek() == '#')
      cursor.skipLine();
    else if (std::string_view(" \t\r\n").find(cursor.peek()) != std::string_view::npos)
      cursor.skip();
    else
      return;
  }
}

TextNode readFlow(TextCursor& cursor, std::string_view bareEnds, int depth) {
  if (cursor.peek() == '[' || cursor.peek() == '{') return readBracket(cursor, depth);
  if (cursor.peek() == '"' || cursor.peek() == '\'') return quotedWord(cursor);
  const std::size_t line = cursor.line(), column = cursor.column();
  const std::string_view word = trimmedRight(cursor.takeUntil(bareEnds));
  if (word.empty() && !cursor.atEnd() && depth > 0)
    throw Refusal(line, column, std::string(1, cursor.peek()), "a value is wanted here");
  return scalarNode(word, line, column);
}

}  // namespace greycard::reading
