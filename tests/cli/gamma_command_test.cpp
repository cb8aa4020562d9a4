#include <gmock/gmock.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "run_command.h"

namespace greycard {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST_F(CommandTest, GammaListNamesTheCatalogue) {
  EXPECT_THAT(run({"gamma", "list"}).out, HasSubstr("VOutdoorHighContrast"));
  const auto curves = nlohmann::json::parse(run({"gamma", "list", "--json", "-"}).out);
  ASSERT_EQ(curves["curves"].size(), 11u);
  EXPECT_EQ(curves["curves"][8]["name"], "VGammaSRGB");
}

TEST_F(CommandTest, GammaShowsTheCurveAsTextJsonAndPlot) {
  const auto outcome = run({"gamma", "show", "VGammaSRGB", "--plot", "curve.svg", "--json",
                            "curve.json", "--points", "5"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const auto curve = nlohmann::json::parse(read("curve.json"));
  const auto table = curve["table"].get<std::vector<int>>();
  ASSERT_EQ(table.size(), 1024u);
  for (std::size_t i = 0; i < 1024; ++i) {
    const double x = static_cast<double>(i) / 1023.0;
    const double v = x <= 0.0031308 ? 12.92 * x : 1.055 * std::pow(x, 1 / 2.4) - 0.055;
    // 512 entries joined by straight lines, whose places are up to half an index off.
    EXPECT_NEAR(table[i], 16383 * v, 16383 * std::max(0.004, 0.01 * (1 - x))) << i;
  }
  EXPECT_EQ(curve["points"].size(), 5u);
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

}  // namespace
}  // namespace greycard
