#include <gmock/gmock.h>

#include <fstream>

#include "run_command.h"

namespace greycard {
namespace {

using testing::HasSubstr;

using ExportOptionsOfCommands = CommandTest;

// What the files hold is checked on the library; here, that each result gets there.
TEST_F(ExportOptionsOfCommands, EveryResultHasItsFormats) {
  run({"simulate", "-o", "d65.png", "--size", "400x300"});
  run({"simulate", "-o", "a.png", "--light", "A", "--size", "400x300"});
  ASSERT_EQ(run({"ccm", "a.png", "--light", "A", "--json", "a.json"}).status, 0);
  const Outcome fit = run({"ccm", "d65.png", "--other-light", "a.json", "--camera", "Cam",
                           "--export", "dcp=cam.dcp", "--export", "rpi=cam.json"});
  ASSERT_EQ(fit.status, 0) << fit.err;
  EXPECT_THAT(fit.out, HasSubstr("Wrote \"cam.json\" (rpi): 33 points"));
  EXPECT_TRUE(read("cam.dcp").starts_with("IIRC"));
  const std::string both = read("cam.json");
  EXPECT_THAT(both, HasSubstr("\"ct\": 2856"));

  const Outcome curve =
      run({"gamma", "show", "VOutdoor", "--update", "cam.json", "--export", "cube1d=curve.cube"});
  ASSERT_EQ(curve.status, 0) << curve.err;
  EXPECT_THAT(curve.out, HasSubstr("Wrote \"cam.json\" (updated): replaced rpi.contrast"));
  EXPECT_THAT(read("curve.cube"), HasSubstr("LUT_1D_SIZE 1024"));
  const std::size_t curveAt = both.find("gamma_curve");
  EXPECT_EQ(read("cam.json").substr(0, curveAt), both.substr(0, curveAt));
  EXPECT_NE(read("cam.json"), both);

  const Outcome profile =
      run({"profile", "D65=d65.png", "A@2700=a.json", "--kelvin", "4000", "--kelvin-json", "k.json",
           "--json", "p.json", "--export", "rpi=both.json", "--export", "dcp=both.dcp"});
  ASSERT_EQ(profile.status, 0) << profile.err;
  EXPECT_THAT(profile.out,
              testing::AllOf(HasSubstr("A      2700  given"), HasSubstr("D65    6503  spectrum"),
                             HasSubstr("At 4000 K: 44.4 % A, the rest D65")));
  EXPECT_THAT(read("both.json"), testing::AllOf(HasSubstr("\"ct\": 2700"), HasSubstr("6503")));
  EXPECT_THAT(read("p.json"), HasSubstr("\"kelvin_from\": \"given\""));
  EXPECT_EQ(run({"profile", "A", "D65=d65.png"}).status, 2);
  const Outcome three =
      run({"profile", "A=a.png", "D65=d65.png", "D50=missing", "--export", "dcp=x"});
  EXPECT_EQ(three.status, 2);
  EXPECT_THAT(three.err, HasSubstr("dcp holds no more than 2 lights, not 3"));
  EXPECT_EQ(run({"profile", "D65=d65.png", "--corners", "9,9", "99,9", "99,99", "9,99"}).status, 1);

  // A fit that was made before gives what it gave then.
  run({"ccm", "a.png", "--light", "A", "--corrected", "then.png", "--export", "csv=then.csv"});
  run({"ccm", "a.png", "--from", "a.json", "--corrected", "now.png", "--export", "csv=now.csv"});
  EXPECT_EQ(read("now.png"), read("then.png"));
  EXPECT_EQ(read("now.csv"), read("then.csv"));
  const Outcome fromFit = run({"gamma", "export", "a.json", "-o", "fit.txt"});
  EXPECT_EQ(fromFit.status, 0) << fromFit.err;
  run({"lut2d", "new", "-o", "table.json"});
  run({"lut2d", "apply", "a.png", "--from", "a.json", "--lut", "table.json", "-o", "same.png"});
  EXPECT_EQ(read("same.png"), read("then.png"));

  EXPECT_EQ(run({"lut2d", "show", "table.json", "--export", "cube17=table.cube"}).status, 0);
  EXPECT_THAT(read("table.cube"), HasSubstr("LUT_3D_SIZE 17"));
}

TEST_F(ExportOptionsOfCommands, WhatCantBeWrittenLeavesNothing) {
  run({"simulate", "-o", "chart.png", "--size", "400x300"});
  std::ofstream(folder / "other.json") << "{}";
  const struct {
    std::vector<std::string> words;
    int status;
    const char* says;
  } cases[] = {
      {{"ccm", "chart.png", "--export", "cub33=x"}, 2, "did you mean \"cube33\"? Known: cube1d"},
      {{"ccm", "chart.png", "--export", "cube33"}, 2, "wants FORMAT=FILE"},
      {{"gamma", "show", "VNormal", "--export", "icc=x"}, 2, "can't be made of this"},
      {{"ccm", "chart.png", "--transform", "1", "--export", "icc=x"}, 2, "sRGB primaries"},
      {{"ccm", "chart.png", "--export", "csv=x", "--export", "rpi=x"}, 2, "the same file"},
      {{"ccm", "chart.png", "--kelvin", "3000"}, 2, "are for --export"},
      {{"ccm", "chart.png", "--light", "LED", "--export", "csv=x", "--export", "rpi=y"},
       1,
       "LED tells no colour temperature"},
      {{"ccm", "chart.png", "--export", "csv=x", "--update", "other.json"}, 1, "no list"},
      {{"ccm", "chart.png", "--export", "csv=x", "--other-light", "other.json"}, 1, "other.json"},
  };
  for (const auto& [words, status, says] : cases) {
    const Outcome outcome = run(words);
    EXPECT_EQ(outcome.status, status) << says;
    EXPECT_THAT(outcome.err, HasSubstr(says));
    EXPECT_FALSE(std::filesystem::exists(folder / "x")) << says;
  }
  EXPECT_EQ(read("other.json"), "{}");
}

}  // namespace
}  // namespace greycard
