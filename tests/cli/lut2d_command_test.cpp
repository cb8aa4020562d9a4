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
  EXPECT_EQ(table["l_boundary_start_b"], 0.1);

  figures({"adjust", "table.json", "--at", "118,0.52", "--by", "-30,0.1", "--range", "2,3", "-o",
           "moved.json"});
  EXPECT_EQ(file("moved.json")["lut_2d_h"][8][8], -30.0);
  figures({"show", "moved.json", "--plot", "wheel.svg"});
  EXPECT_THAT(read("wheel.svg"), HasSubstr("<polygon"));

  writeWholeFile(folder / "in.ppm", "P3\n2 1\n255\n64 191 64 102 102 102\n");
  const auto applied =
      figures({"apply", "in.ppm", "--lut", "moved.json", "-o", "out.ppm", "--compare", "both.png"});
  EXPECT_EQ(applied["changed_pixels"], 1);
  EXPECT_EQ(read("both.png").substr(1, 3), "PNG");
  EXPECT_THAT(read("out.ppm"), testing::StartsWith("P6"));

  EXPECT_EQ(figures({"invert", "moved.json", "-o", "back.json"})["uncovered_nodes"], 0);
  EXPECT_THAT(run({"lut2d", "invert", "moved.json", "-o", "back.json"}).out,
              HasSubstr("There and back"));
}

TEST_F(Lut2dCommandTest, RefusalsNameTheFileOrTheOption) {
  run({"lut2d", "new", "-o", "table.json"});
  writeWholeFile(folder / "bad.json", "{}");
  writeWholeFile(folder / "in.ppm", "P3\n1 1\n65535\n0 0 1024\n");
  const struct {
    std::vector<std::string> words;
    int status;
    const char* says;
  } cases[] = {
      {{"show", "bad.json"}, 1, "\"bad.json\" is no hue/saturation table: enabled is missing"},
      {{"apply", "in.ppm", "--lut", "table.json", "-o", "x.png", "--bits", "10"},
       1,
       "\"in.ppm\" has samples above 1023, which 10 bits can't hold; leave out --bits"},
      {{"adjust", "table.json", "--at", "1,1", "--by", "nan,0", "-o", "x"}, 2, "--by"},
      {{"adjust", "table.json", "--at", "1,1.5", "--by", "1,0", "-o", "x"}, 2, "--at"},
  };
  for (auto [words, status, says] : cases) {
    SCOPED_TRACE(says);
    words.insert(words.begin(), "lut2d");
    const auto outcome = run(words);
    EXPECT_EQ(outcome.status, status);
    EXPECT_THAT(outcome.err, HasSubstr(says));
  }
}

}  // namespace
}  // namespace greycard
