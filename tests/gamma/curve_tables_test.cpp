#include "greycard/curve_tables.h"

#include <gtest/gtest.h>

#include "greycard/curve_import.h"
#include "greycard/errors.h"

namespace greycard {
namespace {

TEST(CurveTables, AreCopiesOfTheCurves) {
  GammaCurveModel model(false);
  const GammaImport three =
      importAnyCurve(model, "curve",
                     "GammaControlPointsV2R: 0,0 255,9 GammaControlPointsV2G: 0,0 "
                     "255,19 GammaControlPointsV2B: 0,0 255,255",
                     {true});
  const CurveTables tables = curveTables(*three.curve);
  EXPECT_FALSE(tables.unified);
  EXPECT_EQ(tables.name, "curve");
  EXPECT_EQ(tables.channels[0].table, *three.curve->Data());
  EXPECT_EQ(tables.channels[1].table, *three.curve->DataG());
  EXPECT_EQ(tables.channels[2].table, *three.curve->DataB());
  EXPECT_EQ(tables.channels[2].points.back().Y, 255);
  EXPECT_EQ(tables.channels[1].points.back().Y, 19);
  three.curve->SetGammaTable(ColorChannel::Green, nullptr);
  EXPECT_THROW(curveTables(*three.curve), JobError);
}

}  // namespace
}  // namespace greycard
