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

TEST(SimulateJson, WhatIsWrittenReadsBackToTheSame) {
  const SimulatedChart truth = chart(), back = roundTrip(truth);
  EXPECT_EQ(back.file, "b.png");
  EXPECT_EQ(back.truth.corners, truth.truth.corners);
  EXPECT_EQ(back.truth.rgb, truth.truth.rgb);
  EXPECT_EQ(back.settings.light, illum_Horizon);
  EXPECT_EQ(back.settings.seed, truth.settings.seed);
  EXPECT_EQ(back.settings.whiteLevel, 255.0);  // what 0 stands for
  const SimulationSettings settings = roundTrip(truth.settings);
  EXPECT_EQ(settings.rotationDeg, 0.1);
  EXPECT_EQ(settings.sensor, ModelSensor::Narrow);

  FlatFieldSettings flat;
  flat.width = flat.height = 8;
  flat.cornerGain = 1.5;
  flat.bits = 16;
  EXPECT_EQ(roundTrip(flat).bits, 16);
  const SimulatedFlatField field = roundTrip(*simulateFlatField(flat, "f.png"));
  EXPECT_EQ(field.noiseGains()[82], 1.125);
  EXPECT_EQ(field.settings.bits, 16);
}

TEST(SimulateJson, SettingsThatCantBeAreNamedAndTheValueStays) {
  SimulationSettings settings;
  expectRefused(R"({"sensor": "Brode"})", settings, "there is no sensor \"Brode\"; did you mean");
  expectRefused(R"({"ligth": "A"})", settings,
                "there is no field \"ligth\"; did you mean \"light\"");
  expectRefused(R"({"width": 16.5})", settings, "width must be a whole number from");
  expectRefused(R"({"surround": [0.1, 0.2]})", settings, "surround must be a list of 3 numbers");
  SimulatedChart truth = chart();
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
