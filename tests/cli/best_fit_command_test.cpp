#include <gmock/gmock.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "run_command.h"

namespace greycard {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;

class BestFitCommand : public CommandTest {
 protected:
  BestFitCommand() {
    run({"simulate", "-o", "chart.png", "--size", "640x480", "--noise", "0.01", "--vignette",
         "0.2"});
  }
  Outcome best(std::vector<std::string> options) const {
    std::vector<std::string> words = {"ccm", "chart.png", "--fit", "best"};
    words.insert(words.end(), options.begin(), options.end());
    return run(words);
  }
  json fit(std::vector<std::string> options) const {
    options.insert(options.end(), {"--json", "-"});
    const Outcome outcome = best(options);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return json::parse(outcome.out);
  }
};

TEST_F(BestFitCommand, EachOptionChangesTheFitAsItSays) {
  const json plain = fit({});
  const json& photograph = plain["best"]["photographs"][0];
  EXPECT_LT(photograph["figures"]["objective"], photograph["stated"]["objective"]);
  EXPECT_NEAR(photograph["figures"]["mean"], plain["delta_e"]["ciede2000"]["mean"], 1e-12);
  EXPECT_LT(fit({"--norm", "mean", "--difference", "cie76"})["best"]["figures"]["mean_cie76"],
            fit({"--norm", "mean"})["best"]["figures"]["mean_cie76"]);
  EXPECT_LT(fit({"--norm", "max"})["best"]["figures"]["worst"], plain["best"]["figures"]["worst"]);
  const json six = fit({"--entries", "six", "--exposure", "1.25"});
  EXPECT_EQ(six["exposure_gain"], 1.25);
  for (const json& row : six["matrix"])
    EXPECT_NEAR(row[0].get<double>() + row[1].get<double>() + row[2].get<double>(), 1.0, 1e-12);
  const json quiet = fit({"--noise-limit", "0.9", "--trade-off", "4"})["best"];
  for (const json& noise : quiet["row_noise"]) EXPECT_LT(noise, 0.9 + 1e-6);
  EXPECT_EQ(quiet["trade_off"].size(), 4U);

  std::ofstream(folder / "weights.txt") << "0 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1";
  EXPECT_EQ(fit({"--weights", "weights.txt"})["best"]["photographs"][0]["left_out"][0],
            "its weight is 0");
  // A photograph that weighs nothing beside the other.
  run({"simulate", "-o", "dark.png", "--size", "640x480", "--light", "A"});
  const json two = fit({"--also", "dark.png", "--photo-weights", "1000,0.001"});
  EXPECT_NEAR(two["matrix"][0][0], plain["matrix"][0][0], 1e-3);
  EXPECT_EQ(two["stated"].size(), 2U);
}

TEST_F(BestFitCommand, ReportAndTextShowBothFits) {
  const Outcome outcome =
      best({"--estimate-curve", "--trade-off", "3", "--uneven", "plane", "--report", "r.html"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("\n  stated"), HasSubstr("\n  best"),
                                 HasSubstr("Colour error against noise"), HasSubstr("the greys")));
  EXPECT_THAT(read("r.html"),
              AllOf(HasSubstr("<th>stated fit</th>"), HasSubstr("<th>best fit</th>"),
                    HasSubstr("Tone curve of the photographs"), HasSubstr("Light over the chart")));
}

TEST_F(BestFitCommand, BadInputGetsOneSentence) {
  EXPECT_THAT(run({"ccm", "chart.png", "--weights", "skin"}).err,
              HasSubstr("--weights is for --fit best"));
  const std::tuple<std::vector<std::string>, int, const char*> cases[] = {
      {{"--curve", "chart.png"}, 1, "holds no curve"},
      {{"--uneven", "flat"}, 1, "flat"},
      {{"--noise-limit", "1,2"}, 2, "one number or three"},
      {{"--photo-weights", "1,2"}, 2, "2 numbers for 1 photograph"},
      {{"--norm", "17"}, 2, "--norm"},
  };
  for (const auto& [options, status, says] : cases) {
    const Outcome outcome = best(options);
    EXPECT_EQ(outcome.status, status) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr(says));
    EXPECT_EQ(outcome.out, "");
  }
}

}  // namespace
}  // namespace greycard
