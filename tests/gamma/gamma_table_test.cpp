#include "gamma_table.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

namespace greycard {
namespace {

using Table = std::vector<std::int32_t>;
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

Table ramp(std::size_t n, std::int32_t step) {
  Table table(n);
  for (std::size_t i = 0; i < n; ++i) table[i] = static_cast<std::int32_t>(i) * step;
  return table;
}

// Worked by hand: the source's last entry tells its depth, the shift applies to the source itself,
// and the last stretch rises towards full scale.
struct ConversionCase {
  const char* name;
  std::int32_t bits;
  Table source;
  std::int32_t scaledSecond, scaledLast;  // of the source afterwards
  Table begin, end;                       // of the result
};

TEST(MakeGammaTable, ConvertsLengthsAndDepths) {
  const ConversionCase cases[] = {
      {"8 bits, 256",
       14,
       ramp(256, 1),
       64,
       16320,
       {0, 16, 32, 48, 64},
       {16320, 16335, 16350, 16365}},
      {"10 bits, 64", 14, ramp(64, 16), 256, 16128, {0, 16, 32, 48}, {16323, 16338, 16353}},
      {"12 bits, 512", 14, ramp(512, 8), 32, 16352, {0, 16, 32, 48}, {16336, 16352, 16367}},
      {"14 bits, 1024", 14, ramp(1024, 16), 16, 16368, {0, 16, 32, 48}, {16352, 16368}},
      {"14 to 8 bits", 8, ramp(256, 64), 1, 255, {0, 0, 0, 0, 1, 1, 1, 1, 2}, {255, 255, 255, 255}},
      {"falling, towards zero",
       14,
       [] {
         Table t(512, 5000);
         t[0] = 5005;
         return t;
       }(),
       5000,
       5000,
       {5005, 5003, 5000, 5000},
       {5000, 10691}},
      {"low 14 bits taken for 12", 14, ramp(1024, 4), 16, 16368, {0, 16, 32}, {16352, 16368}},
      {"extremes",
       31,
       [] {
         Table t(512, kLowest);
         t[1] = t[511] = kHighest;
         return t;
       }(),
       -131072,
       -131072,
       {0, -65536, -131072, -65536, 0},
       {-131072, 1073676287}},
      {"no bits left", 0, ramp(64, 4), 0, 0, {0, 0}, {0, 0}},
  };
  for (ConversionCase test : cases) {
    SCOPED_TRACE(test.name);
    Table result(1024, -9);
    ASSERT_TRUE(makeGammaTable(test.bits, test.source, result));
    EXPECT_EQ(test.source[1], test.scaledSecond);
    EXPECT_EQ(test.source.back(), test.scaledLast);
    EXPECT_EQ(Table(result.begin(), result.begin() + std::ssize(test.begin)), test.begin);
    EXPECT_EQ(Table(result.end() - std::ssize(test.end), result.end()), test.end);
  }
}

TEST(MakeGammaTable, RefusesAndWritesNothing) {
  Table source = ramp(256, 1), wrong = ramp(100, 1), result(1024, 7), shortResult(512, 7);
  EXPECT_FALSE(makeGammaTable(14, wrong, result));
  EXPECT_FALSE(makeGammaTable(14, {}, result));
  EXPECT_FALSE(makeGammaTable(14, source, shortResult));
  EXPECT_FALSE(makeGammaTable(14, source, {}));
  for (const std::int32_t bits : {-1, 32, kLowest, kHighest})
    EXPECT_FALSE(makeGammaTable(bits, source, result)) << bits;
  EXPECT_EQ(source, ramp(256, 1));
  EXPECT_EQ(result, Table(1024, 7));
  EXPECT_EQ(shortResult, Table(512, 7));
}

TEST(ReferenceCurve, IsAPowerLaw) {
  Table curve(1025);
  fillReferenceCurve(2.0, curve, 10000);  // square root at i = 1024 q^2
  for (const auto& [i, expected] :
       {std::pair{0, 0}, {64, 2500}, {256, 5000}, {576, 7500}, {1024, 10000}})
    EXPECT_EQ(curve[static_cast<std::size_t>(i)], expected) << i;
  fillReferenceCurve(1.0, curve, 16383);
  for (std::int32_t i = 0; i < 1025; ++i)
    EXPECT_EQ(curve[static_cast<std::size_t>(i)], i * 16383 / 1024) << i;
}

TEST(ReferenceCurve, IsDefinedForEveryInput) {
  Table curve(3, 7), one(1, 7);
  fillReferenceCurve(0.0, curve, 100);
  EXPECT_EQ(curve, (Table{0, 0, 100}));
  fillReferenceCurve(std::nan(""), curve, 100);
  EXPECT_EQ(curve, (Table{0, 0, 100}));  // one to any power is one
  fillReferenceCurve(-1.0, curve, 100);
  EXPECT_EQ(curve, (Table{kHighest, 200, 100}));
  fillReferenceCurve(1.0, curve, -5);
  EXPECT_EQ(curve, (Table{0, -2, -5}));
  fillReferenceCurve(2.2, one, 100);
  EXPECT_EQ(one, (Table{0}));
}

}  // namespace
}  // namespace greycard
