#include <gmock/gmock.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

#include "run_command.h"

namespace greycard {
namespace {

using testing::HasSubstr;
using testing::Not;

std::vector<double> numbers(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<double>(stream), {}};
}

TEST_F(CommandTest, GammaListNamesTheCatalogue) {
  EXPECT_THAT(run({"gamma", "list"}).out, HasSubstr("VOutdoorHighContrast"));
  const auto json = nlohmann::json::parse(run({"gamma", "list", "--json", "-"}).out);
  ASSERT_EQ(json["curves"].size(), 11u);
  EXPECT_EQ(json["curves"][8]["name"], "VGammaSRGB");
}

TEST_F(CommandTest, GammaShowsTheCurveAsTextJsonAndPlot) {
  const auto outcome = run({"gamma", "show", "VGammaSRGB", "--plot", "curve.svg", "--json",
                            "curve.json", "--points", "5"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const auto json = nlohmann::json::parse(read("curve.json"));
  const auto table = json["table"].get<std::vector<int>>();
  ASSERT_EQ(table.size(), 1024u);
  for (std::size_t i = 0; i < 1024; ++i) {
    const double x = static_cast<double>(i) / 1023.0;
    const double v = x <= 0.0031308 ? 12.92 * x : 1.055 * std::pow(x, 1 / 2.4) - 0.055;
    // 512 entries joined by straight lines, whose places are up to half an index off.
    EXPECT_NEAR(table[i], 16383 * v, 16383 * std::max(0.004, 0.01 * (1 - x))) << i;
  }
  EXPECT_EQ(json["points"].size(), 5u);
  EXPECT_THAT(outcome.out, HasSubstr(" " + std::to_string(table[700]) + " "));

  const auto svg = read("curve.svg");
  EXPECT_THAT(svg,
              testing::StartsWith("<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 600 "));
  EXPECT_THAT(svg, HasSubstr("Output (14-bit code)"));
  EXPECT_THAT(svg, HasSubstr(">samples</text>"));
  for (const char* bad : {"<script", "href", "nan", "inf", "-0<", "\"-\""})
    EXPECT_THAT(svg, Not(HasSubstr(bad)));
  EXPECT_EQ(svg.find("http", 20 + 5), std::string::npos);  // beyond the name space
}

TEST_F(CommandTest, GammaLutHasTheShapesOfItsKinds) {
  const auto table =
      nlohmann::json::parse(run({"gamma", "show", "VOutdoor", "--json", "-"}).out)["table"]
          .get<std::vector<int>>();
  const auto lut = [&](const std::string& kind) {
    return numbers(run({"gamma", "lut", "VOutdoor", "--kind", kind}).out);
  };
  const auto lut255 = lut("255"), norm = lut("norm"), of14 = lut("255-14bit"), codes = lut("12bit");
  ASSERT_EQ(lut255.size(), 256u);
  ASSERT_EQ(norm.size(), 256u);
  ASSERT_EQ(of14.size(), 256u);
  ASSERT_EQ(codes.size(), 4096u);
  for (std::size_t r = 0; r < 256; ++r) {
    EXPECT_EQ(lut255[r], table[4 * r] / 64);
    EXPECT_NEAR(norm[r], table[4 * r] / 64 / 255.0, 1e-6);
    EXPECT_NEAR(of14[r], table[4 * r] / 62.4, 1e-6);
    EXPECT_EQ(codes[16 * r], std::floor(table[4 * r] / 64 * (4095.0 / 255.0) + 0.5));
  }
  EXPECT_EQ(codes[4095], codes[4091]);

  EXPECT_EQ(run({"gamma", "lut", "VOutdoor", "--kind", "255", "--bits", "14", "-o", "lut.txt"}).out,
            "");
  EXPECT_EQ(numbers(read("lut.txt"))[100], table[400]);
}

}  // namespace
}  // namespace greycard
