#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "greycard/files.h"
#include "run_command.h"

namespace greycard {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class AeCommandTest : public CommandTest {
 protected:
  AeCommandTest() {
    writeWholeFile(folder / "dark.pgm", "P2 4 1 255\n10 20 30 60\n");  // luma 30
    writeWholeFile(folder / "bright.pgm", "P2 4 1 255\n50 90 120 240\n");
  }
  json figures(std::vector<std::string> words) const {
    words.insert(words.begin(), "ae");
    words.insert(words.end(), {"--json", "-"});
    const auto outcome = run(words);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return json::parse(outcome.out);
  }
};

TEST_F(AeCommandTest, FitsPicturesOfAFileAndOfTheCommandLine) {
  writeWholeFile(folder / "fit.json",
                 R"({"images": [{"picture": "dark.pgm", "newTarget": 25, "Weight": 2}]})");
  const std::vector<std::string> words{
      "fit.json", "--image", "bright.pgm", "--target",      "90",  "--plot", "t.svg", "--seed",
      "3",        "--time",  "0",          "--evaluations", "3000"};
  const auto first = figures(words);
  EXPECT_EQ(first["evaluations"], 3000);
  EXPECT_EQ(first["stop_reason"], "the limit of evaluations was reached");
  EXPECT_LT(first["best"]["error"], first["start"]["error"]);
  EXPECT_EQ(first["images"][1]["name"], "bright.pgm");
  EXPECT_THAT(read("t.svg"), HasSubstr("reached = wanted"));

  EXPECT_THAT(run({"ae", "fit.json", "--time", "0.05"}).out, HasSubstr("best"));
  writeWholeFile(folder / "idle.json",
                 R"({"parameters_enable": [0, 0, 0, 0, 0, 0, 0, 0, 0],
                     "images": [{"picture": "dark.pgm", "newTarget": 25}]})");
  EXPECT_THAT(run({"ae", "idle.json"}).out, HasSubstr("1 image: no group is enabled"));
}

TEST_F(AeCommandTest, MatchesLuma) {
  EXPECT_NEAR(figures({"luma-match", "128,128,128", "64,64,64"})["factor"], 0.5, 1e-4);
  EXPECT_EQ(run({"ae", "luma-match", "1,2,nan", "3,4,5"}).status, 2);
}

TEST_F(AeCommandTest, RefusesFilesThatAreNoFits) {
  const std::pair<const char*, const char*> cases[] = {
      {R"({"image": []})", "\"bad.json\" is no exposure fit: there is no field \"image\""},
      {R"({"images": [{"newTarget": 1, "picture": "no.png"}]})", "can't read \"no.png\""},
  };
  for (const auto& [text, says] : cases) {
    SCOPED_TRACE(text);
    writeWholeFile(folder / "bad.json", text);
    const auto outcome = run({"ae", "bad.json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr(says));
  }
  EXPECT_EQ(run({"ae", "--image", "dark.pgm"}).status, 2);
  writeWholeFile(folder / "fit.json", R"({"images": [{"picture": "dark.pgm", "newTarget": 25}]})");
  EXPECT_THAT(run({"ae", "fit.json", "--json", "./dark.pgm"}).err,
              HasSubstr("--json and images[0].picture name the same file"));
}

}  // namespace
}  // namespace greycard
