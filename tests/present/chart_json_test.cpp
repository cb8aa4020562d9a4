#include "greycard/present/chart.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "greycard/chart_simulator.h"
#include "greycard/diagnostics.h"
#include "round_trip.h"

namespace greycard::present {
namespace {

using testing::HasSubstr;

Picture chartPicture() {
  setErrorChannel({});
  ChartSimulator simulator;
  simulator.m_settings.width = 640;
  simulator.m_settings.height = 480;
  simulator.m_settings.shotNoise = 0.01;
  simulator.m_settings.rotationDeg = 10.0;
  simulator.Simulate();
  return simulator.m_picture;
}

// A refused search keeps its reason and what was seen.
TEST(ChartJson, RefusedSearchesReadBack) {
  const ChartSearch refused = searchChart(shrinkPicture(chartPicture(), 30));
  ASSERT_FALSE(refused.chart.found());
  EXPECT_THAT(toJson(refused), HasSubstr("\"found\": false"));
  EXPECT_EQ(roundTrip(refused).chart.detection->reason, refused.chart.detection->reason);
  EXPECT_THROW(roundTrip(refused).require(), NoChart);
}

TEST(ChartJson, AllChartsReadBack) {
  Photograph photograph;
  photograph.picture = chartPicture();
  const FoundCharts found = searchCharts(photograph);
  ASSERT_EQ(found.charts.size(), 1U);
  const PatchRegion part = surroundings(roundTrip(found).charts[0]);
  EXPECT_EQ(part, surroundings(found.charts[0]));
  LocateOptions options;
  options.within = part;
  EXPECT_EQ(roundTrip(options).within, part);
  EXPECT_EQ(searchCharts(photograph, options).charts.size(), 1U);
}

TEST(ChartJson, WhatIsNotFiniteIsNullAndReadsBackAsNotANumber) {
  ChartEvaluation evaluation;
  evaluation.measuredRgb[2][1] = std::numeric_limits<double>::infinity();
  EXPECT_THAT(toJson(evaluation), HasSubstr("\"rgb\": [0.0,null,0.0]"));
  EXPECT_TRUE(std::isnan(roundTrip(evaluation).measuredRgb[2][1]));
  evaluation.capture.emplace().iso = 100.0;
  EXPECT_EQ(roundTrip(evaluation).capture->iso, 100.0);
}

TEST(ChartJson, OptionsKeepTheirDefaultsWhereNothingIsSaid) {
  ChartFitOptions options;
  options.light = illum_D50;
  fromJson(R"({"gamma": "VNormal", "black": 64, "light": "a", "delta_e": "cie76"})", options);
  EXPECT_EQ(options.gamma, "VNormal");
  EXPECT_EQ(options.locate.samples.blackLevel, 64.0);
  EXPECT_EQ(options.light, illum_A);
  EXPECT_EQ(options.formula, FitFormula::CIE76);
  EXPECT_EQ(options.whitePatches, (std::vector{20, 21, 22}));
  EXPECT_EQ(roundTrip(options).gamma, "VNormal");
}

TEST(ChartJson, RefusalsNameTheFieldAndLeaveTheValue) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "the file is empty"},
      {"[1]", "it must hold one object"},
      {"{\"gamma\": 1,}", "it is not JSON from line 1, column 13 on"},
      {R"({"gama": "VNormal"})", "there is no field \"gama\"; did you mean \"gamma\"?"},
      {R"({"light": "D66"})", "there is no light \"D66\"; did you mean \"D65\"?"},
      {R"({"gamma": 1})", "gamma must be a text"},
      {R"({"force": 1})", "force must be true or false"},
      {R"({"sat": [1, 1, 1]})", "sat must be a list of 4 numbers"},
      {R"({"hue": [0, null, 0]})", "hue[1] must be a number"},
      {R"({"white_patches": [20, 1.5]})", "white_patches[1] must be a whole number from "},
      {R"({"noise_rate": 1e999})", "it holds a number that is too large"}};
  for (const auto& [text, sentence] : cases) {
    SCOPED_TRACE(text);
    ChartFitOptions options;
    options.gamma = "kept";
    expectRefused(text, options, sentence);
  }
  ChartFit fit;
  EXPECT_THROW(fromJson(R"({"photo": "a"})", fit), std::invalid_argument);
}

}  // namespace
}  // namespace greycard::present
