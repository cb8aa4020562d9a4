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
      {"0,0 64 80,,255 +7 -7", {{0, 0, 64, 80, 255, 7, -7}}},
      {"2147483647,-2147483648", {{2147483647, -2147483647 - 1}}},
      {" ,, ", std::vector<std::int32_t>{}}};
  for (const auto& [text, numbers] : cases)
    EXPECT_EQ(GammaCurve::StringToIntArray(text), numbers) << *text;
  EXPECT_EQ(GammaCurve::StringToIntArray(std::nullopt), std::nullopt);
  for (const char* text : {"", "2147483648", "12, x", "12;13", "1.5", "0x10", "1\t2", "+-1"})
    EXPECT_EQ(GammaCurve::StringToIntArray(text), std::nullopt) << text;

  EXPECT_EQ(*GammaCurve::CreatePointArray("1,2 3,4 5"), (ControlPointList{{1, 2}, {3, 4}}));
  for (const char* text : {"", " ", "5", "1,x"})
    EXPECT_EQ(GammaCurve::CreatePointArray(text), nullptr) << text;
}

TEST(GammaText, FieldsShiftsStepsAndRefusalsOfTheTableBlock) {
  GammaCurveModel model(false);
  const GammaCurvePtr curve = model.AddGammaCurve("c");
  const auto block = [&](GammaTable table, std::int32_t tableSize, std::int32_t bits) {
    curve->SetGammaTable(ColorChannel::All, std::make_shared<GammaTable>(std::move(table)));
    return curve->GetDataAsString(ColorChannel::All, tableSize, bits);
  };
  EXPECT_EQ(block({1, -2147483647 - 1}, 1024, 14), "    1, -2147483648, ");
  EXPECT_EQ(block({7, -7}, 1024, 12), "   1,   -2, ");
  EXPECT_EQ(block({1, 2, 3, 4, 5}, 512, 16), "  4,  12,  20, ");
  EXPECT_EQ(block({1, 2, 3}, 1, 14), "    1\n");
  for (const auto& [size, bits] : {std::pair{0, 14}, {-1, 14}, {1025, 14}, {64, -18}, {64, 46}})
    EXPECT_EQ(block({1}, size, bits), std::nullopt) << size << " " << bits;
  EXPECT_EQ(block({}, 64, 14), std::nullopt);
  EXPECT_EQ(curve->GetDataAsString(ColorChannel::All), std::nullopt);
}

}  // namespace
}  // namespace greycard
