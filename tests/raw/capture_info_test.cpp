#include "greycard/capture_info.h"

#include <gmock/gmock.h>

namespace greycard {
namespace {

using testing::ElementsAre;
using testing::Pair;

TEST(CaptureRows, TellWhatIsKnown) {
  CaptureInfo info;
  info.mosaic = "linear";
  info.sensorWidth = 640;
  info.sensorHeight = 480;
  info.whiteLevel = {1023, 1023, 1023};
  EXPECT_THAT(captureRows(info), ElementsAre(Pair("Sensor", "640 x 480 samples, linear"),
                                             Pair("Levels", "black 0, white 1023")));
  info.camera = "Maker Model";
  info.orientation = 6;
  info.iso = 102400.0;
  info.asShotGains = {2.0, 1.0, 1.56789};
  info.blackLevel = {64, 64, 66.1234567};
  info.whiteLevel = {1023, 1000, 1023};
  EXPECT_THAT(
      captureRows(info),
      ElementsAre(Pair("Camera", "Maker Model"),
                  Pair("Sensor", "640 x 480 samples, linear, orientation mark 6"),
                  Pair("Exposure", "ISO 102400"), Pair("As shot gains", "2.0000, 1.0000, 1.5679"),
                  Pair("Levels", "black 64, 64, 66.1235, white 1023, 1000, 1023")));
}

TEST(CaptureRows, TellShortExposuresAsFractions) {
  const std::pair<double, const char*> cases[] = {
      {0.02, "1/50 s"}, {0.25, "1/4 s"}, {0.3, "0.3 s"}, {1.25, "1.25 s"}, {30.0, "30 s"}};
  for (const auto& [seconds, text] : cases) {
    CaptureInfo info;
    info.exposureSeconds = seconds;
    EXPECT_THAT(captureRows(info), testing::Contains(Pair("Exposure", text)));
    info.iso = 100.0;
    EXPECT_THAT(captureRows(info),
                testing::Contains(Pair("Exposure", std::string("ISO 100, ") + text)));
  }
}

}  // namespace
}  // namespace greycard
