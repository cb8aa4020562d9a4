// Real photographs with measured patch centres: a folder of NAME.jpg and NAME.json named by the
// variable GREYCARD_PHOTOS. Without it these tests are skipped.

#include <gtest/gtest.h>

#include <cstdlib>

#include "corpus/corpus_case.h"
#include "greycard/diagnostics.h"
#include "greycard/mcc_detector.h"

namespace greycard {
namespace {

TEST(Photos, EveryChartIsFoundWithoutADoubt) {
  const char* folder = std::getenv("GREYCARD_PHOTOS");
  if (!folder || !*folder) GTEST_SKIP() << "GREYCARD_PHOTOS names no folder of photographs";
  setErrorChannel({});
  const auto photos = corpusPhotos();
  ASSERT_FALSE(photos.empty()) << folder << " holds no photographs with their JSON files";
  for (const CorpusCase& photo : photos) {
    SCOPED_TRACE(photo.name);
    const ChartDetection detection = MCCDetector().detect(photo.picture);
    EXPECT_TRUE(detection.trustworthy()) << detection.reason;
    EXPECT_LT(worstError(photo, detection.placement.centres), 1.0 / 3.0);
  }
}

}  // namespace
}  // namespace greycard
