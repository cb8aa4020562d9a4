// Tone curves and uneven light that the fit has to find by itself.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>

#include "known_chart.h"
#include "srgb_transfer.h"

namespace greycard {
namespace {

using fixture::fitAlone;
using fixture::planeAt;
using fixture::seenBy;

double lightness(double y) {
  return 116.0 * labF(y) - 16.0;
}

/// The chart balanced as a camera does, white at 0.9, every value through a curve.
MatrixFitSamples rendered(ModelSensor sensor, Illum light,
                          const std::function<double(double)>& curve) {
  MatrixFitSamples samples = seenBy(sensor, light);
  PatchTable& rgb = samples.photographs[0].rgb;
  const Vector3 white = rgb[18];
  for (Vector3& patch : rgb)
    for (std::size_t c = 0; c < 3; ++c) patch[c] = curve(0.9 * patch[c] / white[c]);
  return samples;
}

struct Rendering {
  const char* name;
  FitToneCurve family;
  std::function<double(double)> curve;
};

// A picture of a known curve: the greys come back to within 1 unit of L*, with one gain for all, by
// the curve as it is written in the result; the residual says that it fits, and the fit is as good
// as that of the linear picture.
TEST(ToneCurve, BringsBackRenderedGreys) {
  const auto smoothStep = [](double e) { return 0.7 * e + 0.3 * e * e * (3.0 - 2.0 * e); };
  const Rendering renderings[] = {
      {"power", FitToneCurve::power, [](double y) { return std::pow(y, 1.0 / 0.7); }},
      {"power with offset", FitToneCurve::powerOffset,
       [](double y) { return 1.01 * std::pow(y, 1.0 / 1.3) - 0.01; }},
      {"black and white point", FitToneCurve::blackWhite,
       [](double y) { return sRGBDecode(0.06 + 0.87 * sRGBEncode(y)); }},
      {"smooth step", FitToneCurve::monotone,
       [&](double y) { return sRGBDecode(smoothStep(sRGBEncode(y))); }},
  };
  for (const Rendering& r : renderings) {
    SCOPED_TRACE(r.name);
    const MatrixFitSamples linear =
        rendered(ModelSensor::Ordinary, illum_A, [](double y) { return y; });
    const MatrixFitSamples samples = rendered(ModelSensor::Ordinary, illum_A, r.curve);
    FitOptions options = fitAlone();
    const double straight = MatrixFit(options).fit(samples)->figures.mean2000;
    options.toneCurve = r.family;
    const auto result = MatrixFit(options).fit(samples);
    ASSERT_EQ(result->toneCurve.size(), 256U);
    EXPECT_LT(*result->greyResidual, MatrixFitResult::kGreysDisagree);
    const auto light = [&](double x) {
      const double at = 255.0 * sRGBEncode(x);
      const auto i = std::min<std::size_t>(static_cast<std::size_t>(at), 254);
      return result->toneCurve[i] +
             (at - static_cast<double>(i)) * (result->toneCurve[i + 1] - result->toneCurve[i]);
    };
    for (std::size_t c = 0; c < 3; ++c) {
      const double gain =
          linear.photographs[0].rgb[19][c] / light(samples.photographs[0].rgb[19][c]);
      for (std::size_t i = 18; i < 24; ++i)
        EXPECT_NEAR(lightness(gain * light(samples.photographs[0].rgb[i][c])),
                    lightness(linear.photographs[0].rgb[i][c]), 1.0)
            << "patch " << i + 1;
    }
    options.toneCurve = FitToneCurve::none;
    const double aim = MatrixFit(options).fit(linear)->figures.mean2000;
    EXPECT_LT(result->figures.mean2000, 0.7 * straight);
    EXPECT_LT(result->figures.mean2000, 1.25 * aim);

    // The curve can be given to another fit.
    options.toneCurve = FitToneCurve::given;
    options.givenCurve = result->toneCurve;
    if (options.givenCurve[0] == options.givenCurve[1]) options.givenCurve[0] = -1e-9;
    for (std::size_t i = 1; i < 256; ++i)
      options.givenCurve[i] = std::max(options.givenCurve[i], options.givenCurve[i - 1] + 1e-9);
    EXPECT_NEAR(MatrixFit(options).fit(samples)->figures.mean2000, result->figures.mean2000, 0.02);
  }
}

TEST(ToneCurve, ResidualTellsGreysThatNoCurveExplains) {
  MatrixFitSamples samples = rendered(ModelSensor::Ordinary, illum_D65, [](double y) { return y; });
  PatchTable& rgb = samples.photographs[0].rgb;
  for (std::size_t i = 18; i < 24; ++i)
    for (double& value : rgb[i]) value *= i % 2 ? 1.25 : 0.85;  // shadows
  for (const FitToneCurve family :
       {FitToneCurve::power, FitToneCurve::blackWhite, FitToneCurve::monotone}) {
    FitOptions options = fitAlone();
    options.toneCurve = family;
    const auto result = MatrixFit(options).fit(samples);
    EXPECT_GT(*result->greyResidual, MatrixFitResult::kGreysDisagree);
    ASSERT_FALSE(result->notes.empty());
    EXPECT_EQ(result->notes[0].rfind("the greys miss one tone curve by ", 0), 0U);
  }
}

struct Slope {
  const char* name;
  double x, y;
};

// A fifth less light on one side than on the other is found within 1 %, whatever the camera's
// colours, and apart from the colour error.
TEST(UnevenLight, FallOffOfAFifthIsFoundWithinOnePerCent) {
  const Slope slopes[] = {{"to the right", -1.0 / 9.0, 0.0},
                          {"to the left", 1.0 / 9.0, 0.0},
                          {"upward", 0.0, 5.0 / 27.0},
                          {"to a corner", 0.08, -0.0518518518518518}};
  for (const ModelSensor sensor :
       {ModelSensor::Ordinary, ModelSensor::Narrow, ModelSensor::Colorimetric})
    for (const Illum light : {illum_A, illum_D65, illum_TL84})
      for (const Slope& slope : slopes) {
        SCOPED_TRACE(std::string(modelSensorName(sensor)) + " " + illumName(light) + " " +
                     slope.name);
        MatrixFitSamples samples = seenBy(sensor, light);
        FitOptions options = fitAlone();
        const double even = MatrixFit(options).fit(samples)->figures.mean2000;
        for (std::size_t i = 0; i < kPatchCount; ++i)
          for (double& value : samples.photographs[0].rgb[i]) value *= planeAt(i, slope.x, slope.y);
        options.light = FitLight::plane;
        const auto result = MatrixFit(options).fit(samples);
        EXPECT_NEAR(result->photographs[0].lightRange, 20.0, 1.0);
        for (std::size_t i = 0; i < kPatchCount; ++i)
          EXPECT_NEAR(result->photographs[0].light[i], planeAt(i, slope.x, slope.y), 0.01);
        EXPECT_EQ(result->photographs[0].lightCoefficients.size(), 2U);
        EXPECT_NEAR(result->figures.mean2000, even, 0.05);
      }
}

TEST(UnevenLight, QuadraticFieldOfAnIdealCamera) {
  MatrixFitSamples samples = seenBy(ModelSensor::Colorimetric, illum_D50);
  std::array<double, kPatchCount> field;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const double x = (static_cast<double>(i % 6) - 2.5) / 2.5;
    const double y = (static_cast<double>(i / 6) - 1.5) / 2.5;
    field[i] = 1.0 + 0.05 * x - 0.1 * y - 0.12 * x * x + 0.06 * x * y - 0.2 * y * y;
    for (double& value : samples.photographs[0].rgb[i]) value *= field[i];
  }
  FitOptions options = fitAlone();
  options.light = FitLight::quadratic;
  options.toneCurve = FitToneCurve::power;  // together
  const auto result = MatrixFit(options).fit(samples);
  for (std::size_t i = 0; i < kPatchCount; ++i)
    EXPECT_NEAR(result->photographs[0].light[i], field[i], 2e-3);
  EXPECT_NEAR(result->curveNumbers[0], 1.0, 2e-3);
}

// A picture of an even surface in the same light takes the unevenness off, colour and size of the
// flat field regardless.
TEST(UnevenLight, FlatFieldDividesItOff) {
  MatrixFitSamples samples = seenBy(ModelSensor::Narrow, illum_TL84);
  FitOptions options = fitAlone();
  const auto even = MatrixFit(options).fit(samples);
  FitPhotograph& photograph = samples.photographs[0];
  photograph.flatField.emplace();
  for (std::size_t i = 0; i < kPatchCount; ++i)
    for (std::size_t c = 0; c < 3; ++c) {
      const double light = planeAt(i, 0.15, -0.2);
      photograph.rgb[i][c] *= light;
      (*photograph.flatField)[i][c] = light * (0.3 + 0.2 * static_cast<double>(c));
    }
  const auto divided = MatrixFit(options).fit(samples);
  EXPECT_NEAR(divided->figures.mean2000, even->figures.mean2000, 1e-6);
  EXPECT_NEAR(divided->photographs[0].lightRange, 100.0 * (1.0 - 0.73 / 1.27), 1e-9);
  for (std::size_t r = 0; r < 3; ++r)
    for (std::size_t c = 0; c < 3; ++c)
      EXPECT_NEAR(divided->matrix[r][c], even->matrix[r][c], 1e-5);
}

}  // namespace
}  // namespace greycard
