#include <gmock/gmock.h>

#include <stdexcept>

#include "greycard/present/noise.h"
#include "round_trip.h"

namespace greycard::present {
namespace {

using testing::HasSubstr;

SigmaEstimate estimate() {
  SigmaEstimate estimate;
  estimate.file = "a/flat.png";
  estimate.width = 4000, estimate.height = 3000;
  estimate.centreNoiseSigma = 0.1F;
  estimate.lut.fill(1.0F);
  estimate.lut[163] = 1.0F / 3.0F;
  estimate.advice = {"one", "two"};
  estimate.report.highByteDropped = 1ULL << 40U;
  estimate.report.rawRatio[5] = 2.7F;
  estimate.report.residualSigma[5] = 0.1;
  estimate.report.ringPixels[5] = 12'345'678'901ULL;
  return estimate;
}

TEST(NoiseJson, FieldsThatCantBeAreNamedAndTheValueStays) {
  SigmaEstimate value = estimate();
  const std::string text = toJson(value);
  expectRefused(replaced(text, "\"lut\": [1.0,", "\"lut\": ["), value,
                "lut must be a list of 164 numbers");
  expectRefused(replaced(text, "\"width\": 4000", "\"width\": -1"), value,
                "width must be a whole number from 0 to 18446744073709551615");
  expectRefused(
      replaced(text, "\"center_noise_sigma\": 0.1", "\"center_noise_sigma\": 1e99, \"x\": 0.1"),
      value, "center_noise_sigma must be a number that fits 32 bits");
  FlatFieldOptions options;
  expectRefused(R"({"luma": "gren"})", options,
                "there is no luma \"gren\"; did you mean \"green\"?");
  expectRefused(R"({"raw": {"width": 4, "hight": 5}})", options, "there is no field \"raw.hight\"");
}

TEST(NoisePlot, ShowsTheTypicalMostOnceTheNoiseComesNear) {
  SigmaEstimate value = estimate();
  value.lut[163] = 4.0F;
  EXPECT_THAT(sigmaPlot(value), testing::Not(HasSubstr("typical most")));
  value.lut[163] = 4.01F;
  EXPECT_THAT(sigmaPlot(value), testing::AllOf(HasSubstr(">5.0, the typical most<"),
                                               HasSubstr(">5<"), testing::Not(HasSubstr(">6<"))));
  value.doubts = {"two", "three"};  // of which a user forced the first
  EXPECT_THAT(sigmaReport(value), testing::ContainsRegex(">one<.*\n*>two<.*\n*>three<"));
}

TEST(NoiseMap, ColoursGoFromTheLeastToTheMostBesideAScale) {
  SigmaEstimate value = estimate();
  EXPECT_THROW(sigmaMap(value), std::invalid_argument);  // nothing to draw
  value.width = 4, value.height = 2;
  value.localSigma = {1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F, 7.0F, 8.0F};
  const Picture map = sigmaMap(value);
  const auto dark = testing::ElementsAre(10, 10, 30), light = testing::ElementsAre(255, 250, 190);
  const auto at = [&map](int x, int y) { return std::span(map.pixel(x, y), 3); };
  EXPECT_THAT(at(0, 0), dark);
  EXPECT_THAT(at(3, 1), light);
  EXPECT_THAT(at(16, 0), light);  // the scale: the most above
  EXPECT_THAT(at(16, map.height - 1), dark);
  // Beside each of its five marks stands a number, between them nothing.
  const auto ink = [&map](int from, int to) {
    int count = 0;
    for (int y = from; y < to; ++y)
      for (int x = 4 + 12 + 20; x < map.width; ++x) count += *map.pixel(x, y) < 128 ? 1 : 0;
    return count;
  };
  const int step = (map.height - 15) / 4;
  for (int tick = 0; tick < 5; ++tick) EXPECT_GT(ink(tick * step, tick * step + 15), 20) << tick;
  for (int tick = 0; tick < 4; ++tick) EXPECT_EQ(ink(tick * step + 16, tick * step + step), 0);
  value.localSigma.pop_back();
  EXPECT_THROW(sigmaMap(value), std::invalid_argument);
}

}  // namespace
}  // namespace greycard::present
