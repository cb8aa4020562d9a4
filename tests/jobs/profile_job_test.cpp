#include <gmock/gmock.h>

#include <cmath>

#include "greycard/delta_e.h"
#include "greycard/errors.h"
#include "greycard/jobs/fit_profile.h"

namespace greycard {
namespace {

using testing::HasSubstr;

// CIE 15:2004, 8.2.1, of linear sRGB (IEC 61966-2-1) under D65.
Vector3 labOf(const Vector3& rgb) {
  const double y[] = {0.4124 * rgb[0] + 0.3576 * rgb[1] + 0.1805 * rgb[2],
                      0.2126 * rgb[0] + 0.7152 * rgb[1] + 0.0722 * rgb[2],
                      0.0193 * rgb[0] + 0.1192 * rgb[1] + 0.9505 * rgb[2]};
  const double white[] = {0.9505, 1.0, 1.089};
  Vector3 f{};
  for (std::size_t i = 0; i < 3; ++i) f[i] = std::cbrt(y[i] / white[i]);
  return {116.0 * f[1] - 16.0, 500.0 * (f[0] - f[1]), 200.0 * (f[1] - f[2])};
}

// Colours from 0.2 to 0.8, exact under a matrix that moves `mix` from the other channels.
ChartFit fitUnder(Illum light, double mix, double blueOverRed) {
  ChartFit fit;
  fit.light = light;
  for (auto& table : fit.gamma.tables)  // sRGB's own curve, as the fit divides its codes
    for (int i = 0; i < 256; ++i) {
      const double v = i / 255.0;
      const double encoded = v > 0.0031308 ? 1.055 * std::pow(v, 1 / 2.4) - 0.055 : 12.92 * v;
      table.push_back(static_cast<std::int32_t>(std::lround(62.4 * 255.0 * encoded)));
    }
  fit.gamma.bits = 14;
  fit.whiteBalance = {1.0, 1.0, blueOverRed};
  for (std::size_t r = 0; r < 3; ++r)
    for (std::size_t c = 0; c < 3; ++c) fit.matrix[r][c] = r == c ? 1.0 + 2.0 * mix : -mix;
  for (std::size_t p = 0; p < kPatchCount; ++p) {
    const auto at = static_cast<double>(p);
    Vector3& rgb = fit.fit.m_balancedRGB[p];
    rgb = {0.5 + 0.05 * std::sin(at), 0.5 + 0.05 * std::cos(2.0 * at), 0.3 + 0.01 * at};
    Vector3 corrected{};
    for (std::size_t r = 0; r < 3; ++r)
      for (std::size_t c = 0; c < 3; ++c) corrected[r] += fit.matrix[r][c] * rgb[c];
    fit.fit.m_targetLab[p] = labOf(corrected);
  }
  return fit;
}

TEST(Profile, SetsLightsSideBySideFromTheWarmestOn) {
  const CameraProfile profile = profileOf({{fitUnder(illum_D65, 0.5, 1.0), {}},
                                           {fitUnder(illum_A, 0.1, 3.0), {}},
                                           {fitUnder(illum_LED, 0.3, 2.0), 4000.0}});
  ASSERT_EQ(profile.lights.size(), 3u);
  EXPECT_NEAR(profile.lights[0].kelvin, 2856.0, 2.0);
  EXPECT_EQ(profile.lights[1].kelvin, 4000.0);
  EXPECT_EQ(profile.lights[1].source, KelvinSource::given);
  EXPECT_NEAR(profile.lights[2].kelvin, 6504.0, 3.0);
  // A matrix is exact under its own light; its neighbour's is as far off as the two differ.
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(profile.errors[i][i].mean, 0.0, 0.1);
  double step = 0.0, worst = 0.0;
  for (std::size_t p = 0; p < kPatchCount; ++p) {
    const auto& rgb = profile.lights[0].fit.fit.m_balancedRGB[p];
    Vector3 other{};
    for (std::size_t r = 0; r < 3; ++r)
      for (std::size_t c = 0; c < 3; ++c) other[r] += profile.lights[1].fit.matrix[r][c] * rgb[c];
    const double jump = deltaE2000(labOf(other), profile.lights[0].fit.fit.m_targetLab[p]);
    step += jump / kPatchCount;
    worst = std::max(worst, jump);
  }
  EXPECT_NEAR(profile.steps[0].worst, worst, 0.02);
  EXPECT_NEAR(profile.errors[1][0].mean, step, 0.01);
  EXPECT_NEAR(profile.steps[0].mean, step, 0.01);  // both lights have the same balanced chart
  EXPECT_NEAR(profile.steps[0].per100Mired(), step * 100.0 / (1e6 / 2856.0 - 250.0), 0.05);
  EXPECT_THAT(profile.warnings, testing::Contains(HasSubstr("from A to LED the matrices change")));
}

TEST(Profile, GoesBetweenLightsOverReciprocalTemperature) {
  const CameraProfile profile =
      profileOf({{fitUnder(illum_A, 0.1, 4.0), 2500.0}, {fitUnder(illum_D65, 0.5, 1.0), 5000.0}});
  // 400 and 200 mired; 250 lies at a quarter from the cooler one.
  const ProfilePoint point = profileAt(profile, 4000.0);
  EXPECT_NEAR(point.warmerShare, 0.25, 1e-12);
  EXPECT_NEAR(point.matrix[0][1], -0.4, 1e-12);
  EXPECT_NEAR(point.whiteBalance[2], std::pow(4.0, 0.25), 1e-12);
  for (const auto& row : point.matrix) EXPECT_NEAR(row[0] + row[1] + row[2], 1.0, 1e-12);
  EXPECT_EQ(profileAt(profile, 2000.0).matrix, profile.lights[0].fit.matrix);
  EXPECT_EQ(profileAt(profile, 9000.0).matrix, profile.lights[1].fit.matrix);
  EXPECT_EQ(profileAt(profile, 5000.0).whiteBalance, profile.lights[1].fit.whiteBalance);
  EXPECT_THROW(profileAt(profile, NAN), std::invalid_argument);
}

TEST(Profile, TellsTheTemperatureOfALightWithoutASpectrumByItsGains) {
  // The logarithm of blue over red is a straight line over mired here.
  const auto ratio = [](double kelvin) { return std::exp((1e6 / kelvin - 150.0) / 150.0); };
  const CameraProfile profile = profileOf({{fitUnder(illum_A, 0.1, ratio(2855.5)), {}},
                                           {fitUnder(illum_D65, 0.2, ratio(6503.6)), {}},
                                           {fitUnder(illum_LED, 0.15, ratio(3500.0)), {}}});
  EXPECT_EQ(profile.lights[1].source, KelvinSource::gains);
  EXPECT_NEAR(profile.lights[1].kelvin, 3500.0, 1.0);
  const CameraProfile alone = profileOf({{fitUnder(illum_LED, 0.1, 2.0), {}}});
  EXPECT_EQ(alone.lights[0].source, KelvinSource::stand_in);
  EXPECT_THAT(alone.warnings, testing::Contains(HasSubstr("give its own")));
  // CIE 15:2004, tables T.1 and T.7; D75 after its definition.
  for (const auto& [light, kelvin] :
       {std::pair{illum_D75, 7504.0}, {illum_CoolWhite, 4230.0}, {illum_Lowlight, 4000.0}}) {
    const CameraProfile published = profileOf({{fitUnder(light, 0.1, 2.0), {}}});
    EXPECT_EQ(published.lights[0].kelvin, kelvin);
    EXPECT_EQ(published.lights[0].source, KelvinSource::published);
  }
  EXPECT_NO_THROW(profileOf({{fitUnder(illum_A, 0.1, 2.0), 25000.0}}));
  EXPECT_THROW(profileOf({{fitUnder(illum_A, 0.1, 2.0), 25001.0}}), std::invalid_argument);
  EXPECT_THROW(profileOf({}), std::invalid_argument);
  EXPECT_THROW(profileOf({{fitUnder(illum_A, 0.1, 2.0), 999.0}}), std::invalid_argument);
  EXPECT_THROW(profileOf({{fitUnder(illum_A, 0.1, 2.0), {}}, {fitUnder(illum_A, 0.2, 2.0), {}}}),
               JobError);
}

}  // namespace
}  // namespace greycard
