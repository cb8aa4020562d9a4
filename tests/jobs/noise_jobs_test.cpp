#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

#include "greycard/files.h"
#include "greycard/jobs/estimate_sigma.h"
#include "greycard/jobs/read_flat_field.h"

namespace greycard {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class NoiseJobs : public testing::Test {
 protected:
  NoiseJobs() {
    auto name = (std::filesystem::temp_directory_path() / "greycard-jobs-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
    folder = name;
  }
  ~NoiseJobs() override { std::filesystem::remove_all(folder); }
  FlatField read(const std::string& bytes, const char* name, const FlatFieldOptions& options = {}) {
    writeWholeFile(folder / name, bytes);
    return readFlatField(folder / name, options);
  }
  std::filesystem::path folder;
};

TEST_F(NoiseJobs, AFlatFieldIsTheSameHoweverItIsStored) {
  using namespace std::string_literals;
  const struct {
    const char* name;
    std::string bytes;
    FlatFieldOptions options;
  } cases[] = {
      {"grey.pgm", "P5 3 2 255\n\1\2\3\4\5\xff", {}},
      {"8.raw", "\1\2\3\4\5\xff", {{}, BareSamples{3, 2, 8}}},
      {"16.raw", "\1\0\2\0\3\0\4\0\5\0\xff\0"s, {{}, BareSamples{3, 2, 16}}},
      {"green.ppm", "P3 3 2 255\n9 1 0 9 2 0 9 3 0 9 4 0 9 5 0 9 255 0\n", {LumaChoice::Green, {}}},
      // 0.299 R + 0.587 G + 0.114 B: 1.497 + 0.114 = 1.6 and the like
      {"luma.ppm",
       "P3 3 2 255\n1 1 1 2 2 2 9 0 3 0 6 4 0 9 0 255 255 255\n",
       {LumaChoice::Rec601, {}}},
  };
  for (const auto& [name, bytes, options] : cases) {
    SCOPED_TRACE(name);
    const FlatField field = read(bytes, name, options);
    EXPECT_EQ(field.width, 3u);
    EXPECT_EQ(field.height, 2u);
    EXPECT_THAT(field.samples, ElementsAre(1, 2, 3, 4, 5, 255));
  }
  EXPECT_EQ(read("\1\2", "one.raw", {{}, BareSamples{1, 1, 16}}).samples[0],
            513);  // low byte first
  EXPECT_TRUE(flatField(Picture(1, 1, 1, 8), {}, "a.JPG").isJpeg);
}

TEST_F(NoiseJobs, LevelsBringSamplesToEightBits) {
  const std::string bytes("\x63\0\0\2\xff\3", 6);  // 99, 512, 1023
  const BareSamples raw{3, 1, 16};
  const std::tuple<FlatFieldOptions, double, std::vector<std::uint16_t>> cases[] = {
      {{{}, raw, {}, {}, 10}, 1023.0 / 255.0, {25, 128, 255}},
      {{{}, raw, 100.0, 610.0, 8}, 2.0, {0, 206, 255}},
      {{{}, raw, -255.0}, 2.0, {177, 255, 255}}};
  for (const auto& [options, fileCodes, samples] : cases) {
    EXPECT_EQ(read(bytes, "levels.raw", options).fileCodes, fileCodes);
    EXPECT_EQ(read(bytes, "levels.raw", options).samples, samples);
  }
  for (const auto& [black, bits] : {std::pair(255.0, 8), {-HUGE_VAL, 8}, {0.0, 7}, {0.0, 17}})
    EXPECT_THROW(read(bytes, "levels.raw", {{}, raw, black, {}, bits}), std::invalid_argument);
}

TEST_F(NoiseJobs, FilesThatAreNoFlatFieldsAreRefused) {
  EXPECT_THAT([&] { read("P3 1 1 255\n1 2 3\n", "colour.ppm"); },
              testing::ThrowsMessage<ColourFlatField>(HasSubstr("is a colour picture")));
  const BareSamples wrong[] = {{3, 3, 8}, {2, 2, 8}, {0, 5, 8}, {5, 0, 8}, {3, 1, 16}};
  for (const BareSamples& raw : wrong)
    EXPECT_THAT(
        [&] {
          read("\1\2\3\4\5", "5.raw", {{}, raw});
        },
        testing::ThrowsMessage<JobError>(HasSubstr("holds 5 bytes, which is not ")));
  EXPECT_THROW(read("\1", "1.raw", {{}, BareSamples{1, 1, 12}}), std::invalid_argument);
  EXPECT_THROW(flatField({}), std::invalid_argument);
  EXPECT_THROW(estimateSigma({}), std::invalid_argument);
}

TEST_F(NoiseJobs, AdviceSaysWhatTheFieldIsNotFitFor) {
  // Samples that alternate by 2 around the level; every `each`-th is `other` instead.
  const auto alternate = [](FlatField& field, int level, int other, std::size_t each) {
    for (std::size_t i = 0; i < field.samples.size(); ++i)
      field.samples[i] = static_cast<std::uint16_t>(
          i % each == 0 ? other : level + ((i + i / 600) % 2 == 0 ? -2 : 2));
  };
  const struct {
    std::function<void(FlatField&)> change;
    std::vector<const char*> says;
  } cases[] = {
      {[](FlatField&) {}, {}},
      {[](FlatField& f) { f.isJpeg = true; }, {"a JPEG file's compression"}},
      {[](FlatField& f) { f.samples[7] += 256; }, {"1 of 360000 samples are above 255"}},
      {[&](FlatField& f) { alternate(f, 252, 255, 1000); }, {}},  // a thousandth is little
      {[&](FlatField& f) { alternate(f, 252, 255, 990); },
       {"have been clamped to 1.0",
        "0.1 % of the samples are at 255"}},  // the table's message first
      {[&](FlatField& f) { alternate(f, 3, 0, 500); }, {"0.2 % of the samples are at 0"}},
      {[](FlatField& f) { f.height = 599; }, {"narrower or lower than 600 pixels"}},
      {[](FlatField& f) { std::ranges::fill(f.samples, 128); }, {"below half a code value"}},
      {[](FlatField& f) {  // one of four: the root of 3/16
         for (std::size_t i = 0; i < f.samples.size(); ++i) f.samples[i] = i % 4 == 0 ? 127 : 128;
       },
       {"below half a code value"}},
  };
  for (const auto& [change, says] : cases) {
    std::vector<testing::Matcher<std::string>> expected;
    for (const char* words : says) expected.emplace_back(HasSubstr(words));
    FlatField field{"even.png", 600, 600, std::vector<std::uint16_t>(600 * 600), false};
    alternate(field, 128, 126, field.samples.size());
    change(field);
    EXPECT_THAT(estimateSigma(field).advice, testing::ElementsAreArray(expected));
  }
  // A picture of something: stripes, which no fall-off explains; and their measure by hand.
  FlatField striped{"stripes.png", 600, 600, std::vector<std::uint16_t>(360000), false};
  for (std::size_t i = 0; i < striped.samples.size(); ++i)
    striped.samples[i] = i % 600 / 50 % 2 == 0 ? 120 : 80;
  const SigmaEstimate stripes = estimateSigma(striped);
  EXPECT_NEAR(stripes.report.unflatness.value_or(0.0), 0.2, 0.002);
  EXPECT_THAT(stripes.doubts, testing::ElementsAre(testing::ContainsRegex(
                                  "not flat: .* uneven by 20.0 % .root mean square; 5 % at most")));
  SigmaEstimate doubtful;
  EXPECT_NO_THROW(doubtful.require());
  doubtful.doubts = {"one", "two"};
  EXPECT_THAT([&] { doubtful.require(); },
              testing::ThrowsMessage<DoubtfulFlatField>(
                  "this is no flat field to make a noise table of: one; two"));
  EXPECT_THROW(stripes.require(), DoubtfulFlatField);
  FlatField cut{"cut.png", 600, 600, std::vector<std::uint16_t>(360000, 128), false};
  alternate(cut, 128, 255, 99);
  EXPECT_THAT(estimateSigma(cut).doubts, testing::ElementsAre(HasSubstr("cut off at white")));
  alternate(cut, 128, 0, 99);
  EXPECT_THAT(estimateSigma(cut).doubts,
              testing::ElementsAre("1.0 % of the samples are cut off at black"));
  alternate(cut, 128, 0, 101);
  EXPECT_NO_THROW(estimateSigma(cut).require());
  FlatField dark = {"dark.png", 600, 600, std::vector<std::uint16_t>(360000, 100), false};
  for (std::size_t i = 0; i < dark.samples.size(); ++i) {
    const bool outer = i / 600 < 60 || i / 600 >= 540 || i % 600 < 60 || i % 600 >= 540;
    if (outer) dark.samples[i] = 65;
  }
  const SigmaEstimate estimate = estimateSigma(dark, true);
  EXPECT_THAT(estimate.advice, testing::Contains(HasSubstr("the corners are 35 % darker")));
  EXPECT_EQ(estimate.localSigma.size(), dark.samples.size());
  std::ranges::replace(dark.samples, 65, 72);
  EXPECT_THAT(estimateSigma(dark).advice, testing::Each(testing::Not(HasSubstr("darker"))));
}

}  // namespace
}  // namespace greycard
