#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "greycard/files.h"
#include "run_command.h"

namespace greycard {
namespace {

using nlohmann::json;
using testing::HasSubstr;

TEST_F(CommandTest, SigmaFindsTheNoiseOfASimulatedField) {
  const std::vector<std::string> flat{"simulate", "--flat", "--size", "640x620", "--sigma",
                                      "4",        "--gain", "1.5",    "--truth", "t.json",
                                      "--seed",   "3",      "-o",     "flat.pgm"};
  ASSERT_EQ(run(flat).status, 0);
  const json truth = json::parse(read("t.json"));
  EXPECT_EQ(truth["center_noise_sigma"], 4.0);

  const auto outcome = run({"sigma", "flat.pgm", "--json", "flat.json", "--csv", "flat.csv",
                            "--plot", "flat.svg", "--map", "flat.png"});
  EXPECT_THAT(outcome.out, HasSubstr("Centre sigma"));
  EXPECT_EQ(outcome.err, "");
  const json found = json::parse(read("flat.json"));
  EXPECT_NEAR(found["center_ring_sigma"].get<double>(), 4.0, 0.12);
  EXPECT_THAT(read("flat.svg"), HasSubstr("</svg>"));
  EXPECT_EQ(read("flat.png").substr(1, 3), "PNG");
  const std::string csv = read("flat.csv");
  EXPECT_THAT(csv, HasSubstr("\n0,0.000000,1.000000,1.000000,"));
}

TEST_F(CommandTest, SigmaAdvisesAndRefuses) {
  writeWholeFile(folder / "small.pgm", "P2\n3 2\n65535\n0 9 255 256 700 9\n");
  writeWholeFile(folder / "colour.ppm", "P3\n1 1\n255\n9 2 0\n");
  const auto small = run({"sigma", "small.pgm", "--force", "--wide"});
  EXPECT_THAT(small.out, HasSubstr("Advice: 2 of 6 samples are above 255"));
  const auto forced = [this](const char* option, const char* value) {
    return run({"sigma", "colour.ppm", option, value, "--force"}).out;
  };
  EXPECT_THAT(forced("--luma", "green"), HasSubstr("Mean 2.0"));
  EXPECT_THAT(forced("--raw", "17,1,8"), HasSubstr(", 17 x 1 pixels"));
  const struct {
    std::vector<std::string> words;
    int status;
    const char* says;
  } cases[] = {
      {{"sigma", "colour.ppm"}, 1, "is a colour picture; say with --luma"},
      {{"sigma", "small.pgm", "--black", "9", "--white", "9"}, 2, "--white must be above"},
      {{"sigma", "small.pgm", "--bits", "9", "--white", "9"}, 2, "give one of them"},
      {{"sigma", "small.pgm", "--raw", "3,0,8"}, 2, "\"0\" is not a whole number above 0"},
      {{"sigma", "small.pgm", "--raw", "3,2,12"}, 2, "8 or 16 bits, not 12"},
      {{"sigma", "small.pgm", "--csv", "small.pgm"}, 2, "name the same file"},
      {{"simulate", "--flat", "-o", "x.png", "--light", "A"}, 2, "excludes"},
      {{"simulate", "--flat", "-o", "x.JPG"}, 2, "JPEG's compression would change the noise"},
      {{"simulate", "-o", "x.png", "--gain", "2"}, 2, "requires --flat"},
      {{"simulate", "--flat", "-o", "x.png", "--sigma", "nan"}, 2, "from 0.6 to 60, not nan"},
  };
  for (const auto& [words, status, says] : cases) {
    const auto outcome = run(words);
    EXPECT_EQ(outcome.status, status) << says;
    EXPECT_THAT(outcome.err, HasSubstr(says));
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "x.png"));
}

}  // namespace
}  // namespace greycard
