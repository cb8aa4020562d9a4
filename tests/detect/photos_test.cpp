// Real photographs with measured patch centres: a folder of NAME.jpg and NAME.json named by the
// variable GREYCARD_PHOTOS. Without it these tests are skipped.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "greycard/diagnostics.h"
#include "greycard/mcc_detector.h"

namespace greycard {
namespace {

// On these the grid hung on the box of the accepted patches is known to fit.
const std::set<std::string> kFits{"a3_01",   "beans_9507",    "cabinet_target", "lightbox_chart",
                                  "mini_01", "pair_lightbox", "tobacco_3_crop"};

double worstDistance(const nlohmann::json& centres, const ChartDetection& detection) {
  double worst = 0.0;
  for (std::size_t i = 0; i < detection.points.size(); ++i)
    worst = std::max(worst, std::hypot(centres[i][0].get<double>() - detection.points[i].x,
                                       centres[i][1].get<double>() - detection.points[i].y));
  return worst;
}

TEST(Photos, ChartsAreFoundOrDoubted) {
  const char* folder = std::getenv("GREYCARD_PHOTOS");
  if (!folder || !*folder) GTEST_SKIP() << "GREYCARD_PHOTOS names no folder of photographs";
  setErrorChannel({});
  int seen = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".json") continue;
    const auto name = entry.path().stem().string();
    SCOPED_TRACE(name);
    const auto truth = nlohmann::json::parse(std::ifstream(entry.path()));
    const auto detection =
        MCCDetector().detectFile(entry.path().parent_path() / truth.at("file").get<std::string>());
    double worst = std::numeric_limits<double>::infinity();
    for (const char* key : {"centres", "other_centres"})
      if (truth.contains(key)) worst = std::min(worst, worstDistance(truth[key], detection));
    const bool right = detection.found() && worst <= truth.at("pitch_px").get<double>() / 3.0;
    seen += static_cast<int>(kFits.count(name));
    if (kFits.count(name)) {
      EXPECT_TRUE(right) << "worst " << worst << " pixels off; " << detection.reason;
      EXPECT_TRUE(detection.trustworthy()) << (detection.doubts.empty() ? "" : detection.doubts[0]);
    } else {
      EXPECT_TRUE(right || !detection.trustworthy()) << "a wrong fit, and no doubt";
    }
  }
  EXPECT_GT(seen, 0) << folder << " holds none of the known photographs";
}

}  // namespace
}  // namespace greycard
