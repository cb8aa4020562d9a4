// What a fit is made of: its model, the curve from the greys, what is refused before it begins.

#include "fit_model.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <utility>
#include <vector>

#include "fit_check.h"
#include "grey_curve.h"
#include "known_chart.h"
#include "srgb_transfer.h"

namespace greycard {
namespace {

using namespace fixture;

// Of three greys the one between misses the straight line through the others.
TEST(GreyCurve, TellsByHowMuchThreeGreysMissALine) {
  const Vector3 encoded{0.3, 0.5, 0.8}, wanted{0.2, 0.55, 0.9};
  std::vector<GreySample> greys;
  for (std::size_t i = 0; i < 3; ++i) {
    const double measured = sRGBDecode(encoded[i]), target = sRGBDecode(wanted[i]);
    greys.push_back({0, {measured, measured, measured}, {target, target, target}});
  }
  const auto lightness = [](double value) { return labOf({value, value, value})[0]; };
  const double onLine = 0.2 + 0.7 * (0.5 - 0.3) / (0.8 - 0.3);
  const GreyCurve curve = greyCurve(greys, FitToneCurve::monotone);
  EXPECT_NEAR(curve.residual,
              std::fabs(lightness(sRGBDecode(onLine)) - lightness(sRGBDecode(0.55))), 0.01);
}

TEST(FitModel, TheSmallestGainIsOneWhereGainsAndExposuresAreFree) {
  FitState state;
  state.gains = {3.0, 2.0, 4.0};
  state.exposure = {0.5, 0.25};
  for (const auto& [gains, exposure] : {std::pair{true, true}, {true, false}, {false, true}}) {
    const FitUnknowns unknowns({.gains = gains, .exposure = exposure}, 2);
    const FitState unit = withUnitGain(unknowns, state);
    const bool both = gains && exposure;
    EXPECT_EQ(unit.gains, both ? (Vector3{1.5, 1.0, 2.0}) : state.gains);
    EXPECT_EQ(unit.exposure, both ? (std::vector{1.0, 0.5}) : state.exposure);
  }
}

TEST(FitModel, CurvesRiseWithinTheirLimits) {
  const struct {
    FitToneCurve family;
    double first, second;
    bool good;
  } cases[] = {{FitToneCurve::power, 0.1001, 0.0, true},
               {FitToneCurve::power, 0.0999, 0.0, false},
               {FitToneCurve::power, 9.999, 0.0, true},
               {FitToneCurve::power, 10.001, 0.0, false},
               {FitToneCurve::powerOffset, 1.0, -0.949, true},
               {FitToneCurve::powerOffset, 1.0, -0.951, false},
               {FitToneCurve::blackWhite, 0.1, 0.151, true},
               {FitToneCurve::blackWhite, 0.1, 0.149, false},
               {FitToneCurve::blackWhite, -0.899, 1.0, true},
               {FitToneCurve::blackWhite, -0.901, 1.0, false},
               {FitToneCurve::blackWhite, 0.0, 3.999, true},
               {FitToneCurve::blackWhite, 0.0, 4.001, false},
               {FitToneCurve::none, 99.0, 99.0, true}};
  for (const auto& c : cases)
    EXPECT_EQ(isCurve({c.family, {c.first, c.second}}), c.good) << c.first;
}

TEST(FitSamples, AreOfUpTo64Photographs) {
  MatrixFitSamples samples = seenBy(ModelSensor::Ordinary, illum_D65);
  samples.photographs.resize(64, samples.photographs.front());
  EXPECT_NO_THROW(checkFitSamples(samples, fitAlone()));
  samples.photographs.push_back(samples.photographs.front());
  EXPECT_THROW(checkFitSamples(samples, fitAlone()), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
