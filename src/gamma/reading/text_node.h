#pragma once

// Numbers in nested lists and maps, however the text writes these.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "raw_curve.h"
#include "text_cursor.h"

namespace greycard::reading {

struct TextNode {
  enum class Kind { Number, Word, List, Map };

  Kind kind = Kind::Word;
  std::size_t line = 0, column = 0;
  double number = 0.0;
  std::string word;               ///< of a word or number as it stands there
  std::vector<std::string> keys;  ///< of a map, as many as items
  std::vector<TextNode> items;    ///< of a list or map

  bool isNumber() const { return kind == Kind::Number; }
  bool isList() const { return kind == Kind::List; }
  bool isMap() const { return kind == Kind::Map; }
  /// The first item of that key, whatever its case; null when there is none.
  const TextNode* find(std::string_view key) const;
};

/// Lists and maps may lie in each other this deep.
inline constexpr int kDeepest = 64;

/// A number, or a word that is none.
TextNode scalarNode(std::string_view word, std::size_t line, std::size_t column);
TextNode emptyNode(TextNode::Kind kind, const TextCursor& at);

/// What stands in brackets, braces, quotes or bare, as JSON has it and YAML between brackets: words
/// need no quotes and # begins a comment. The cursor stands behind it afterwards.
/// \param bareEnds  characters that end a bare word at the outside
/// \throws Refusal for what doesn't end or is nested deeper than kDeepest
TextNode readFlow(TextCursor& cursor, std::string_view bareEnds, int depth = 0);
/// Blanks, line ends and comments.
void skipFlowBlanks(TextCursor& cursor);

/// The curve in a document: a list of values, of pairs or of rows, three of these, or a map that
/// holds one under some key.
RawCurve curveOf(const TextNode& document);

}  // namespace greycard::reading
