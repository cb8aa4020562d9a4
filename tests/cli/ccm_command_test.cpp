#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "run_command.h"

namespace greycard {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ChartCommands : public CommandTest {
 protected:
  json fit(const std::string& photo, std::vector<std::string> options = {}) const {
    std::vector<std::string> words = {"ccm", photo, "--json", "-"};
    words.insert(words.end(), options.begin(), options.end());
    const Outcome outcome = run(words);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return json::parse(outcome.out);
  }
  void write(const std::string& name, const std::string& text) const {
    std::ofstream(folder / name) << text;
  }
};

TEST_F(ChartCommands, APartOfAPhotographCanBeChosen) {
  run({"simulate", "-o", "a.ppm", "--size", "400x300"});
  const json parts = json::parse(run({"chart", "a.ppm", "--all", "--json", "-"}).out)["within"];
  ASSERT_EQ(parts.size(), 1U);
  std::string within;
  for (const double number : parts[0])
    within += (within.empty() ? "" : ",") + std::to_string(std::lround(number));
  EXPECT_EQ(fit("a.ppm", {"--within", within})["matrix"].size(), 3U);
  EXPECT_EQ(run({"ccm", "a.ppm", "--within", "0,0,50,50"}).status, 1);
  EXPECT_THAT(run({"chart", "a.ppm", "--all"}).out,
              AllOf(HasSubstr("1 chart found"), HasSubstr("--within ")));
}

TEST_F(ChartCommands, ResultsTellWhatTheyWereMadeOf) {
  run({"simulate", "-o", "c.png", "--size", "640x480"});
  const std::string toXyz = "0.4124 0.3576 0.1805 0.2126 0.7152 0.0722 0.0193 0.1192 0.9505",
                    back = "3.2406,-1.5372,-0.4986,-0.9689,1.8758,0.0415,0.0557,-0.2040,1.0570";
  const json result = fit("c.png", {"--light", "Strobe", "--transform", "3", "--rgb-to-xyz", toXyz,
                                    "--xyz-to-rgb", back, "--sat", "1.2,1,1,1"});
  EXPECT_EQ(result["reference_light"], "D65");
  EXPECT_EQ(result["samples"]["encoding"], "srgb");
  EXPECT_EQ(result["samples"]["white"], 255.0);
  EXPECT_EQ(result["options"]["transform"], 3);
  EXPECT_EQ(result["options"]["light"], "Strobe");
  EXPECT_FALSE(result["options"].contains("gamma"));
  EXPECT_THAT(result["command"].get<std::string>(), HasSubstr("'" + toXyz + "'"));
  EXPECT_THAT(result["warnings"].dump(), HasSubstr("1.2 for all patches has no effect"));
  EXPECT_EQ(run({"ccm", "c.png", "--exposure", "free"}).status, 2);
}

TEST_F(ChartCommands, OtherAimsChangeTheFit) {
  run({"simulate", "-o", "chart.png", "--size", "800x600"});
  const json plain = fit("chart.png"),
             vivid = fit("chart.png", {"--delta-e", "cie76", "--saturation", "1.1"});
  EXPECT_NEAR(vivid["fit"]["chroma_change"], 0.1, 0.05);
  EXPECT_NE(plain["white_balance_gains"],
            fit("chart.png", {"--white-patches", "19"})["white_balance_gains"]);
  EXPECT_NE(plain["matrix"], fit("chart.png", {"--gamma", "VHDR"})["matrix"]);
}

// A wrong region file is refused like a wrong detection.
TEST_F(ChartCommands, AFitInDoubtIsRefusedUntilForced) {
  run({"simulate", "-o", "chart.png", "--size", "800x600"});
  ASSERT_EQ(run({"chart", "chart.png", "-o", "regions.txt", "--quads"}).status, 0);
  EXPECT_EQ(run({"ccm", "chart.png", "--regions", "regions.txt"}).status, 0);
  std::istringstream lines(read("regions.txt"));
  std::string turned, line;
  while (std::getline(lines, line)) turned = line + "\n" + turned;
  write("turned.txt", turned);
  const Outcome refused =
      run({"ccm", "chart.png", "--regions", "turned.txt", "--report", "report.html"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, AllOf(HasSubstr("can't be right"), HasSubstr("does not darken"),
                                 HasSubstr("--force")));
  EXPECT_FALSE(std::filesystem::exists(folder / "report.html"));
  const Outcome forced = run({"ccm", "chart.png", "--regions", "turned.txt", "--force"});
  EXPECT_EQ(forced.status, 0) << forced.err;
  EXPECT_THAT(forced.out, HasSubstr("Warning: the chart may not be where the regions are"));
}

// Out of focus: nothing is flat in it, but the corners can be seen.
TEST_F(ChartCommands, ARefusedPhotographCanBeSeenAndBroughtToAMatrixByItsCorners) {
  run({"simulate", "-o", "soft.png", "--truth", "truth.json", "--size", "640x480", "--share", "0.3",
       "--blur", "8"});
  const Outcome refused = run({"chart", "soft.png", "--annotate", "seen.png", "--json", "seen.json",
                               "--debug", "stages", "-o", "regions.txt"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, AllOf(HasSubstr("no regular grid"), HasSubstr("--corners")));
  EXPECT_TRUE(std::filesystem::exists(folder / "seen.png"));
  EXPECT_TRUE(std::filesystem::exists(folder / "stages" / "5_outcome.png"));
  EXPECT_FALSE(std::filesystem::exists(folder / "regions.txt"));
  EXPECT_EQ(json::parse(read("seen.json"))["found"], false);

  const json centres = json::parse(read("truth.json"))["centres"];
  std::vector<std::string> corners = {"--corners-of", "patches", "--corners"};
  for (const std::size_t patch : {0U, 5U, 23U, 18U})
    corners.push_back(centres[patch][0].dump() + "," + centres[patch][1].dump());
  const json result = fit("soft.png", corners);
  EXPECT_EQ(result["chart"]["method"], "corners");
  EXPECT_LT(result["delta_e"]["cie76"]["mean"], 5.0);
  std::vector<std::string> skin = {"skin",     "soft.png", "soft.png",
                                   "soft.png", "--ccm",    "1,0,0,0,1,0,0,0,1"};
  skin.insert(skin.end(), corners.begin(), corners.end());
  EXPECT_EQ(run(skin).status, 0);
}

TEST_F(ChartCommands, BadInputGetsOneSentence) {
  run({"simulate", "-o", "chart.png", "--size", "400x300"});
  run({"simulate", "-o", "far.png", "--size", "400x300", "--share", "0.05"});
  write("short.txt", "1 2 3");
  write("odd.txt", "1 2x 3");
  const struct {
    std::vector<std::string> words;
    int status;
    const char* says;
  } cases[] = {
      {{"ccm", "chart.png", "--gamma", "short.txt"}, 1, "holds 3 numbers; 256 are wanted"},
      {{"ccm", "chart.png", "--regions", "odd.txt"}, 1, "odd.txt"},
      {{"ccm", "chart.png", "--reference-lab", "odd.txt"}, 1, "line 1"},
      {{"ccm", "chart.png", "--light", "D66"}, 2, "no light \"D66\""},
      {{"ccm", "chart.png", "--white", "0"}, 2, "above --black"},
      {{"ccm", "chart.png", "--json", "chart.png"}, 2, "same file"},
      {{"chart", "short.txt"}, 1, "not a picture"},
      {{"evaluate", "far.png"}, 1, "no chart found"},
      {{"evaluate", "far.png", "--corners", "1,2", "3,4", "5,6", "x,7"},
       2,
       "\"x,7\" is not a place"},
      {{"evaluate", "far.png", "--corners", "1,2", "3,4", "5,6"}, 2, "--corners"},
      {{"evaluate", "chart.png", "--within", "1,2,3"}, 2, "is not a part of a photograph"},
      {{"evaluate", "chart.png", "--within", "9999,0,9,9"}, 1, "region of interest"},
      {{"chart", "far.png", "--all"}, 1, "no chart found"},
      {{"chart", "far.png", "--corners", "9,2", "3,4", "5,6", "4,8"},
       1,
       "list them round the chart"},
  };
  for (const auto& c : cases) {
    const Outcome outcome = run(c.words);
    EXPECT_EQ(outcome.status, c.status) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr(c.says));
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    EXPECT_EQ(outcome.out, "");
  }
}

}  // namespace
}  // namespace greycard
