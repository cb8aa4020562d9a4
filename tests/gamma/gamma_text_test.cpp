#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "greycard/gamma_curve_model.h"

namespace greycard {
namespace {

using Numbers = std::optional<std::vector<std::int32_t>>;

TEST(GammaText, NumbersBetweenSpacesAndCommas) {
  const std::pair<std::optional<std::string_view>, Numbers> cases[] = {
      {std::nullopt, std::nullopt},
      {"", std::nullopt},
      {" ,, ", std::vector<std::int32_t>{}},
      {"0,0 64 80,,255 255", {{0, 0, 64, 80, 255, 255}}},
      {"+7 -7", {{7, -7}}},
      {"2147483647,-2147483648", {{2147483647, -2147483647 - 1}}},
      {"2147483648", std::nullopt},
      {"12, x", std::nullopt},
      {"12;13", std::nullopt},
      {"1.5", std::nullopt},
      {"0x10", std::nullopt},
      {"1\t2", std::nullopt},
      {"+-1", std::nullopt},
      {std::string_view("1\0 2", 4), std::nullopt}};
  for (const auto& [text, numbers] : cases)
    EXPECT_EQ(GammaCurve::StringToIntArray(text), numbers) << text.value_or("(absent)");
}

TEST(GammaText, PointsArePairs) {
  EXPECT_EQ(GammaCurve::CreatePointArray(std::optional<std::string_view>()), nullptr);
  for (const char* none : {"", " ", "5", "1,x"})
    EXPECT_EQ(GammaCurve::CreatePointArray(none), nullptr) << none;
  EXPECT_EQ(*GammaCurve::CreatePointArray("1,2 3,4 5"), (ControlPointList{{1, 2}, {3, 4}}));
  EXPECT_EQ(GammaCurve::DataToArray({}), std::nullopt);
}

// The known export of a power curve of 1/2.2 to 64 values of 10 bits.
TEST(GammaText, WritesTheTableBlock) {
  GammaCurveModel model(false);
  EXPECT_EQ(model.AddGammaCurve("power", 2.2, 16383)->GetDataAsString(ColorChannel::All, 64, 10),
            "  0, 154, 211, 254, 290, 321, 349, 374, 398, 419, 440, 460, 478, 496, 513, 529,\n"
            "545, 560, 575, 589, 603, 617, 630, 643, 655, 668, 680, 691, 703, 714, 725, 736,\n"
            "747, 758, 768, 778, 788, 798, 808, 817, 827, 836, 845, 854, 863, 872, 881, 890,\n"
            "898, 907, 915, 923, 932, 940, 948, 956, 964, 971, 979, 987, 994, 1002, 1009, 1017\n");
}

TEST(GammaText, FieldsShiftsAndStepsOfTheTableBlock) {
  GammaCurveModel model(false);
  const GammaCurvePtr curve = model.AddGammaCurve("c");
  const auto block = [&](GammaTable table, std::int32_t tableSize, std::int32_t bits) {
    curve->SetGammaTable(ColorChannel::All, std::make_shared<GammaTable>(std::move(table)));
    return curve->GetDataAsString(ColorChannel::All, tableSize, bits);
  };
  EXPECT_EQ(block({1, -2, 16383}, 1024, 14), "    1,    -2, 16383, ");
  EXPECT_EQ(block({7, -7}, 1024, 12), "   1,   -2, ");
  EXPECT_EQ(block({1, 2}, 1024, 16), "  4,   8, ");
  EXPECT_EQ(block({1, 2, 3, 4, 5}, 512, 14), "    1,     3,     5, ");
  EXPECT_EQ(block({1, 2, 3}, 1, 14), "    1\n");
  EXPECT_EQ(block({-2147483647 - 1, 0}, 1024, 14), "-2147483648,     0, ");
  const std::string full = *block(GammaTable(1024, 9), 1024, 14);
  EXPECT_EQ(full.substr(15 * 7, 16), "    9,\n    9,   ");
  EXPECT_EQ(full.substr(full.size() - 8), ",     9\n");

  for (const auto& [size, bits] : {std::pair{0, 14}, {-1, 14}, {1025, 14}, {64, -18}, {64, 46}})
    EXPECT_EQ(block({1}, size, bits), std::nullopt) << size << " " << bits;
  EXPECT_EQ(block({}, 64, 14), std::nullopt);
  EXPECT_EQ(curve->GetDataAsString(ColorChannel::All), std::nullopt);
  curve->SetGammaTable(ColorChannel::All, nullptr);
  EXPECT_EQ(curve->GetDataAsString(ColorChannel::All, 64, 14), std::nullopt);
  EXPECT_EQ(curve->GetDataAsString(ColorChannel::All), std::nullopt);
}

TEST(GammaText, PlainFormsOfTableAndPoints) {
  GammaCurveModel model(false);
  const GammaCurvePtr curve = model.AddGammaCurve("c");
  curve->SetGammaTable(ColorChannel::All, std::make_shared<GammaTable>(GammaTable{0, 12, -25}));
  EXPECT_EQ(curve->GetDataAsString(ColorChannel::All), " 0 12 -25");
  EXPECT_EQ(curve->GetControlPointsAsString(ColorChannel::All), std::nullopt);
  curve->SetControlPoints(ColorChannel::All, "0,0 32,60 255,255");
  EXPECT_EQ(curve->GetControlPointsAsString(ColorChannel::All), " 0,0 32,60 255,255");
  curve->SetControlPoints(ColorChannel::All, std::nullopt);
  EXPECT_EQ(curve->GetControlPointsAsString(ColorChannel::All), std::nullopt);
}

}  // namespace
}  // namespace greycard
