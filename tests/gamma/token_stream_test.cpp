#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "token_stream.h"

namespace greycard {
namespace {

using Tokens = std::vector<std::string>;

Tokens tokensOf(std::string text, std::string_view delimiters = TokenStream::kDelimiters) {
  TokenStream stream = TokenStream::ofText(std::move(text), delimiters);
  Tokens tokens;
  while (auto token = stream.ReadToken()) tokens.push_back(*token);
  return tokens;
}

TEST(TokenStream, SplitsLinesAtRunsOfDelimiters) {
  const struct {
    std::string text;
    Tokens tokens;
  } cases[] = {{"", {}},
               {"a, b,\tc\r\n ,,\r\nd", {"a", "b", "c", "d"}},
               {"\n\n , \n", {}},
               {"one\rtwo\n\rthree", {"one", "two", "three"}},
               {"\xEF\xBB\xBFGammaTable: 1", {"GammaTable:", "1"}},
               {std::string("a\0b,c\0", 6), {std::string("a\0b", 3), std::string("c\0", 2)}},
               {std::string(1 << 20, ',') + "end", {"end"}}};
  for (const auto& c : cases) EXPECT_EQ(tokensOf(c.text), c.tokens) << c.text.substr(0, 40);
  EXPECT_EQ(tokensOf("a b;c ; d,e\n;;f", ";"), (Tokens{"a b", "c", "d,e", "f"}));
}

TEST(TokenStream, BlankLinesLineNumbersAndPushBack) {
  TokenStream stream = TokenStream::ofText("a b\r\n,,\r\n\r\nc\n\n");
  bool blank = true;
  EXPECT_EQ(stream.Line(), 0u);
  EXPECT_EQ(stream.ReadToken(blank), "a");
  EXPECT_FALSE(blank);
  stream.PushBack("first");
  stream.PushBack("last");
  EXPECT_EQ(stream.ReadToken(), "last");
  EXPECT_EQ(stream.ReadToken(blank), "first");
  EXPECT_EQ(stream.ReadToken(), "b");
  EXPECT_EQ(stream.Line(), 1u);
  EXPECT_EQ(stream.ReadToken(blank), "c");
  EXPECT_TRUE(blank);
  EXPECT_EQ(stream.Line(), 4u);
  EXPECT_EQ(stream.ReadToken(blank), std::nullopt);
  EXPECT_TRUE(blank);
  stream.PushBack("again");
  EXPECT_EQ(stream.ReadToken(), "again");
}

}  // namespace
}  // namespace greycard
