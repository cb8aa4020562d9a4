#include "greycard/gamma_curve.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <vector>

#include "greycard/errors.h"
#include "greycard/gamma_curve_model.h"

namespace greycard {
namespace {

using Channel = ColorChannel;

GammaTablePtr table(std::int32_t value, std::size_t n = 1024) {
  return std::make_shared<GammaTable>(n, value);
}

ControlPointListPtr points(ControlPointList list) {
  return std::make_shared<ControlPointList>(std::move(list));
}

class GammaCurveTest : public testing::Test {
 protected:
  GammaCurvePtr perChannel() {
    GammaCurvePtr curve = model.AddGammaCurve("per channel");
    curve->SetIsUnified(false);
    return curve;
  }
  GammaCurveModel model{true};
};

TEST_F(GammaCurveTest, BornMutableCleanAndUnifiedOfZeros) {
  const GammaCurve curve("new", model);
  EXPECT_EQ(curve.Name(), "new");
  EXPECT_TRUE(curve.IsUnified());
  EXPECT_FALSE(curve.IsDirty() || curve.IsImmutable() || curve.IsEditable());
  EXPECT_EQ(*curve.Data(), GammaTable(1024, 0));
  EXPECT_EQ(curve.DataSize(), 1024);
  EXPECT_TRUE(curve.ControlPoints()->empty());
}

TEST_F(GammaCurveTest, AllAndRedAreOneSlotSharedWithTheCaller) {
  const GammaCurvePtr curve = model.AddGammaCurve("c");
  const GammaTablePtr mine = table(5, 257);
  curve->SetGammaTable(Channel::Green, mine);  // unified: any channel is the one table
  for (const GammaTablePtr& held : {curve->Data(), curve->DataR(), curve->DataG(), curve->DataB()})
    EXPECT_EQ(held, mine);
  const auto list = points({{0, 0}, {255, 255}});
  curve->SetControlPoints(Channel::All, list);
  EXPECT_EQ(curve->ControlPointsB(), list);
  // Points given by coordinates go into the caller's list object.
  curve->SetControlPoints(Channel::Red, std::array{1, 2}, std::array{3, 4});
  EXPECT_EQ(*list, (ControlPointList{{1, 3}, {2, 4}}));
  EXPECT_THROW(curve->SetControlPoints(Channel::Red, std::array{1}, std::array{1, 2}),
               std::invalid_argument);
}

TEST_F(GammaCurveTest, GoingPerChannelClonesAndGoingBackKeeps) {
  const GammaCurvePtr curve = model.AddGammaCurve("c");
  curve->SetGammaTable(Channel::All, table(5));
  curve->SetControlPoints(Channel::All, "1,2");
  model.SetRGBGamma(false);
  curve->SetIsUnified(false);
  EXPECT_TRUE(curve->IsUnified()) << "refused while the model has no per-channel curves";
  EXPECT_EQ(curve->DataG(), curve->Data());
  model.SetRGBGamma(true);
  curve->SetIsUnified(false);
  EXPECT_FALSE(curve->IsUnified());
  EXPECT_NE(curve->DataG(), curve->Data());
  EXPECT_EQ(*curve->DataB(), *curve->Data());
  EXPECT_EQ(*curve->ControlPointsG(), *curve->ControlPointsR());
  model.SetRGBGamma(false);
  EXPECT_TRUE(curve->IsUnified());
  EXPECT_NE(curve->DataG(), curve->Data()) << "the readers look at the curve's own flag";
  model.SetRGBGamma(true);

  (*curve->DataG())[0] = 99;
  curve->SetIsUnified(true);
  EXPECT_EQ(curve->DataG(), curve->Data());
  curve->SetIsUnified(false);
  EXPECT_EQ((*curve->DataG())[0], 99);
  // An absent slot is cloned from red again at the next write to a channel.
  curve->SetGammaTable(Channel::Green, nullptr);
  curve->SetCurveData(Channel::Green, std::vector<std::int32_t>(64, 300));
  EXPECT_EQ(curve->DataG()->front(), 300 * 16);
  EXPECT_EQ(curve->Data()->front(), 5);
}

TEST_F(GammaCurveTest, ImmutabilityIsOneWayAndBindsOnlySomeMutators) {
  const GammaCurvePtr builtin = model.GetGammaCurveByName("VOutdoor");
  builtin->SetIsImmutable(false);
  EXPECT_TRUE(builtin->IsImmutable());
  const GammaTable before = *builtin->Data();
  std::string text;
  for (int i = 0; i < 64; ++i) text += "16000 ";
  builtin->SetCurveData(Channel::All, text);
  builtin->SetControlPoints(Channel::All, "0,0 255,255");
  builtin->SetControlPoints(Channel::All, points({{1, 1}}));
  builtin->SetControlPoints(Channel::All, std::array{1}, std::array{1});
  builtin->GenerateControlPoints(Channel::All);
  builtin->SetIsUnified(false);
  builtin->CalculateCurve();
  EXPECT_EQ(*builtin->Data(), before);
  EXPECT_TRUE(builtin->ControlPoints()->empty());
  EXPECT_FALSE(builtin->IsDirty() || builtin->IsEditable());
  EXPECT_TRUE(builtin->IsUnified());

  builtin->SetCurveData(Channel::All, table(255, 256));  // rescaled in place and written
  EXPECT_EQ(builtin->Data()->front(), 16320);
  const GammaTablePtr own = table(3, 257);
  builtin->SetGammaTable(Channel::All, own);
  EXPECT_EQ(builtin->DataSize(), 257);
}

TEST_F(GammaCurveTest, CurveDataThatCantBeConvertedChangesNothing) {
  const GammaCurvePtr curve = model.AddGammaCurve("c");
  curve->SetCurveData(std::vector<std::int32_t>(100, 7));
  curve->SetCurveData(GammaTablePtr());
  curve->SetCurveData(Channel::All, "1,x");
  curve->SetCurveData(Channel::All, std::nullopt);
  EXPECT_EQ(*curve->Data(), GammaTable(1024, 0));
  const GammaTablePtr eightBit = table(10, 256);
  curve->SetCurveData(eightBit);
  EXPECT_EQ(eightBit->front(), 640) << "the caller's table is rescaled";
  EXPECT_EQ(curve->Data()->front(), 640);
}

TEST_F(GammaCurveTest, ACopyHasTablesAndListsOfItsOwn) {
  const GammaCurvePtr original = perChannel();
  original->SetControlPoints(Channel::Green, "0,0 100,200");
  original->SetControlPoints(Channel::Red, "12, x");  // absent, yet a change
  EXPECT_EQ(original->ControlPoints(), nullptr);
  original->SetIsImmutable(true);
  const GammaCurve copy("copy", *original);
  EXPECT_FALSE(copy.IsImmutable() || copy.IsUnified() || copy.IsEditable());
  EXPECT_TRUE(copy.IsDirty());
  EXPECT_NE(copy.DataG(), original->DataG());
  EXPECT_EQ(*copy.ControlPointsG(), *original->ControlPointsG());
  EXPECT_TRUE(copy.ControlPoints()->empty()) << "absent in the source: the list it is born with";
}

TEST_F(GammaCurveTest, CalculatesStraightLinesOfEachChannel) {
  const GammaCurvePtr curve = perChannel();
  curve->SetControlPoints(Channel::Red, "0,0 255,255");
  curve->SetControlPoints(Channel::Green, "0,10 255,10");
  curve->SetControlPoints(Channel::Blue, points({}));
  curve->SetIsDirty(false);
  curve->CalculateCurve();
  for (std::size_t i = 0; i < 1024; ++i) {
    EXPECT_EQ((*curve->DataR())[i], static_cast<std::int32_t>(16 * i));
    EXPECT_EQ((*curve->DataG())[i], 640);
    EXPECT_EQ((*curve->DataB())[i], 0) << "no points: as it was";
  }
  EXPECT_FALSE(curve->IsDirty());
  (*curve->Data())[7] = -1;
  curve->CalculateCurve();
  EXPECT_EQ((*curve->Data())[7], -1) << "nothing to do until points are set again";
}

TEST_F(GammaCurveTest, CalculationThatIsNotPossibleLeavesTheTable) {
  const GammaCurvePtr curve = model.AddGammaCurve("c");
  curve->SetControlPoints(Channel::All, points(ControlPointList(513)));
  curve->CalculateCurve();
  curve->SetControlPoints(Channel::All, "9,9");
  EXPECT_THROW(curve->CalculateCurve(), NumericError);
  curve->SetControlPoints(Channel::All, "0,5 255,6");
  model.SetXScale(0);
  EXPECT_THROW(curve->CalculateCurve(), NumericError);
  EXPECT_EQ(*curve->Data(), GammaTable(1024, 0));
  model.SetXScale(4);
  curve->SetGammaTable(Channel::All, nullptr);
  curve->CalculateCurve();
  EXPECT_EQ(curve->Data(), nullptr);
  EXPECT_EQ(curve->DataSize(), 0);
}

TEST_F(GammaCurveTest, DownsamplesWithAFixedLastPoint) {
  const GammaCurvePtr curve = model.AddGammaCurve("c");
  for (std::size_t i = 0; i < 1024; ++i) (*curve->Data())[i] = static_cast<std::int32_t>(i);
  model.SetYScale(1);
  std::array<std::int32_t, 32> x, y;
  ASSERT_TRUE(curve->GetDataDownsampled(x, y));
  for (std::size_t i = 0; i < 31; ++i) {
    EXPECT_EQ(x[i], static_cast<std::int32_t>(8 * i));
    EXPECT_EQ(y[i], static_cast<std::int32_t>(33 * i));
  }
  EXPECT_EQ(x[31], 255);
  EXPECT_EQ(y[31], 16383);
  model.SetYScale(64);
  ASSERT_TRUE(curve->GetDataDownsampled(Channel::Blue, x, y));
  EXPECT_EQ(y[30], 990 / 64);
  EXPECT_EQ(y[31], 255);
}

TEST_F(GammaCurveTest, DownsamplingRefusesAndWritesNothing) {
  const GammaCurvePtr curve = model.AddGammaCurve("c");
  std::vector<std::int32_t> x(1025, 7), y(1025, 7);
  for (const std::size_t n : {0u, 1u, 1025u})
    EXPECT_FALSE(curve->GetDataDownsampled(std::span(x).first(n), std::span(y).first(n)));
  EXPECT_FALSE(curve->GetDataDownsampled(std::span(x).first(5), std::span(y).first(4)));
  model.SetYScale(0);
  EXPECT_FALSE(curve->GetDataDownsampled(std::span(x).first(32), std::span(y).first(32)));
  model.SetYScale(64);
  curve->SetGammaTable(Channel::All, nullptr);
  EXPECT_FALSE(curve->GetDataDownsampled(std::span(x).first(32), std::span(y).first(32)));
  curve->GenerateControlPoints(Channel::All);
  EXPECT_TRUE(curve->ControlPoints()->empty());
  EXPECT_EQ(x, std::vector<std::int32_t>(1025, 7));

  model.SetYScale(-1);
  curve->SetGammaTable(Channel::All, table(std::numeric_limits<std::int32_t>::min()));
  ASSERT_TRUE(curve->GetDataDownsampled(std::span(x).first(2), std::span(y).first(2)));
  EXPECT_EQ(y[0], std::numeric_limits<std::int32_t>::max());
}

// Two points follow from a straight table: the first and, by the reduction's early stop, the
// second.
TEST_F(GammaCurveTest, GeneratesPointsThatReproduceALine) {
  const GammaCurvePtr curve = model.AddGammaCurve("line", 1.0, 16383);
  curve->SetIsDirty(false);
  curve->GenerateControlPoints(Channel::All);
  EXPECT_EQ(*curve->ControlPoints(), (ControlPointList{{0, 0}, {8, 8}}));
  EXPECT_TRUE(curve->IsDirty() && curve->IsEditable());
  curve->CalculateCurve();
  for (std::size_t i = 0; i < 1024; ++i)
    EXPECT_EQ((*curve->Data())[i], static_cast<std::int32_t>(16 * i));
}

TEST_F(GammaCurveTest, HooksChangeNothing) {
  const GammaCurvePtr curve = model.AddGammaCurve("c");
  curve->SetIsDirty(false);
  curve->CommitHeader(3);
  curve->CommitHeader(1, 2, 3);
  curve->CommitNameToSession("day");
  EXPECT_FALSE(curve->IsDirty());
}

}  // namespace
}  // namespace greycard
