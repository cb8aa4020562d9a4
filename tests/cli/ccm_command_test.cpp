#include <gmock/gmock.h>

#include <algorithm>
#include <array>
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

TEST_F(ChartCommands, AnOrdinarySensorIsCorrectedUnderThreeLights) {
  for (const std::string light : {"D65", "D50", "TL84"}) {
    SCOPED_TRACE(light);
    run({"simulate", "-o", "chart.png", "--truth", "truth.json", "--light", light, "--noise",
         "0.01", "--size", "800x600", "--rotate", "100"});
    const json result = fit("chart.png", {"--light", light});
    EXPECT_LT(result["delta_e"]["cie76"]["mean"], 1.5);
    EXPECT_GT(result["delta_e_before"]["cie76"]["mean"], 5.0);
    for (const json& row : result["matrix"])
      EXPECT_NEAR(row[0].get<double>() + row[1].get<double>() + row[2].get<double>(), 1.0, 1e-12);
    const json truth = json::parse(read("truth.json"));
    for (std::size_t i = 0; i < 24; ++i) {
      const json &found = result["chart"]["centres"][i], &real = truth["centres"][i];
      EXPECT_LT(std::hypot(found[0].get<double>() - real[0].get<double>(),
                           found[1].get<double>() - real[1].get<double>()),
                truth["pitch_px"].get<double>() / 3.0);
    }
  }
}

// The corrected photograph, judged as it is, shows the colours that the fit promised.
TEST_F(ChartCommands, TheCorrectedPhotographHasTheCorrectedColours) {
  run({"simulate", "-o", "raw.tif", "--bits", "16", "--black", "64", "--white", "4095", "--light",
       "A", "--size", "800x600"});
  const json result = fit("raw.tif", {"--black", "64", "--white", "4095", "--light", "A",
                                      "--corrected", "fixed.png", "--report", "report.html"});
  ASSERT_EQ(run({"chart", "fixed.png", "-o", "regions.txt"}).status, 0);
  const json judged =
      json::parse(run({"evaluate", "fixed.png", "--regions", "regions.txt", "--json", "-"}).out);
  for (std::size_t i = 0; i < 24; ++i)
    for (std::size_t c = 0; c < 3; ++c)  // an 8-bit step is up to 0.7 units of a*, b* in the dark
      EXPECT_NEAR(judged["patches"][i]["measured_lab"][c].get<double>(),
                  result["patches"][i]["corrected_lab"][c].get<double>(), 0.8)
          << "patch " << i + 1;

  const std::string report = read("report.html");
  EXPECT_THAT(report, HasSubstr("data:image/jpeg;base64,"));
  for (const char* outside : {"<script", "<link", "src=\"http", "url("})
    EXPECT_THAT(report, Not(HasSubstr(outside)));
}

TEST_F(ChartCommands, OneOfSeveralChartsCanBeChosen) {
  run({"simulate", "-o", "a.ppm", "--light", "A", "--size", "400x300"});
  run({"simulate", "-o", "b.ppm", "--light", "D65", "--size", "400x300", "--rotate", "90"});
  const std::size_t row = 3 * 400, pixels = row * 300;
  const std::string a = read("a.ppm"), b = read("b.ppm");
  std::string both = "P6 800 300 255\n";
  for (std::size_t y = 0; y < 300; ++y)
    for (const std::string& side : {a, b}) both += side.substr(side.size() - pixels + y * row, row);
  write("both.ppm", both);

  const json parts = json::parse(run({"chart", "both.ppm", "--all", "--json", "-"}).out)["within"];
  ASSERT_EQ(parts.size(), 2U);
  for (const json& chosenPart : parts) {
    const auto part = chosenPart.get<std::array<double, 4>>();
    std::string within;
    for (const double number : part) within += std::to_string(std::lround(number)) + ",";
    within.pop_back();
    const bool left = part[0] < 300.0;
    const json chosen = fit("both.ppm", {"--within", within, "--light", left ? "A" : "D65"});
    const json alone = fit(left ? "a.ppm" : "b.ppm", {"--light", left ? "A" : "D65"});
    EXPECT_NEAR(chosen["white_balance_gains"][2], alone["white_balance_gains"][2].get<double>(),
                0.01);
  }
  EXPECT_THAT(run({"chart", "both.ppm", "--all"}).out,
              AllOf(HasSubstr("2 charts found"), HasSubstr("--within ")));
}

