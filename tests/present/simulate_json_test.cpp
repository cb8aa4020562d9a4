#include <gmock/gmock.h>

#include "greycard/present/simulate.h"
#include "round_trip.h"

namespace greycard::present {
namespace {

using testing::HasSubstr;

SimulatedChart chart() {
  SimulationSettings settings;
  settings.width = 240, settings.height = 100;
  settings.light = illum_Horizon;
  settings.sensor = ModelSensor::Narrow;
  settings.seed = 1ULL << 63U;
  settings.rotationDeg = 0.1;
  return *simulateChart(settings, "a/b.png");
}

TEST(SimulateJson, SettingsThatCantBeAreNamedAndTheValueStays) {
  SimulationSettings settings;
  expectRefused(R"({"sensor": "Brode"})", settings, "there is no sensor \"Brode\"; did you mean");
  expectRefused(R"({"ligth": "A"})", settings,
                "there is no field \"ligth\"; did you mean \"light\"");
  expectRefused(R"({"seed": 9007199254740994.0})", settings, "seed must be a whole number from");
  fromJson(R"({"seed": 9007199254740992.0})", settings);
  EXPECT_EQ(settings.seed, 1ULL << 53U);
  expectRefused(R"({"width": 16.5})", settings, "width must be a whole number from");
  expectRefused(R"({"surround": [0.1, 0.2]})", settings, "surround must be a list of 3 numbers");
  SimulatedChart truth = chart();
  truth.dng = DngForm{BayerPattern::GBRG, 12};
  EXPECT_EQ(roundTrip(truth).dng->bayer, BayerPattern::GBRG);
  EXPECT_EQ(roundTrip(truth).dng->bits, 12);
  expectRefused(replaced(toJson(truth), "\"corners\"", "\"c\""), truth, "corners is missing");
}

TEST(SimulatedTruth, PatchesAreMeasuredByWhatTheDetectorTakes) {
  SimulatedChart drawn;
  drawn.settings.width = 240, drawn.settings.height = 100;  // a 2400th are 10 pixels
  for (auto& quad : drawn.truth.corners) quad = {{{0, 0}, {6, 0}, {6, 5}, {0, 5}}};
  EXPECT_DOUBLE_EQ(drawn.patchAreaOverMinimum(), 3.0);
}

}  // namespace
}  // namespace greycard::present
