#include "greycard/batch/settings.h"

#include <gmock/gmock.h>

#include <span>
#include <stdexcept>
#include <vector>

#include "content_hash.h"
#include "glob.h"
#include "greycard/errors.h"
#include "scratch_folder.h"

namespace greycard::batch {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(Pattern, FitsNamesAsAShellWould) {
  struct Case {
    const char *pattern, *name;
    bool fits;
  };
  for (const Case& c :
       {Case{"*_D65_*", "shelf_D65_3.png", true}, Case{"*_D65_*", "shelf_d65_3.png", false},
        Case{"*_D65_*", "_D65_", true}, Case{"*", "", true}, Case{"", "a", false},
        Case{"a?c", "abc", true}, Case{"a?c", "ac", false}, Case{"[a-c]x", "bx", true},
        Case{"[!a-c]x", "bx", false}, Case{"[!a-c]x", "dx", true}, Case{"[]x]", "]", true},
        Case{"[ab", "[ab", true}, Case{"[a-]", "-", true}, Case{"*.jp*g", "a.jpg.jpeg", true},
        Case{"a*b*c", "aXbYbZ", false}, Case{"*a", "baaab", false}, Case{"a**", "a", true}})
    EXPECT_EQ(fits(c.pattern, c.name), c.fits) << c.pattern << " and " << c.name;
}

Settings settingsFrom(const std::string& text) {
  Settings settings;
  fromJson(text, settings);
  return settings;
}

TEST(Settings, LaterOverridesWinFieldByFieldAndNullIsTheDefault) {
  const Settings settings = settingsFrom(R"({
    "options": {"light": "D50", "noise_rate": 0.5, "saturation": 1.1},
    "overrides": [{"pattern": "*_A_*", "options": {"light": "A", "saturation": null}},
                  {"pattern": "*_A_2*", "options": {"noise_rate": 0.25, "dump": "8x6:10:RGGB"}}]})");
  const std::string other = resolved(settings, "A/x.png"), one = resolved(settings, "x_A_1.png"),
                    two = resolved(settings, "x_A_2.png");
  EXPECT_THAT(other, testing::AllOf(HasSubstr("\"light\": \"D50\""), HasSubstr("saturation")));
  EXPECT_THAT(one, testing::AllOf(HasSubstr("\"light\": \"A\""), Not(HasSubstr("saturation")),
                                  HasSubstr("\"noise_rate\": 0.5"), Not(HasSubstr("dump"))));
  EXPECT_THAT(two, testing::AllOf(HasSubstr("\"light\": \"A\""), HasSubstr("8x6:10:RGGB"),
                                  HasSubstr("\"noise_rate\": 0.25")));
  EXPECT_EQ(toJson(settingsFrom(toJson(settings))), toJson(settings));
  const Settings judging =
      settingsFrom(R"({"job": "evaluate", "outliers": {"factor": 2.5, "floor": 0.25}})");
  const Settings again = settingsFrom(toJson(judging));
  EXPECT_EQ(again.job, Job::evaluate);
  EXPECT_EQ(again.outliers.factor, 2.5);
  EXPECT_EQ(again.outliers.floor, 0.25);
  EXPECT_FALSE(jobFromName("judge"));
}

TEST(Settings, WhatIsWrongIsToldWithItsPlace) {
  struct Case {
    std::string text, told;
  };
  for (const Case& c :
       {Case{"", "empty"}, Case{"[]", "one object"}, Case{"{\"job\": \"cmm\"}", "\"ccm\""},
        Case{"{\"jobs\": 3}", "\"job\""}, Case{"{\"options\": 3}", "options must be an object"},
        Case{"{\"options\": {\"ligth\": \"A\"}}", "options: there is no field \"ligth\""},
        Case{"{\"options\": {\"light\": \"B\"}}", "options: "},
        Case{"{\"options\": {\"noise_rate\": nan}}", "line 1, column 29"},
        Case{"{\"options\": {\"noise_rate\": 1e999}}", "too large"},
        Case{"{\"options\": {\"dump\": \"8x6\"}}", "options: dump: "},
        Case{"{\"overrides\": {}}", "overrides must be a list"},
        Case{"{\"overrides\": [{\"options\": {}}]}", "overrides[0].pattern is missing"},
        Case{"{\"overrides\": [{\"pattern\": \"\"}]}", "overrides[0].pattern must be"},
        Case{"{\"overrides\": [{\"pattern\": \"a\"}, {\"pattern\": \"b\", \"options\": "
             "{\"transform\": \"x\"}}]}",
             "overrides[1].options: transform must be a number"},
        Case{"{\"overrides\": [{\"pattern\": \"a\", \"options\": {\"light\": 1}}]}",
             "overrides[0].options: light must be"},
        Case{"{\"overrides\": [{\"pattern\": \"a\", \"light\": \"A\"}]}", "overrides[0].light"},
        Case{"{\"outliers\": {\"factor\": 0}}", "outliers.factor must be"},
        Case{"{\"outliers\": {\"floor\": -1}}", "outliers.floor must be"},
        Case{"{\"options\": " + std::string(100000, '['), "levels"}}) {
    Settings settings;
    const std::string before = toJson(settings);
    try {
      fromJson(c.text, settings);
      ADD_FAILURE() << "taken: " << c.text.substr(0, 100);
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), HasSubstr(c.told));
    }
    EXPECT_EQ(toJson(settings), before);
  }
}

