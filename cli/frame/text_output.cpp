#include "text_output.h"

#include <algorithm>
#include <iostream>

#include "text_table.h"

namespace greycard::cli {

std::string wrapped(std::string_view text, std::size_t width) {
  std::string lines;
  std::size_t used = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    const std::string_view word = text.substr(0, end);
    const std::size_t length = widthOf(word);
    if (used > 0 && used + 1 + length > width) {
      lines += "\n  ";
      used = 2;
    } else if (!lines.empty()) {
      lines += ' ';
      ++used;
    }
    lines += word;
    used += length;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

void printParagraph(const std::string& text, bool wide) {
  std::cout << (wide ? text : wrapped(text, kLineWidth)) << '\n';
}

}  // namespace greycard::cli
