#include "gamma_table.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace greycard {
namespace {

using Table = std::vector<std::int32_t>;
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

Table ramp(std::size_t n, std::int32_t step) {
  Table table(n);
  for (std::size_t i = 0; i < n; ++i) table[i] = static_cast<std::int32_t>(i) * step;
  return table;
}

// Worked by hand: the source's last entry tells its depth, the shift applies to the source itself,
// and the last stretch rises towards full scale.
TEST(MakeGammaTable, ConvertsLengthsAndDepths) {
  struct Case {
    const char* name;
    std::int32_t bits;
    Table source;
    std::int32_t scaledLast;  // of the source afterwards
    Table begin, end;         // of the result
  };
  const Case cases[] = {
      // Name, bits wanted, source, its last entry afterwards, begin and end of the result.
      {"8 bits", 14, ramp(256, 1), 16320, {0, 16, 32, 48, 64}, {16320, 16335, 16350, 16365}},
      {"8 to 9 bits", 9, ramp(256, 1), 510, {0, 0, 0, 0, 2}, {510, 510, 510, 510}},
      {"10 bits", 14, ramp(64, 16), 16128, {0, 16, 32}, {16323, 16338, 16353}},
      {"12 bits", 14, ramp(512, 8), 16352, {0, 16, 32}, {16336, 16352, 16367}},
      {"14 to 8 bits", 8, ramp(256, 64), 255, {0, 0, 0, 0, 1}, {255, 255, 255, 255}},
      {"14 taken for 12", 14, ramp(1024, 4), 16368, {0, 16, 32}, {16352, 16368}},
      {"falling", 8, ramp(256, -5), -1275, {0, -1, -2, -3, -5}, {-1275, -893, -511, -129}},
      {"extremes", 14, Table(64, kHighest), kHighest, {kHighest}, {kHighest - 15 * 134216704}},
      {"no bits left", 0, ramp(64, 4), 0, {0, 0}, {0, 0}}};
  for (Case test : cases) {
    SCOPED_TRACE(test.name);
    Table result(1024, -9);
    ASSERT_TRUE(makeGammaTable(test.bits, test.source, result));
    EXPECT_EQ(test.source.back(), test.scaledLast);
    EXPECT_EQ(Table(result.begin(), result.begin() + std::ssize(test.begin)), test.begin);
    EXPECT_EQ(Table(result.end() - std::ssize(test.end), result.end()), test.end);
  }
}

TEST(MakeGammaTable, RefusesAndWritesNothing) {
  Table source = ramp(256, 1), wrong(100), result(1024, 7), tooShort(512, 7);
  EXPECT_FALSE(makeGammaTable(14, wrong, result));
  EXPECT_FALSE(makeGammaTable(14, source, tooShort));
  EXPECT_FALSE(makeGammaTable(-1, source, result));
  EXPECT_FALSE(makeGammaTable(32, source, result));
  EXPECT_EQ(source, ramp(256, 1));
  EXPECT_EQ(result, Table(1024, 7));
}

}  // namespace
}  // namespace greycard