// Whatever is in the photographs.
TEST(Settings, OptionsThatNoPhotographCouldBeDoneWithAreRefusedBeforeAnyIs) {
  struct Case {
    const char *job, *options, *why;
  };
  const std::vector<File> files{
      {"b.png", "b.png"}, {"c.png", "c.png"}, {"shelf_A_1.png", "shelf_A_1.png"}};
  for (const Case& c :
       {Case{"ccm", R"("noise_rate": -5)", "m_fNoiseRate is -5; it must be 0 to 1"},
        Case{"ccm", R"("exposure": "number", "exposure_gain": -3)", "m_exposureGain is -3"},
        Case{"ccm", R"("gamma": "Nothing")", "no tone curve or file \"Nothing\""},
        Case{"ccm", R"("white_patches": [99])", "patches 19 to 22, not 99"},
        Case{"ccm", R"("transform": 3)", "transform 3"},
        Case{"ccm", R"("reference_lab": "missing.txt")", "missing.txt"},
        Case{"chart", R"("sampled_share": 5)", "sample, 5, must be above 0"},
        Case{"chart", R"("regions": "missing.csv")", "missing.csv"},
        Case{"chart", R"("corners": [[0,0],[1,1],[2,2],[3,3]])", "not those of a convex"},
        Case{"chart", R"("black": 300, "white": 200)", "the white level must be above"},
        Case{"evaluate", R"("scale": -1)", "the scale must be above 0, not -1"}}) {
    const Settings settings =
        settingsFrom(std::string(R"({"job": ")") + c.job +
                     R"(", "overrides": [{"pattern": "*_A_*", "options": {)" + c.options + "}}]}");
    try {
      checkSettings(settings, files);
      ADD_FAILURE() << c.options << " was taken";
    } catch (const JobError& error) {
      EXPECT_THAT(error.what(), testing::AllOf(HasSubstr("\"shelf_A_1.png\""), HasSubstr(c.why)));
    }
    EXPECT_NO_THROW(checkSettings(settings, std::span(files).first(2)));
  }
}

class SettingsHash : public ScratchFolder {};

TEST_F(SettingsHash, TextsDontRunIntoEachOther) {
  Hash a, b;
  a.addText("ab");
  a.addText("c");
  b.addText("a");
  b.addText("bc");
  EXPECT_NE(a.digits(), b.digits());
}

TEST_F(SettingsHash, ChangesWithWhatBearsOnThePhotographAlone) {
  const std::string lab = write("lab.txt", "one").string();
  const std::string base = R"({"options": {"reference_lab": ")" + lab + R"("}, "overrides": [)";
  const auto hash = [&](const std::string& overrides, const char* photo) {
    return settingsHash(settingsFrom(base + overrides + "]}"), photo);
  };
  const std::string first = hash("", "a.png");
  EXPECT_EQ(first.size(), 32U);
  EXPECT_EQ(hash(R"({"pattern": "b*", "options": {"light": "A"}})", "a.png"), first);
  EXPECT_EQ(hash(R"({"pattern": "*", "options": {"light": "D65"}})", "a.png"), first);
  EXPECT_NE(hash(R"({"pattern": "a*", "options": {"light": "A"}})", "a.png"), first);
  EXPECT_NE(hash("", "b/a.png"), first) << "the result tells the photograph's path";
  write("lab.txt", "two");
  EXPECT_NE(hash("", "a.png"), first) << "the reference colours have changed";
}

TEST_F(SettingsHash, TellsWhichOfTheNamedFilesIsThere) {
  const auto lab = folder / "lab.txt", regions = folder / "regions.csv";
  const Settings settings = settingsFrom(R"({"options": {"reference_lab": ")" + lab.string() +
                                         R"(", "regions": ")" + regions.string() + "\"}}");
  write("lab.txt", "one");
  const std::string first = settingsHash(settings, "a.png");
  std::filesystem::rename(lab, regions);
  EXPECT_NE(settingsHash(settings, "a.png"), first);
}

TEST_F(SettingsHash, AFileOfSettingsIsNamedInMessages) {
  const auto file = write("s.json", "{\"job\": 1}");
  try {
    readSettings(file);
    FAIL();
  } catch (const JobError& error) {
    EXPECT_THAT(error.what(), testing::AllOf(HasSubstr("s.json"), HasSubstr("job must be")));
  }
}

}  // namespace
}  // namespace greycard::batch
