#include <nlohmann/json.hpp>
#include <sstream>

#include "run_command.h"

namespace greycard {
namespace {

using nlohmann::json;

// A guest of the library gets the command's matrix to the bit, at any turn, and in silence.
TEST_F(CommandTest, TheExampleFitsAsTheCommandDoes) {
  for (const std::string turn : {"0", "20", "45", "-100"}) {
    SCOPED_TRACE(turn);
    run({"simulate", "-o", "chart.png", "--size", "800x600", "--rotate", turn, "--noise", "0.01"});
    const json fit = json::parse(run({"ccm", "chart.png", "--json", "-"}).out);
    const Outcome example = runProgram(GREYCARD_EXAMPLE, folder, {"chart.png"});
    ASSERT_EQ(example.status, 0) << example.err;
    EXPECT_EQ(example.err, "");

    std::istringstream text(example.out);
    const auto expectNext = [&text](const json& expected) {
      double value = 0.0;
      EXPECT_TRUE(text >> value);
      EXPECT_EQ(value, expected.get<double>());
    };
    std::string word;
    for (const json& row : fit["matrix"])
      for (const json& entry : row) expectNext(entry);
    EXPECT_TRUE(text >> word && word == "gains");
    for (const json& gain : fit["white_balance_gains"]) expectNext(gain);
    EXPECT_TRUE(text >> word && word == "exposure");
    expectNext(fit["exposure_gain"]);
  }
}

}  // namespace
}  // namespace greycard
