#include <gmock/gmock.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <utility>

#include "greycard/camera_gamma.h"
#include "greycard/curve_source.h"
#include "greycard/files.h"

namespace greycard {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

class NamedCurves : public testing::Test {
 protected:
  ~NamedCurves() override { std::filesystem::remove(file); }
  std::string written(const std::string& text) const {
    writeWholeFile(file, text);
    return file.string();
  }
  // Of ones with another word at 99.
  CameraGamma camera(const std::string& word, int count = 256) const {
    std::string text;
    for (int i = 0; i < count; ++i) text += (i == 99 ? word : "1") + (i % 2 ? "\r\n" : ",\t ");
    return cameraGamma(written(text));
  }
  const std::filesystem::path file = testing::TempDir() + "curve" + std::to_string(::getpid());
};

TEST_F(NamedCurves, ACamerasBitsAreThoseOfItsLargestNumber) {
  const CameraGamma srgb = cameraGamma("VGammaSRGB");
  for (const int i : {9, 255})  // IEC 61966-2-1
    EXPECT_EQ(srgb.tables[2].at(static_cast<std::size_t>(i)),
              std::lround(16383 * (1.055 * std::pow(2.0 * i / 511, 1 / 2.4) - 0.055)));
  for (const auto& [largest, bits] :
       {std::pair{255, 8}, {256, 10}, {1023, 10}, {1024, 12}, {4095, 12}, {4096, 14}, {16383, 14}})
    EXPECT_EQ(camera(std::to_string(largest)).in14Bits()[1].at(99), largest << (14 - bits));
}

TEST_F(NamedCurves, AreRefusedByEntryCountOrName) {
  for (const std::string word : {"16384", "-1", "aaaaabbbbbcccccddddde"})
    EXPECT_THAT([&] { camera(word); },
                ThrowsMessage<JobError>(HasSubstr("entry 100 of the tone curve " + quoted(file) +
                                                  " is \"" + word.substr(0, 20) + "\"; whole")));
  for (const int count : {255, 257}) EXPECT_THROW(camera("0", count), JobError) << count;
  EXPECT_THROW(cameraGamma("vnormal"), UnknownName);
  EXPECT_THAT([] { comparisonCurve("HLh"); },
              ThrowsMessage<UnknownName>(HasSubstr("curve file \"HLh\"; did you mean \"HLG\"?")));
  EXPECT_THAT(
      [&] { curveByNameOrFile(written("\nGammaTable: 1 x 2")); },
      testing::Throws<CurveFileRefused>(testing::Property(
          &CurveFileRefused::notes, testing::ElementsAre(HasSubstr(", line 2, \"x\": this")))));
  const ComparisonCurve read = comparisonCurve(written("0 9 # 12\n85"));
  EXPECT_EQ(read.curve.name, file.filename());
  EXPECT_THAT(read.notes.at(0), HasSubstr(quoted(file) + ", line 1, column 7, \"12\": numbers in"));
}

}  // namespace
}  // namespace greycard
