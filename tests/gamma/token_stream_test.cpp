#include "token_stream.h"

#include <gtest/gtest.h>

namespace greycard {
namespace {

struct Read {
  const char* token;
  bool afterBlankLine;
  std::size_t line;
};

TEST(TokenStream, ReadsWordsLineByLineAndWhatIsPushedBack) {
  TokenStream tokens = TokenStream::ofText(
      "\xEF\xBB\xBF\v a,b\tc\r\r\n , ,\n;;\f\n,\x1F d \v,\x0E\f e\xFF,\re\x08 f");
  const Read expected[] = {{"a", false, 1},     {"b", false, 1},    {"c", false, 1},
                           {";;", true, 4},     {"\x1F", false, 5}, {"d", false, 5},
                           {"", false, 5},      {"\x0E", false, 5}, {"e\xFF", false, 5},
                           {"e\x08", false, 6}, {"f", false, 6}};
  for (const Read& read : expected) {
    bool blank = true;
    EXPECT_EQ(tokens.ReadToken(blank), read.token);
    EXPECT_EQ(blank, read.afterBlankLine) << read.token;
    EXPECT_EQ(tokens.Line(), read.line) << read.token;
  }
  EXPECT_EQ(tokens.ReadToken(), std::nullopt);
  tokens.PushBack("first");
  tokens.PushBack("second");
  EXPECT_EQ(tokens.ReadToken(), "second");
  EXPECT_EQ(tokens.ReadToken(), "first");
  EXPECT_EQ(tokens.ReadToken(), std::nullopt);

  TokenStream others = TokenStream::ofText("a b;;c;", ";");
  EXPECT_EQ(others.ReadToken(), "a b");
  EXPECT_EQ(others.ReadToken(), "c");
  EXPECT_EQ(others.ReadToken(), std::nullopt);
}

}  // namespace
}  // namespace greycard
