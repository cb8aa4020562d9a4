#include "text_node.h"

namespace greycard::reading {

RawCurve readJson(std::string_view text) {
  TextCursor cursor(text);
  skipFlowBlanks(cursor);
  const TextNode document = readFlow(cursor, ",[]{}:\"' \t\r\n#");
  skipFlowBlanks(cursor);
  if (!cursor.atEnd())
    throw Refusal(cursor.line(), cursor.column(), std::string(1, cursor.peek()),
                  "the document has ended before this");
  return curveOf(document);
}

}  // namespace greycard::reading
