// wb-map and skin.

#include <gmock/gmock.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "greycard/files.h"
#include "run_command.h"

namespace greycard {
namespace {

using nlohmann::json;
using testing::HasSubstr;

const std::vector<std::string> kReferences{"wb-map", "--from", "0,0",  "--from", "1,0",
                                           "--from", "0,1",    "--to", "0.5,1",  "--to",
                                           "2.5,1",  "--to",   "0.5,5"};

std::vector<std::string> with(std::vector<std::string> words,
                              const std::vector<std::string>& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

TEST_F(CommandTest, WbMapMapsPointsOfOptionsAndFiles) {
  writeWholeFile(folder / "points.txt", "# R/G, B/G\r\n1 2\r\n\n-0.5,+0.25");
  const auto outcome = run(with(kReferences, {"--point", "0.25,0.5", "--points", "points.txt",
                                              "--csv", "out.csv", "--json", "-"}));
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const json result = json::parse(outcome.out);  // X' = 2 X + 0.5, Y' = 4 Y + 1
  EXPECT_EQ(result["coefficients"]["a"], 2.0);
  EXPECT_EQ(result["points"][0]["mapped"], (json{1.0, 3.0}));
  EXPECT_EQ(read("out.csv"),
            "rg,bg,mapped_rg,mapped_bg\n0.25,0.5,1,3\n1,2,2.5,9\n-0.5,0.25,-0.5,2\n");
}

TEST_F(CommandTest, FittingRefusalsNameTheWord) {
  writeWholeFile(folder / "bad.txt", "1,2\n0.5;0.6\n");
  writeWholeFile(folder / "empty.txt", "");
  json chart = {{"patches", json::array()}};
  for (int i = 0; i < 24; ++i) chart["patches"].push_back({{"rgb", {0.1, 0.2, 0.3}}});
  writeWholeFile(folder / "chart.json", chart.dump());
  chart["patches"][4]["rgb"][1] = nullptr;
  writeWholeFile(folder / "null.json", chart.dump());
  const std::vector<std::string> skin{"skin", "chart.json", "chart.json"};
  const struct {
    std::vector<std::string> words;
    int status;
    const char* says;
  } failures[] = {
      {{"wb-map", "--from", "1,2"}, 2, "--from must be given three times and is given 1"},
      {with(kReferences, {"--point", "1"}), 2, "two numbers RG,BG, and here are 1"},
      {with(kReferences, {"--points", "bad.txt"}), 1, "line 2 of \"bad.txt\": \"0.5;0.6\" is not"},
      {with(skin, {"missing.png", "--ccm", "1,0,0,0,1,0,0,0,1"}), 1, "missing.png"},
      {with(skin, {"empty.txt"}), 1, "empty.txt"},
      {with(skin, {"null.json"}), 1, "patches[4].rgb must be a list of 3 finite numbers"},
      {with(skin, {"chart.json"}), 2, "a colour-correction matrix is needed"},
      {with(skin, {"chart.json", "--ccm", "1,0,0"}), 2, "a matrix is 9 numbers, and here are 3"},
  };
  for (const auto& [words, status, says] : failures) {
    SCOPED_TRACE(says);
    const auto outcome = run(words);
    EXPECT_EQ(outcome.status, status);
    EXPECT_THAT(outcome.err, HasSubstr(says));
    EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
  }
}

TEST_F(CommandTest, SkinFromPhotographsAndMeasurements) {
  for (const std::string light : {"D65", "A", "TL84"})
    run({"simulate", "-o", light + ".png", "--light", light, "--size", "800x600"});
  run({"ccm", "TL84.png", "--light", "TL84", "--json", "TL84.json"});
  const auto outcome = run({"skin", "D65.png", "A.png", "TL84.json", "--csv", "skin.csv", "--plot",
                            "skin.svg", "--json", "-"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const json result = json::parse(outcome.out);
  EXPECT_EQ(result["synthetic_colours"], 3213);
  EXPECT_EQ(result["matrix"], json::parse(read("TL84.json"))["matrix"]);

  const std::string csv = read("skin.csv"), svg = read("skin.svg");
  EXPECT_EQ(std::ranges::count(csv, '\n'), 3214);
  EXPECT_THAT(csv, HasSubstr("\nT84,bright,357,"));
  EXPECT_THAT(svg, HasSubstr("Hue ratio"));
}

}  // namespace
}  // namespace greycard
