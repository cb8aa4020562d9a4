#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "greycard/files.h"
#include "run_command.h"

namespace greycard {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class Lut2dCommandTest : public CommandTest {
 protected:
  // Runs "greycard lut2d WORDS..." with the figures on standard output.
  json figures(std::vector<std::string> words) const {
    words.insert(words.begin(), "lut2d");
    words.insert(words.end(), {"--json", "-"});
    const auto outcome = run(words);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return json::parse(outcome.out);
  }
  json file(const std::string& name) const { return json::parse(read(name)); }
};

TEST_F(Lut2dCommandTest, FromAnIdentityToAMovedPicture) {
  const auto table = figures({"new", "-o", "table.json", "--fade", "0,0.1,0.9,1"});
  EXPECT_EQ(table, file("table.json"));
  EXPECT_EQ(table["lut_1d_h"][24], 360.0);
  EXPECT_EQ(table["l_boundary_start_b"], 0.1);
  EXPECT_EQ(figures({"show", "table.json"})["changed_nodes"], 0);

  const auto drag = figures({"adjust", "table.json", "--at", "118,0.52", "--by", "-30,0.1",
                             "--range", "2,3", "-o", "moved.json"});
  EXPECT_EQ(drag["row"], 8);
  EXPECT_EQ(drag["column"], 8);
  EXPECT_EQ(file("moved.json")["lut_2d_h"][8][8], -30.0);
  EXPECT_NEAR(file("moved.json")["lut_2d_s"][8][8].get<double>(), 0.1, 1e-12);
  EXPECT_EQ(file("moved.json")["lut_2d_h"][20][8], 0.0);
  const auto shown = figures({"show", "moved.json", "--plot", "wheel.svg"});
  EXPECT_EQ(shown["largest_hue_change_deg"], 30.0);
  EXPECT_EQ(shown["changed_nodes"], drag["moved_nodes"]);
  EXPECT_THAT(read("wheel.svg"), HasSubstr("<polygon"));

  // A green of hue 120 and saturation 0.5, and a grey, in each kind of samples.
  for (const auto& [white, bits] : {std::pair{255, ""}, {1023, "10"}, {65535, "16"}}) {
    SCOPED_TRACE(white);
    const auto sample = [white = white](double share) {
      return std::to_string(static_cast<int>(share * white + 0.5)) + " ";
    };
    const std::string grey = sample(0.4);
    writeWholeFile(folder / "in.ppm", "P3\n2 1\n" + std::to_string(white == 255 ? 255 : 65535) +
                                          "\n" + sample(0.25) + sample(0.75) + sample(0.25) + grey +
                                          grey + grey + "\n");
    std::vector<std::string> words{"apply", "in.ppm",  "--lut",     "moved.json",
                                   "-o",    "out.ppm", "--compare", "both.png"};
    if (*bits != 0) words.insert(words.end(), {"--bits", bits});
    const auto applied = figures(words);
    EXPECT_EQ(applied["changed_pixels"], 1);
    EXPECT_EQ(applied["white_level"], white);
    EXPECT_EQ(read("both.png").substr(1, 3), "PNG");
  }
}

TEST_F(Lut2dCommandTest, InvertReportsTheRoundTrip) {
  run({"lut2d", "new", "-o", "table.json"});
  const auto same = figures({"invert", "table.json", "-o", "same.json"});
  EXPECT_EQ(same["uncovered_nodes"], 0);
  EXPECT_LT(same["worst_saturation_error"], 0.02);  // what two passes round away
  EXPECT_LT(same["mean_hue_error_deg"], 0.5);
  run({"lut2d", "adjust", "table.json", "--at", "200,0.5", "--by", "-8,0", "--range", "6,8", "-o",
       "moved.json"});
  const auto moved = figures({"invert", "moved.json", "-o", "back.json"});
  EXPECT_LT(moved["worst_hue_error_deg"], 8.0);
  EXPECT_GT(file("back.json")["lut_2d_h"][13][7], 2.0);  // the drag was downward
  EXPECT_THAT(run({"lut2d", "invert", "moved.json", "-o", "back.json"}).out,
              HasSubstr("There and back"));
}

TEST_F(Lut2dCommandTest, RefusesFilesThatAreNoTables) {
  run({"lut2d", "new", "-o", "table.json"});
  const auto spoiled = [&](const std::string& from, const std::string& to) {
    std::string text = read("table.json");
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
  };
  const struct {
    std::string text;
    const char* says;
  } cases[] = {
      {"{", "is not JSON from line 1, column 2 on"},
      {"[1, 2]", "it must hold one object"},
      {"{}", "enabled is missing"},
      {spoiled("\"h_shift\": 2.0", "\"h_shift\": \"2\""), "h_shift must be a number"},
      {spoiled("\"h_shift\": 2.0", "\"h_shift\": -3"), "h_shift is -3; it must be"},
      {spoiled("\"s_shift\": 2.0", "\"s_shift\": 1e99"), "s_shift must be a number that fits"},
      {spoiled("\"enabled\": 1", "\"enabled\": 300"), "enabled must be a whole number"},
      {spoiled("[0.0,15.0,", "[15.0,"), "lut_1d_h must be a list of 25 numbers"},
      {spoiled("[0.0,15.0,", "[0.0,null,"), "lut_1d_h[1] must be a number"},
      {spoiled("{", "{\"colour\": 1,"), "there is no field \"colour\""},
  };
  for (const auto& [text, says] : cases) {
    SCOPED_TRACE(says);
    writeWholeFile(folder / "bad.json", text);
    const auto outcome = run({"lut2d", "show", "bad.json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr(says));
    EXPECT_THAT(outcome.err, HasSubstr("bad.json"));
  }
  EXPECT_EQ(
      run({"lut2d", "adjust", "table.json", "--at", "1,1", "--by", "nan,0", "-o", "x"}).status, 2);
}

}  // namespace
}  // namespace greycard