// The second grey is at its reference after white balance; the stated gain leaves it lighter.
TEST_F(ChartCommands, ABalancedExposureMeetsTheSecondGrey) {
  run({"simulate", "-o", "c.png", "--size", "640x480", "--light", "Horizon", "--sensor", "broad"});
  const auto grey = [](const json& fit) {
    const json& patch = fit["patches"][19];
    return patch["balanced_lab"][0].get<double>() - patch["reference_lab"][0].get<double>();
  };
  const json stated = fit("c.png", {"--light", "Horizon"}),
             balanced = fit("c.png", {"--light", "Horizon", "--exposure", "balanced"});
  const double green = stated["white_balance_gains"][1];
  ASSERT_GT(green, 1.01);
  EXPECT_GT(grey(stated), 0.3);
  EXPECT_NEAR(grey(balanced), 0.0, 0.1);
  EXPECT_NEAR(balanced["exposure_gain"].get<double>() * green,
              stated["exposure_gain"].get<double>(), 1e-9);
  EXPECT_EQ(fit("c.png", {"--exposure", "1.25"})["exposure_gain"], 1.25);
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
  for (const auto& words : {std::vector<std::string>{"--transform", "3"},
                            {"--rgb-to-xyz", toXyz},
                            {"--exposure", "free"},
                            {"--transform", "3", "--rgb-to-xyz", toXyz, "--xyz-to-rgb", toXyz}}) {
    std::vector<std::string> command = {"ccm", "c.png"};
    command.insert(command.end(), words.begin(), words.end());
    EXPECT_NE(run(command).status, 0);
  }
}

// The encoding that was assumed is the wrong one, and the right one is named.
TEST_F(ChartCommands, AWrongEncodingShowsInTheGreyRow) {
  run({"simulate", "-o", "l.tif", "--bits", "16", "--size", "640x480"});
  const Outcome wrong = run({"evaluate", "l.tif", "--encoding", "srgb", "--wide", "--force"});
  EXPECT_THAT(wrong.out, HasSubstr("it would not with --encoding linear"));
  EXPECT_THAT(run({"evaluate", "l.tif"}).out, Not(HasSubstr("grey row")));
}

TEST_F(ChartCommands, OtherAimsChangeTheFit) {
  run({"simulate", "-o", "chart.png", "--size", "800x600"});
  const json plain = fit("chart.png"),
             vivid = fit("chart.png", {"--delta-e", "cie76", "--saturation", "1.1"});
  EXPECT_NEAR(vivid["fit"]["chroma_change"], 0.1, 0.05);
  EXPECT_NE(plain["white_balance_gains"],
            fit("chart.png", {"--white-patches", "19"})["white_balance_gains"]);
  write("linear.txt", [] {
    std::string numbers;
    for (int i = 0; i < 256; ++i) numbers += std::to_string(i) + (i % 16 == 15 ? "\n" : ", ");
    return numbers;
  }());
  EXPECT_NE(plain["matrix"], fit("chart.png", {"--gamma", "linear.txt"})["matrix"]);
}

// A wrong region file is refused like a wrong detection.
TEST_F(ChartCommands, AFitInDoubtIsRefusedUntilForced) {
  run({"simulate", "-o", "chart.png", "--size", "800x600"});
  for (const auto& form : {std::vector<std::string>{}, {"--quads"}}) {
    std::vector<std::string> words = {"chart", "chart.png", "-o", "regions.txt"};
    words.insert(words.end(), form.begin(), form.end());
    ASSERT_EQ(run(words).status, 0);
    EXPECT_EQ(run({"ccm", "chart.png", "--regions", "regions.txt"}).status, 0);
    std::istringstream lines(read("regions.txt"));
    std::string turned, line;
    while (std::getline(lines, line)) turned = line + "\n" + turned;
    write("turned.txt", turned);
    const Outcome refused =
        run({"ccm", "chart.png", "--regions", "turned.txt", "--report", "report.html"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err,
                AllOf(HasSubstr("can't be right"), HasSubstr("does not darken"),
                      HasSubstr("do not follow the chart's colours"), HasSubstr("--force")));
    EXPECT_FALSE(std::filesystem::exists(folder / "report.html"));
    const Outcome forced = run({"ccm", "chart.png", "--regions", "turned.txt", "--force"});
    EXPECT_EQ(forced.status, 0) << forced.err;
    EXPECT_THAT(forced.out, HasSubstr("Warning: the chart may not be where the regions are"));
  }
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
      {{"ccm", "chart.png", "--gamma", "odd.txt"}, 1, "entry 2"},
      {{"ccm", "chart.png", "--gamma", "vnormal"}, 2, "did you mean \"VNormal\""},
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
