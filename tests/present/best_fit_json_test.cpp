#include "greycard/present/best_fit.h"

#include <gmock/gmock.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "greycard/chart_simulator.h"
#include "greycard/diagnostics.h"
#include "greycard/present/chart.h"
#include "round_trip.h"

namespace greycard::present {
namespace {

using testing::HasSubstr;

TEST(BestFitJson, ResultsReadBackWhole) {
  setErrorChannel({});
  ChartSimulator simulator;
  simulator.m_settings.width = 640;
  simulator.m_settings.height = 480;
  simulator.m_settings.shotNoise = 0.01;
  simulator.Simulate();
  const std::vector<ChartPhotograph> photographs = {{simulator.m_picture, "a.png", 1.0, {}},
                                                    {simulator.m_picture, "b.png", 2.0, {}}};
  BestFitOptions options;
  options.best.toneCurve = FitToneCurve::powerOffset;
  options.best.light = FitLight::plane;
  options.best.tradeOffSteps = 3;
  options.best.rowNoiseLimits[2] = 1.5;
  const BestChartFit fit = *fitChartBest(photographs, options), again = roundTrip(fit);
  EXPECT_EQ(again.shown(1).matrix, fit.best.matrix);
  EXPECT_EQ(again.shown(1).after.cie94.patch, fit.shown(1).after.cie94.patch);
  EXPECT_EQ(again.lightRgb(1), fit.lightRgb(1));
  EXPECT_EQ(again.options.rowNoiseLimits, fit.options.rowNoiseLimits);
  EXPECT_EQ(correctedPhotograph(simulator.m_picture, again).samples,
            correctedPhotograph(simulator.m_picture, fit).samples);
  EXPECT_EQ(fitReport(again, simulator.m_picture), fitReport(fit, simulator.m_picture));
  EXPECT_EQ(roundTrip(fit.best).uncertainty->dE2000, fit.best.uncertainty->dE2000);

  ChartFit toned = fit.shown(0);
  toned.fit.m_chromaChangeWanted = 0.123;
  toned.fit.m_chromaChange = -0.0456;
  EXPECT_NE(fitReport(toned, simulator.m_picture).find("wanted 12.3 %, reached -4.6 %."),
            std::string::npos);

  MatrixFitResult bad = fit.best, kept = fit.best;
  bad.uncertainty->lightRange.pop_back();
  expectRefused(toJson(bad), kept, "standard_errors must be of as many photographs");
  bad.toneCurve = {0.5};
  expectRefused(toJson(bad), kept, "tone_curve must be a list of two numbers or more");

  auto json = nlohmann::json::parse(toJson(fit));
  json["stated"].erase(1);
  BestChartFit other = fit;
  expectRefused(json.dump(), other, "stated must be a list of a fit for each photograph");
}

TEST(BestFitJson, OptionsKeepTheirDefaultsAndNameWhatIsWrong) {
  BestFitOptions options;
  fromJson(R"({"light": "A", "best": {"noise_limits": [null, 2, null], "norm": 8}})", options);
  EXPECT_EQ(options.chart.light, illum_A);
  EXPECT_EQ(options.best.norm, FitOptions::kSoftMaximum);
  EXPECT_EQ(options.best.rowNoiseLimits[1], 2.0);
  EXPECT_TRUE(std::isinf(options.best.rowNoiseLimits[0]));
  EXPECT_EQ(options.best.entries, FitEntries::nine);
  EXPECT_EQ(roundTrip(options).best.rowNoiseLimits, options.best.rowNoiseLimits);
  expectRefused(R"({"best": {"tone_curve": "pover"}})", options,
                "there is no tone curve \"pover\"; did you mean \"power\"?");
  expectRefused(R"({"best": {"weights": [1, 2]}})", options,
                "weights must be a list of 24 numbers");
}

}  // namespace
}  // namespace greycard::present
