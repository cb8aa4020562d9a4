#include "greycard/gamma_curve_model.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "gamma_curve_collection.h"

namespace greycard {
namespace {

using Names = std::vector<std::string>;
using Points = ControlPointListPtr;

GammaTablePtr table(std::int32_t value, std::size_t n = 1024) {
  return std::make_shared<GammaTable>(n, value);
}

TEST(GammaCurveModel, StartsWithTheBuiltinCurvesOrNothing) {
  const GammaCurveModel model(true);
  EXPECT_EQ(model.GetNames(), (Names{"VNormal", "VLowlight", "VOutdoor", "VOutdoorHighContrast",
                                     "VOutdoorDetail", "VBacklight", "VNormalMediumDetail",
                                     "VOutdoorMediumDetail", "VGammaSRGB", "VNexus5", "VHDR"}));
  for (std::int32_t i = 0; i < 11; ++i) {
    const GammaCurvePtr curve = model.GetGammaCurveByIndex(i);
    EXPECT_TRUE(curve->IsImmutable() && !curve->IsDirty() && curve->IsUnified()) << i;
  }
  const auto id = static_cast<std::int32_t>(GammaCurveID::ID_GAMMA_NEXUS5);
  const GammaTable& nexus = *model.GetGammaCurveByIndex(id)->Data();
  EXPECT_EQ((GammaTable{nexus[0], nexus[1], nexus[2], nexus[1022], nexus[1023]}),
            (GammaTable{128, 128 + 89 / 2, 217, 16375, 16379}));
  for (const std::int32_t outside : {-1, 11, 1 << 30})
    EXPECT_EQ(model.GetGammaCurveByIndex(outside), nullptr);

  const GammaCurveModel empty(false);
  EXPECT_TRUE(empty.GetNames().empty());
  EXPECT_EQ(empty.GetGammaCurveByIndex(0), nullptr);
  EXPECT_EQ((std::vector{empty.GammaBitSize(), empty.XScale(), empty.YScale(), empty.MaxY()}),
            (std::vector<std::int32_t>{14, 4, 64, 16383}));
  EXPECT_TRUE(empty.RGBGamma());
}

TEST(GammaCurveModel, AddsOnceUnderAName) {
  GammaCurveModel model(true);
  const GammaCurvePtr power = model.AddGammaCurve("x", 2.2, 16383);
  ASSERT_NE(power, nullptr);
  EXPECT_EQ(power->Data()->front(), 0);
  EXPECT_EQ(power->Data()->back(), 16383);
  EXPECT_EQ((*power->Data())[512], static_cast<int>(16383 * std::pow(512.0 / 1023.0, 1 / 2.2)));
  EXPECT_TRUE(power->IsDirty());
  EXPECT_FALSE(power->IsEditable());
  EXPECT_EQ(model.AddGammaCurve("x", 2.2, 16383), nullptr);
  EXPECT_EQ(model.AddGammaCurve("x"), nullptr);
  EXPECT_EQ(model.AddGammaCurve("x", "VNormal"), nullptr);
  EXPECT_EQ(model.AddGammaCurve("y", "no such curve"), nullptr);

  const GammaCurvePtr copy = model.AddGammaCurve("copy", "VNormal");
  EXPECT_TRUE(copy->IsDirty() && copy->IsEditable() && !copy->IsImmutable());
  EXPECT_NE(copy->Data(), model.GetGammaCurveByName("VNormal")->Data());
  EXPECT_EQ(*copy->Data(), *model.GetGammaCurveByName("VNormal")->Data());
  EXPECT_NE(model.AddGammaCurve("X"), nullptr) << "names are case-sensitive";
  EXPECT_EQ(model.GetNames().size(), 14u);
  EXPECT_EQ(model.GetCurrentCurve("copy"), copy);
  EXPECT_EQ(model.GetCurrentCurve(std::nullopt), nullptr);
  EXPECT_EQ(model.GetCurrent("copy"), std::nullopt);
}

TEST(GammaCurveModel, DeletesAndCommits) {
  GammaCurveModel model(true);
  const GammaCurvePtr curve = model.AddGammaCurve("mine");
  EXPECT_FALSE(model.DeleteGammaCurve("VNormal"));
  EXPECT_FALSE(model.DeleteGammaCurve("no such curve"));
  EXPECT_TRUE(model.DeletedNames().empty());
  EXPECT_TRUE(model.SaveGammaCurve("mine"));
  EXPECT_TRUE(model.DeleteGammaCurve(curve->Name()));
  EXPECT_EQ(model.DeletedNames(), Names{"mine"});
  EXPECT_EQ(model.GetGammaCurveByName("mine"), nullptr);
  EXPECT_FALSE(model.SaveGammaCurve("mine"));
  EXPECT_TRUE(curve->IsDirty()) << "no longer the model's";

  const GammaCurvePtr other = model.AddGammaCurve("other");
  model.CommitSession();
  EXPECT_FALSE(other->IsDirty());
  EXPECT_TRUE(model.DeletedNames().empty());
  other->SetGammaTable(ColorChannel::All, nullptr);
  EXPECT_FALSE(model.SaveGammaCurveAs("other", "section"));
  EXPECT_EQ(model.LoadGammaCurve("other"), nullptr);
  EXPECT_EQ(model.GetSectionNames(), std::nullopt);
}

TEST(GammaCurveModel, CreatesCurvesFromSharedTables) {
  GammaCurveModel model(false);
  const auto r = table(1), g = table(2), b = table(3);
  const auto p = std::make_shared<ControlPointList>(ControlPointList{{0, 0}, {255, 255}});
  const Points none;
  EXPECT_EQ(model.CreateCurve("c", GammaTablePtr(), g, b, p, p, p), nullptr);

  const GammaCurvePtr three = model.CreateCurve("c", r, g, b, p, p, p);
  EXPECT_FALSE(three->IsUnified());
  EXPECT_EQ(three->DataR(), r);
  EXPECT_EQ(three->DataG(), g);
  EXPECT_EQ(three->DataB(), b);
  EXPECT_EQ(three->ControlPointsG(), p);
  EXPECT_TRUE(three->IsDirty());
  EXPECT_EQ(*r, GammaTable(1024, 1)) << "not recomputed";
  EXPECT_TRUE(model.GetNames().empty()) << "not in the catalogue";

  EXPECT_TRUE(model.CreateCurve("c", r, g, b, p, none, p)->ControlPointsR()->empty());
  const GammaCurvePtr one = model.CreateCurve("c", r, nullptr, b, p, none, none);
  EXPECT_TRUE(one->IsUnified());
  EXPECT_EQ(one->DataB(), r);
  EXPECT_EQ(one->ControlPoints(), p);
  model.SetRGBGamma(false);
  EXPECT_EQ(model.CreateCurve("c", r, g, b, p, p, none)->Data(), b) << "one slot, blue is last";
}

TEST(GammaCurveModel, CreatesCurvesFromListsAndTexts) {
  GammaCurveModel model(false);
  const std::vector<std::int32_t> list(64, 200), pairs{0, 0, 255, 255, 9}, none;
  const GammaCurvePtr fromLists = model.CreateCurve("c", list, none, none, pairs, none, none);
  EXPECT_EQ(fromLists->Data()->front(), 200 * 64);
  EXPECT_EQ(fromLists->ControlPoints()->size(), 2u);
  EXPECT_EQ(list.front(), 200);
  EXPECT_EQ(model.CreateCurve("c", pairs, list, list, none, none, none), nullptr);

  std::string text;
  for (const std::int32_t v : list) text += std::to_string(v) + ",";
  const GammaCurvePtr fromTexts = model.CreateCurve("c", text, text, text, "1,2", "3,4", "5,6");
  EXPECT_FALSE(fromTexts->IsUnified());
  EXPECT_EQ(*fromTexts->DataB(), *fromLists->Data());
  EXPECT_EQ(fromTexts->ControlPointsB()->front(), (ControlPoint{5, 6}));
  EXPECT_EQ(model.CreateGammaTable(std::optional<std::string_view>()), nullptr);
  EXPECT_EQ(model.CreateGammaTable(GammaTablePtr()), nullptr);
}

// The ceiling of the spline is the one of construction, whatever MaxY becomes.
TEST(GammaCurveModel, CurvesFollowTheModelsSettings) {
  GammaCurveModel model(false);
  const GammaCurvePtr curve = model.AddGammaCurve("c");
  model.SetMaxY(1000);
  model.SetYScale(100);
  model.SetXScale(8);
  curve->SetControlPoints(ColorChannel::All, "0,0 10,10");
  curve->CalculateCurve();
  EXPECT_EQ((*curve->Data())[80], 1000);
  EXPECT_EQ(curve->Data()->back(), 12788);  // 1023 * 12.5 = 12787.5
  model.SetGammaBitSize(8);
  curve->SetCurveData(std::vector<std::int32_t>(1024, 16383));
  EXPECT_EQ(curve->Data()->back(), 255);
}

TEST(GammaCurveModel, CurvesOutliveTheirModel) {
  GammaCurvePtr curve, builtin;
  {
    GammaCurveModel first(true);
    curve = first.AddGammaCurve("mine");
    GammaCurveModel moved(std::move(first));
    builtin = moved.GetGammaCurveByName("VNormal");
    EXPECT_EQ(moved.GetGammaCurveByName("mine"), curve);
  }
  curve->SetControlPoints(ColorChannel::All, "0,0 255,255");
  curve->CalculateCurve();
  EXPECT_EQ((*curve->Data())[1020], 16320);
  curve->GenerateControlPoints(ColorChannel::All);
  curve->SetIsUnified(false);
  EXPECT_FALSE(curve->IsUnified());
  EXPECT_EQ(GammaCurve("copy", *builtin).DataSize(), 1024);
}

TEST(GammaCurveCollection, RefusesASecondCurveOfAName) {
  GammaCurveModel model(false);
  GammaCurveCollection curves;
  curves.Add(std::make_shared<GammaCurve>("a", model));
  EXPECT_THROW(curves.Add(std::make_shared<GammaCurve>("a", model)), std::invalid_argument);
  EXPECT_FALSE(curves.Remove("b"));
  EXPECT_EQ(curves.size(), 1u);
}

}  // namespace
}  // namespace greycard
