#include "greycard/skin_color_helper.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <limits>
#include <stdexcept>
#include <thread>

#include "double_matrix.h"
#include "skin_calibrate.h"
#include "skin_filter.h"
#include "spectral_tables.h"

namespace greycard {
namespace {

using Channel = std::vector<double>;
using Chart = std::array<Channel, 3>;
using Points = std::vector<SkinColorHelper::DataPt>;
constexpr Matrix3 kIdentity{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

// As a sensor of three narrow bands sees the chart.
Chart chartUnder(double red, double blue) {
  const CDoubleMatrix bands = chartReflectances(CDoubleMatrix(450.0, 75.0, 600.0));
  Chart chart;
  for (std::int32_t i = 0; i < 24; ++i) {
    chart[0].push_back(red * bands[2][i]);
    chart[1].push_back(bands[1][i]);
    chart[2].push_back(blue * bands[0][i]);
  }
  return chart;
}

std::vector<std::int32_t> gammaCodes(std::int32_t step) {
  std::vector<std::int32_t> codes;
  for (std::int32_t i = 0; i < 256; ++i) codes.push_back(step * i);
  return codes;
}

// Encodes with a straight line unless told otherwise.
SkinColorHelper camera(const Matrix3& ccm = kIdentity) {
  const Chart d65 = chartUnder(0.6, 0.7), a = chartUnder(1.1, 0.3), f = chartUnder(0.8, 0.5);
  SkinColorHelper helper;
  helper.SetMCCRGBValues_D65(d65[0], d65[1], d65[2]);
  helper.SetMCCRGBValues_A(a[0], a[1], a[2]);
  helper.SetMCCRGBValues_T84(f[0], f[1], f[2]);
  helper.SetCCMValues_T84(ccm);
  helper.SetGammaTable(gammaCodes(1), 8);
  return helper;
}

TEST(SkinColorHelper, OnlyTheMatrixForT84Counts) {
  SkinColorHelper helper = camera();
  EXPECT_TRUE(helper.GetUpperData() == nullptr && helper.GetLowerData() == nullptr);
  helper.Calibrate();
  for (std::size_t i = 0; i < helper.GetUpperData()->size(); ++i) {
    const auto& lower = (*helper.GetLowerData())[i];
    ASSERT_TRUE(isLowerSkin(lower.s, lower.y)) << i;
    const auto& [r, g, b] = (*helper.GetEncodedColours())[i];
    ASSERT_NEAR(0.299F * r + 0.587F * g + 0.114F * b, lower.y, 1e-6F) << i;
    EXPECT_EQ((*helper.GetUpperData())[i] != SkinColorHelper::DataPt(),
              isUpperSkin(lower.h, lower.s));
  }
  const auto before = helper.GetUpperData();
  helper.SetCCMValues_A({{{3, -1, -1}, {-1, 3, -1}, {-1, -1, 3}}});
  helper.SetCCMValues_D65({{{0, 0, 1}, {0, 1, 0}, {1, 0, 0}}});
  helper.SetGammaTable(gammaCodes(4), 10);  // 4 / 1023 is not 1 / 255
  helper.Calibrate();
  EXPECT_NE(helper.GetUpperData(), before);
  for (std::size_t i = 0; i < before->size(); ++i) {
    EXPECT_NEAR((*helper.GetUpperData())[i].h, (*before)[i].h, 1e-5);
    EXPECT_NEAR((*helper.GetUpperData())[i].y, (*before)[i].y * (1020.0 / 1023.0), 1e-6);
  }
}

TEST(SkinColorHelper, NothingSetGivesDefaultPoints) {
  SkinColorHelper helper;
  helper.Calibrate();
  const Points defaults(SkinColorHelper::kPoints);
  EXPECT_EQ(*helper.GetUpperData(), defaults);
  EXPECT_EQ(*helper.GetLowerData(), defaults);
}

TEST(SkinFilters, Edges) {
  const float inf = std::numeric_limits<float>::infinity(), nan = std::nanf("");
  EXPECT_TRUE(isUpperSkin(-2.0F, 0.0F) && isUpperSkin(0.0F, 1.0F));
  for (const float h : {std::nextafter(-2.0F, -3.0F), std::nextafter(0.0F, 1.0F), inf, nan})
    EXPECT_FALSE(isUpperSkin(h, 0.5F)) << h;
  EXPECT_TRUE(isLowerSkin(0.0F, 1.0F) && isLowerSkin(1.0F, 0.0F));
  for (const float bad : {std::nextafter(1.0F, 2.0F), -1e-30F, inf, nan}) {
    EXPECT_FALSE(isUpperSkin(-1.0F, bad)) << bad;
    EXPECT_FALSE(isLowerSkin(bad, 0.5F) || isLowerSkin(0.5F, bad)) << bad;
  }
}

TEST(SkinColorHelper, Refusals) {
  SkinColorHelper helper;
  SkinCalibrate engine;
  engine.init_parameters();
  Channel good(24, 0.5), bad = good;
  bad[7] = std::nan("");
  Matrix3 ccm = kIdentity;
  ccm[2][1] = HUGE_VAL;
  const auto codes = gammaCodes(1);
  CDoubleMatrix chart(24, 3), two(2, 2);
  const struct {
    std::function<void()> call;
    const char* says;
  } refused[] = {
      {[&] { helper.SetMCCRGBValues_A(good, bad, good); },
       "avgG[7] of the chart under A is not a finite number"},
      {[&] { helper.SetMCCRGBValues_T84(good, good, Channel(23)); },
       "avgB of the chart under T84 holds 23 values; 24 are wanted"},
      {[&] { helper.SetCCMValues_A(ccm); },
       "entry [2, 1] of the matrix for A is not a finite number"},
      {[&] { helper.SetCCMValues_D65(ccm); },
       "entry [2, 1] of the matrix for D65 is not a finite number"},
      {[&] { helper.SetGammaTable(std::span(codes).first(255), 8); },
       "pGammaTable_G holds 255 codes; 256 are wanted"},
      {[&] { helper.SetGammaTable(codes, 0); }, "Bpp is 0; 1 to 31 bits are possible"},
      {[&] { helper.SetGammaTable(codes, -1); }, "Bpp is -1; 1 to 31 bits are possible"},
      {[&] { helper.SetGammaTable(codes, 32); }, "Bpp is 32; 1 to 31 bits are possible"},
      {[&] { engine.calibrate_skin_color(chart, chart, chart, -1); },
       "Error: Input RGB data bits should be positive!"},
      {[&] { engine.calibrate_skin_color(chart, two, chart, 0); },
       "the chart under A is 2 x 2; it must be 24 x 3"},
      {[&] { engine.updateColorCorrectionMatrix(two, nullptr, nullptr); }, "Error: Wrong Matrix!"},
      {[&] { engine.updateRGB2YCbCrMatrix(two); }, "Error: Wrong RGB2YCbCr Matrix!"},
      {[&] { engine.updateGammaMatrix(two, 0); }, "Error: Input should be a column vector!"},
      {[&] { engine.updateGammaMatrix(CDoubleMatrix(256, 1), -1); },
       "Error: Input gamma bits should be positive!"},
  };
  for (const auto& [call, says] : refused)
    EXPECT_THAT(call, testing::ThrowsMessage<std::invalid_argument>(says));
  helper.Dispose();
  EXPECT_THROW(helper.Calibrate(), std::logic_error);
}

TEST(SkinColorTwoThreads, GiveWhatTheyGiveAlone) {
  SkinColorHelper one = camera(), two = camera();
  std::thread other([&two] { two.Calibrate(); });
  one.Calibrate();
  other.join();
  SkinColorHelper alone = camera();
  alone.Calibrate();
  EXPECT_EQ(*one.GetUpperData(), *alone.GetUpperData());
  EXPECT_EQ(*two.GetLowerData(), *alone.GetLowerData());
}

}  // namespace
}  // namespace greycard
