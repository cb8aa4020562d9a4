// From a sensor's samples to a corrected picture.

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "run_command.h"

namespace greycard {
namespace {

using testing::HasSubstr;

TEST_F(CommandTest, RawFilesAreWrittenTakenEverywhereAndApplied) {
  const auto rendered =
      run({"simulate", "-o", "a.dng", "--bayer", "gbrg", "--bits", "12", "--black", "64", "--light",
           "A", "--size", "1200x900", "--truth", "truth.json"});
  ASSERT_EQ(rendered.status, 0) << rendered.err;
  const auto valid = runProgram("exiftool", folder, {"-s3", "-validate", "-DNGVersion", "a.dng"});
  EXPECT_EQ(valid.out, "OK\n1.4.0.0\n");

  const auto info = nlohmann::json::parse(run({"info", "a.dng", "--json", "-"}).out);
  EXPECT_EQ(info["capture"]["black_level"], nlohmann::json({64.0, 64.0, 64.0}));
  EXPECT_THAT(run({"info", "a.dng", "--white", "4000"}).out, HasSubstr("black 64, white 4000"));

  ASSERT_EQ(run({"ccm", "a.dng", "--light", "A", "--json", "fit.json", "--corrected", "direct.png"})
                .status,
            0);
  EXPECT_EQ(nlohmann::json::parse(read("fit.json"))["capture"]["mosaic"], "GBRG");
  EXPECT_EQ(run({"ccm", "a.dng", "--light", "A", "--fit", "best", "--also", "a.dng", "--json",
                 "best.json"})
                .status,
            0);
  for (const char* word : {"chart", "evaluate"}) EXPECT_EQ(run({word, "a.dng"}).status, 0) << word;

  ASSERT_EQ(run({"apply", "a.dng", "--fit", "fit.json", "-o", "applied.png"}).status, 0);
  EXPECT_EQ(read("applied.png"), read("direct.png"));
  std::filesystem::copy(folder / "a.dng", folder / "b.dng");
  std::filesystem::copy(folder / "fit.json", folder / "broken.dng");
  const auto several =
      run({"apply", "a.dng", "broken.dng", "b.dng", "--fit", "best.json", "-o", "out"});
  EXPECT_EQ(several.status, 1);
  EXPECT_THAT(several.err, HasSubstr("1 of 3 photographs failed: can't read \"broken.dng\""));
  EXPECT_EQ(read("out/a.png"), read("out/b.png"));
  EXPECT_THAT(run({"apply", "a.dng", "--fit", "truth.json", "-o", "x.png"}).err,
              HasSubstr("\"truth.json\" is no fit"));
}

TEST_F(CommandTest, WhatIsWrongWithARawFileIsSaidInOneLine) {
  ASSERT_EQ(run({"simulate", "-o", "a.dng", "--size", "64x48"}).status, 0);
  const struct {
    std::vector<std::string> words;
    int status;
    const char* says;
  } failures[] = {
      {{"simulate", "-o", "a.png", "--bayer", "RGGB"}, 2, ".dng"},
      {{"simulate", "-o", "a.dng", "--encoding", "srgb"}, 2, "linear"},
      {{"info", "a.dng", "--black", "20000"}, 2, "--white must be above --black"},
      {{"info", "a.dng", "--dump", "64x48:8"}, 2, "--dump: \"64x48:8\" is no layout"},
  };
  for (const auto& [words, status, says] : failures) {
    SCOPED_TRACE(testing::PrintToString(words));
    const auto outcome = run(words);
    EXPECT_EQ(outcome.status, status);
    EXPECT_THAT(outcome.err, HasSubstr(says));
    EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1);
  }
}

}  // namespace
}  // namespace greycard
