#include "greycard/gamma_curve.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

#include "allocation_count.h"
#include "greycard/errors.h"
#include "greycard/gamma_curve_model.h"

namespace greycard {
namespace {

using Channel = ColorChannel;

GammaTablePtr table(std::int32_t value, std::size_t n = 1024) {
  return std::make_shared<GammaTable>(n, value);
}

class GammaCurveTest : public testing::Test {
 protected:
  GammaCurveModel model{true};
  GammaCurvePtr curve = model.AddGammaCurve("curve");
};

TEST_F(GammaCurveTest, AUnifiedCurveSharesOneSlotWithTheCaller) {
  const auto mine = table(5, 257);
  curve->SetGammaTable(Channel::Green, mine);
  EXPECT_EQ((std::array{curve->Data(), curve->DataR(), curve->DataG(), curve->DataB()}),
            (std::array{mine, mine, mine, mine}));
  const auto list = std::make_shared<ControlPointList>();
  curve->SetControlPoints(Channel::All, list);
  curve->SetControlPoints(Channel::Blue, std::array{1, 2}, std::array{3, 4});
  EXPECT_EQ(*list, (ControlPointList{{1, 3}, {2, 4}}));
}

TEST_F(GammaCurveTest, GoingPerChannelClonesAndGoingBackKeeps) {
  model.SetRGBGamma(false);
  curve->SetIsUnified(false);
  model.SetRGBGamma(true);
  EXPECT_TRUE(curve->IsUnified()) << "refused";
  curve->SetControlPoints(Channel::All, "1,2");
  curve->SetIsUnified(false);
  EXPECT_FALSE(curve->IsUnified());
  EXPECT_NE(curve->DataB(), curve->Data());
  EXPECT_NE(curve->ControlPointsG(), curve->ControlPoints());
  EXPECT_EQ(*curve->ControlPointsG(), *curve->ControlPoints());
  EXPECT_EQ(*curve->ControlPointsB(), (ControlPointList{{1, 2}}));
  (*curve->DataG())[0] = 99;
  curve->SetIsUnified(true);
  EXPECT_EQ(curve->DataG(), curve->Data());
  curve->SetIsUnified(false);
  EXPECT_EQ((*curve->DataG())[0], 99);
  // An absent slot is cloned from red again when a channel is next written to.
  curve->SetGammaTable(Channel::Green, nullptr);
  curve->SetCurveData(Channel::Green, std::vector<std::int32_t>(64, 300));
  EXPECT_EQ(curve->DataG()->front(), 300 * 16);
  EXPECT_EQ(curve->Data()->front(), 0);
}

TEST_F(GammaCurveTest, ImmutabilityIsOneWayAndBindsOnlySomeMutators) {
  const GammaCurvePtr builtin = model.GetGammaCurveByName("VOutdoor");
  const GammaTable before = *builtin->Data();
  builtin->SetIsImmutable(false);
  builtin->SetCurveData(Channel::All, *builtin->GetDataAsString(Channel::All, 64, 14));
  builtin->SetControlPoints(Channel::All, "0,0 255,255");
  builtin->SetControlPoints(Channel::All, std::array{1}, std::array{1});
  builtin->GenerateControlPoints(Channel::All);
  builtin->SetIsUnified(false);
  builtin->CalculateCurve();
  EXPECT_TRUE(builtin->IsImmutable() && builtin->IsUnified() && builtin->ControlPoints()->empty());
  EXPECT_FALSE(builtin->IsDirty() || builtin->IsEditable());
  EXPECT_EQ(*builtin->Data(), before);
  const auto eightBit = table(255, 256);
  builtin->SetCurveData(eightBit);
  EXPECT_EQ(builtin->Data()->front(), 16320);
  EXPECT_EQ(eightBit->front(), 16320) << "the caller's table is rescaled";
}

TEST_F(GammaCurveTest, ACopyHasTablesAndListsOfItsOwn) {
  curve->SetIsUnified(false);
  curve->SetControlPoints(Channel::Red, "12, x");
  EXPECT_EQ(curve->ControlPoints(), nullptr);
  curve->SetIsImmutable(true);
  const GammaCurve copy("copy", *curve);
  EXPECT_TRUE(copy.IsDirty() && !copy.IsImmutable() && !copy.IsUnified() && !copy.IsEditable());
  EXPECT_NE(copy.DataG(), curve->DataG());
  EXPECT_TRUE(copy.ControlPoints()->empty());
}

TEST_F(GammaCurveTest, CalculatesStraightLinesOfEachChannel) {
  curve->SetIsUnified(false);
  curve->SetControlPoints(Channel::Red, "0,0 255,255");
  curve->SetControlPoints(Channel::Green, "0,10 255,10");
  curve->SetControlPoints(Channel::Blue, std::make_shared<ControlPointList>());
  curve->CalculateCurve();
  for (std::size_t i = 0; i < 1024; ++i)
    EXPECT_EQ((*curve->Data())[i], static_cast<std::int32_t>(16 * i));
  EXPECT_EQ(*curve->DataG(), GammaTable(1024, 640));
  EXPECT_EQ(*curve->DataB(), GammaTable(1024, 0));
}

TEST_F(GammaCurveTest, WhatCantBeCalculatedLeavesTheTable) {
  curve->CalculateCurve();
  curve->SetControlPoints(Channel::All, std::make_shared<ControlPointList>(513));
  curve->CalculateCurve();
  curve->SetControlPoints(Channel::All, "9,9");
  EXPECT_THROW(curve->CalculateCurve(), NumericError);
  model.SetXScale(0);
  curve->SetControlPoints(Channel::All, "0,5 255,6");
  EXPECT_THROW(curve->CalculateCurve(), NumericError);
  curve->SetCurveData(std::vector<std::int32_t>(100, 7));
  curve->SetCurveData(GammaTablePtr());
  curve->SetCurveData(Channel::All, "1 2 x");
  curve->SetCurveData(Channel::All, std::nullopt);
  EXPECT_EQ(*curve->Data(), GammaTable(1024, 0));
  curve->SetCurveData(Channel::All, *model.GetGammaCurveByIndex(0)->GetDataAsString(Channel::All));
  EXPECT_EQ(*curve->Data(), *model.GetGammaCurveByIndex(0)->Data());
}

TEST_F(GammaCurveTest, DownsamplesWithAFixedLastPoint) {
  for (std::size_t i = 0; i < 1024; ++i) (*curve->Data())[i] = static_cast<std::int32_t>(i);
  model.SetYScale(1);
  std::array<std::int32_t, 32> x, y;
  ASSERT_TRUE(curve->GetDataDownsampled(x, y));
  EXPECT_EQ((std::array{x[0], x[1], x[30], x[31]}), (std::array{0, 8, 240, 255}));
  EXPECT_EQ((std::array{y[0], y[1], y[30], y[31]}), (std::array{0, 33, 990, 16383}));
  ASSERT_TRUE(curve->GetDataDownsampled(std::span(x).first(17), std::span(y).first(17)));
  EXPECT_EQ((std::array{x[1], x[15], y[1], y[15]}), (std::array{16, 240, 64, 960}));
  model.SetMaxY(500);
  ASSERT_TRUE(curve->GetDataDownsampled(std::span(x).first(2), std::span(y).first(2)));
  EXPECT_EQ((std::array{x[0], x[1], y[1]}), (std::array{0, 255, 500}));
  model.SetYScale(-1);
  (*curve->Data())[0] = std::numeric_limits<std::int32_t>::min();
  ASSERT_TRUE(curve->GetDataDownsampled(x, y));
  EXPECT_EQ(y[0], std::numeric_limits<std::int32_t>::max());

  EXPECT_FALSE(curve->GetDataDownsampled(std::span(x).first(1), std::span(y).first(1)));
  model.SetYScale(0);
  EXPECT_FALSE(curve->GetDataDownsampled(x, y));
  model.SetYScale(64);
  curve->SetGammaTable(Channel::All, table(0, 31));
  EXPECT_FALSE(curve->GetDataDownsampled(x, y));
}

TEST_F(GammaCurveTest, DraggingAPointAllocatesNothing) {
  const GammaCurvePtr edited = model.AddGammaCurve("edited", 2.2, 16383);
  long before = 0;
  for (int drag = 0; drag < 5; ++drag) {
    if (drag == 1) before = allocationCount();  // the list of points has its memory by now
    edited->GenerateControlPoints(Channel::All);
    edited->CalculateCurve();
  }
  EXPECT_EQ(allocationCount(), before);
}

}  // namespace
}  // namespace greycard
