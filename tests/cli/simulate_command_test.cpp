#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "run_command.h"

namespace greycard {
namespace {

TEST_F(CommandTest, SimulateWritesThePictureAndItsTruth) {
  const auto outcome = run({"simulate", "-o", "chart.png", "--truth", "truth.json", "--json", "-",
                            "--size", "320x240", "--rotate", "-90", "--light", "a", "--sensor",
                            "Colorimetric", "--noise", "0.01", "--seed", "7"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(read("chart.png").substr(0, 4), "\x89PNG");
  EXPECT_THAT(outcome.out, testing::EndsWith(read("truth.json").substr(1)));
  const auto truth = nlohmann::json::parse(outcome.out);
  EXPECT_EQ(truth["file"], "chart.png");
  EXPECT_NEAR(truth["turn_deg"].get<double>(), 270.0, 1e-9);
  ASSERT_EQ(truth["centres"].size(), 24u);
}

}  // namespace
}  // namespace greycard
