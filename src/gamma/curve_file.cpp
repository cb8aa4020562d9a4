#include "curve_file.h"

#include <algorithm>

#include "text.h"

namespace greycard {
namespace {

struct Keyword {
  std::string_view text;
  std::size_t list;
};
constexpr std::array kKeywords{
    Keyword{"GammaTableV2:", 0},
    Keyword{"GammaTableV2R:", 0},
    Keyword{"GammaTableV2G:", 1},
    Keyword{"GammaTableV2B:", 2},
    Keyword{"GammaControlPointsV2:", 3},
    Keyword{"GammaControlPointsV2R:", 3},
    Keyword{"GammaControlPointsV2G:", 4},
    Keyword{"GammaControlPointsV2B:", 5},
    Keyword{"GammaTable:", 0},
    Keyword{"GammaControlPoints:", 3},  // older files
};

void open(CurveFileList& list, std::size_t line, std::string_view opener) {
  if (list.present) return;
  list.present = true;
  list.line = line;
  list.opener = opener;
}

}  // namespace

CurveFileContents readCurveFile(TokenStream& tokens) {
  constexpr std::size_t kTokenBytesKept = 40;
  CurveFileContents file;
  CurveFileList* current = nullptr;
  while (const auto token = tokens.ReadToken()) {
    if (const auto number = parseInt32(*token)) {
      if (current == nullptr) open(*(current = &file.lists[0]), tokens.Line(), {});
      current->numbers.push_back(*number);
      continue;
    }
    const auto keyword = std::find_if(kKeywords.begin(), kKeywords.end(),
                                      [&](const Keyword& k) { return k.text == *token; });
    if (keyword != kKeywords.end()) {
      current = &file.lists[keyword->list];
      open(*current, tokens.Line(), keyword->text);
    } else if (++file.unknownTokens <= CurveFileContents::kUnknownTokensKept) {
      file.firstUnknown.push_back({tokens.Line(), token->substr(0, kTokenBytesKept)});
    }
  }
  return file;
}

}  // namespace greycard
