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

// A null pointer is an absent text where one may be absent; a name must be there.
template <typename Name>
concept NamesACurve = requires(GammaCurveModel& model, Name name) {
  model.AddGammaCurve(name);
};
static_assert(NamesACurve<const char*> && !NamesACurve<std::nullptr_t>);

TEST(GammaText, NullIsAbsent) {
  const char* const null = nullptr;
  EXPECT_EQ(GammaCurve::StringToIntArray(nullptr), std::nullopt);
  EXPECT_EQ(GammaCurve::StringToIntArray(null), std::nullopt);
  EXPECT_EQ(GammaCurve::StringToIntArray(std::optional<std::string>()), std::nullopt);
  EXPECT_EQ(GammaCurve::CreatePointArray(nullptr), nullptr);
  GammaCurveModel model(true);
  EXPECT_EQ(model.GetCurrentCurve(nullptr), nullptr);
  EXPECT_EQ(model.GetGammaCurveByName(null), nullptr);
  EXPECT_EQ(model.AddGammaCurve("copy", null), nullptr);
  EXPECT_FALSE(model.DeleteGammaCurve(nullptr) || model.SaveGammaCurve(nullptr));
  EXPECT_EQ(model.CreateGammaTable(nullptr), nullptr);
  EXPECT_EQ(model.CreateGammaTable(null), nullptr);

  const std::string table = *model.GetGammaCurveByName("VHDR")->GetDataAsString(ColorChannel::All);
  EXPECT_EQ(model.CreateCurve("c", null, table, table, null, null, null), nullptr);
  const GammaCurvePtr curve =
      model.CreateCurve("c", table, nullptr, null, "0,0 9,9", null, nullptr);
  EXPECT_EQ(curve->ControlPoints()->size(), 2u);
  curve->SetCurveData(ColorChannel::All, nullptr);
  EXPECT_EQ(*curve->Data(), *model.GetGammaCurveByName("VHDR")->Data());
  curve->SetControlPoints(ColorChannel::All, nullptr);
  EXPECT_EQ(curve->ControlPoints(), nullptr);
  curve->SetControlPoints(ColorChannel::All, "1,1");
  curve->SetControlPoints(ColorChannel::All, null);
  EXPECT_EQ(curve->ControlPoints(), nullptr);
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
