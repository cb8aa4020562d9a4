#include "greycard/colour_temperature.h"

#include <gtest/gtest.h>

#include <cmath>

#include "greycard/illum.h"

namespace greycard {
namespace {

// CIE 15:2004, equation of illuminant A.
TEST(LightSpectrum, OfIlluminantAIsPlancks) {
  const LightSpectrum a = lightSpectrum(illum_A);
  ASSERT_EQ(a.wavelengthNm.size(), 61U);
  ASSERT_EQ(a.power.size(), 61U);
  for (std::size_t i = 0; i < 61; ++i) {
    const double nm = a.wavelengthNm[i];
    EXPECT_EQ(nm, 400.0 + 5.0 * static_cast<double>(i));
    EXPECT_NEAR(a.power[i],
                100.0 * std::pow(560.0 / nm, 5) * std::expm1(1.435e7 / (2848.0 * 560.0)) /
                    std::expm1(1.435e7 / (2848.0 * nm)),
                0.01);
  }
}

// CIE 15:2004, tables T.3 and T.8: chromaticities and correlated colour temperatures, those of
// the fluorescent lamps rounded to 10 K.
TEST(ColourTemperature, AgreesWithThePublishedLights) {
  struct Light {
    const char* name;
    double x, y, kelvin, tolerance;
  };
  for (const Light& light : {Light{"A", 0.44758, 0.40745, 2856, 2},
                             {"D50", 0.34567, 0.35851, 5003, 2},
                             {"D55", 0.33243, 0.34744, 5503, 2},
                             {"D65", 0.31272, 0.32903, 6504, 2},
                             {"D75", 0.29903, 0.31488, 7504, 3},
                             {"F1", 0.3131, 0.3371, 6430, 10},
                             {"F2", 0.3721, 0.3751, 4230, 10},
                             {"F4", 0.4402, 0.4031, 2940, 10},
                             {"F7", 0.3129, 0.3292, 6500, 10},
                             {"F11", 0.3805, 0.3769, 4000, 10},
                             {"F12", 0.4370, 0.4042, 3000, 10}}) {
    SCOPED_TRACE(light.name);
    const auto found = correlatedColourTemperature({light.x, light.y, 1.0 - light.x - light.y});
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->kelvin, light.kelvin, light.tolerance);
  }
  // Daylight lies above the locus by 0.0032 (D65); illuminant A, a Planckian radiator, on it.
  EXPECT_NEAR(correlatedColourTemperature(whitePoint(illum_D65))->duv, 0.0032, 2e-4);
  EXPECT_NEAR(correlatedColourTemperature({109.85, 100.0, 35.585})->duv, 0.0, 1e-4);
  EXPECT_LT(correlatedColourTemperature({0.36, 0.34, 0.30})->duv, -0.005);
}

TEST(ColourTemperature, OfTheNamedLights) {
  struct Light {
    Illum light;
    double kelvin, tolerance;
  };
  for (const auto& [light, kelvin, tolerance] : {Light{illum_A, 2856, 2},
                                                 {illum_D50, 5003, 3},
                                                 {illum_D65, 6504, 3},
                                                 {illum_D75, 6504, 3},
                                                 {illum_TL84, 4000, 10},
                                                 {illum_Horizon, 2300, 3},
                                                 {illum_LED, 6504, 3}})
    EXPECT_NEAR(lightTemperature(light).kelvin, kelvin, tolerance) << illumName(light);
}

TEST(ColourTemperature, RefusesWhatHasNone) {
  for (const Vector3& xyz : {Vector3{},
                             {-1, -1, -1},
                             {NAN, 1, 1},
                             {INFINITY, 1, 1},
                             {0.2, 0.7, 0.1},
                             {0.15, 0.06, 0.79},
                             {0.68, 0.32, 0.0}})
    EXPECT_FALSE(correlatedColourTemperature(xyz)) << xyz[0];
}

}  // namespace
}  // namespace greycard
