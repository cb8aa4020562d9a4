#include "greycard/gamma_curve_model.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace greycard {
namespace {

using Names = std::vector<std::string>;

GammaTablePtr table(std::int32_t value) {
  return std::make_shared<GammaTable>(1024, value);
}

TEST(GammaCurveModel, AddsOnceUnderAName) {
  GammaCurveModel model(true);
  const GammaCurvePtr power = model.AddGammaCurve("x", 2.2, 16383);
  EXPECT_TRUE(power->IsDirty() && !power->IsEditable());
  EXPECT_EQ(power->Data()->back(), 16383);
  EXPECT_EQ(model.AddGammaCurve("x", 2.2, 16383), nullptr);
  EXPECT_EQ(model.AddGammaCurve("y", "no such curve"), nullptr);
  const GammaCurvePtr copy = model.AddGammaCurve("X", "VNormal");  // names are case-sensitive
  EXPECT_TRUE(copy->IsDirty() && copy->IsEditable());
  EXPECT_NE(copy->Data(), model.GetGammaCurveByName("VNormal")->Data());
  EXPECT_EQ(model.GetCurrentCurve("X"), copy);
  EXPECT_EQ(model.GetCurrent("X"), std::nullopt);
}

TEST(GammaCurveModel, DeletesAndCommits) {
  GammaCurveModel model(true);
  const GammaCurvePtr kept = model.AddGammaCurve("kept");
  model.AddGammaCurve("mine");
  EXPECT_FALSE(model.DeleteGammaCurve("VNormal"));
  EXPECT_TRUE(model.SaveGammaCurve("mine"));
  EXPECT_TRUE(model.DeleteGammaCurve("mine"));
  EXPECT_FALSE(model.SaveGammaCurve("mine") || model.DeleteGammaCurve("mine"));
  kept->SetGammaTable(ColorChannel::All, table(0));
  kept->Data()->clear();
  EXPECT_FALSE(model.SaveGammaCurve("kept"));
  EXPECT_EQ(model.DeletedNames(), Names{"mine"});
  model.CommitSession();
  EXPECT_TRUE(model.DeletedNames().empty() && !kept->IsDirty());
  EXPECT_EQ(model.LoadGammaCurve("kept"), nullptr);
}

TEST(GammaCurveModel, CreatesCurvesFromTablesListsAndTexts) {
  GammaCurveModel model(false);
  const auto r = table(1), g = table(2), b = table(3);
  const auto p = std::make_shared<ControlPointList>(2);
  const GammaCurvePtr three = model.CreateCurve("c", r, g, b, p, p, p);
  EXPECT_EQ((std::vector{three->DataR(), three->DataG(), three->DataB()}), (std::vector{r, g, b}));
  EXPECT_TRUE(model.CreateCurve("c", r, g, b, p, nullptr, p)->ControlPointsR()->empty());
  const GammaCurvePtr one = model.CreateCurve("c", r, nullptr, b, p, nullptr, nullptr);
  EXPECT_TRUE(one->IsUnified() && one->Data() == r && one->ControlPoints() == p);
  EXPECT_EQ(model.CreateCurve("c", GammaTablePtr(), g, b, p, p, p), nullptr);
  EXPECT_TRUE(model.GetNames().empty());

  const std::vector<std::int32_t> list(64, 200), pairs{0, 0, 255, 255, 9}, none;
  const GammaCurvePtr fromLists = model.CreateCurve("c", list, list, list, pairs, pairs, pairs);
  EXPECT_EQ(fromLists->DataB()->front(), 200 * 64);
  EXPECT_EQ(fromLists->ControlPointsB()->size(), 2u);
  EXPECT_EQ(model.CreateCurve("c", pairs, list, list, none, none, none), nullptr);
  const std::string text = *fromLists->GetDataAsString(ColorChannel::All);
  EXPECT_EQ(*model.CreateCurve("c", text, {}, {}, "1,2", {}, {})->Data(), *fromLists->Data());
  model.SetRGBGamma(false);
  EXPECT_EQ(model.CreateCurve("c", r, g, b, p, p, p)->Data(), b) << "one slot, blue is last";
}

TEST(GammaCurveModel, CurvesFollowTheModelAndOutliveIt) {
  GammaCurvePtr curve;
  {
    GammaCurveModel first(true);
    curve = first.AddGammaCurve("curve");
    GammaCurveModel model(std::move(first));
    EXPECT_EQ((std::vector{model.XScale(), model.YScale(), model.MaxY()}),
              (std::vector{4, 64, 16383}));
    model.SetMaxY(1000);  // too late for the spline's ceiling
    model.SetXScale(8);
    model.SetYScale(100);
  }
  curve->SetControlPoints(ColorChannel::All, "0,0 10,10");
  curve->CalculateCurve();
  EXPECT_EQ(curve->Data()->back(), 12788);  // 1023 * 100 / 8 = 12787.5
  curve->GenerateControlPoints(ColorChannel::All);
  curve->SetIsUnified(false);
  EXPECT_EQ(GammaCurve("copy", *curve).DataSize(), 1024);
}

}  // namespace
}  // namespace greycard
