#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "run_command.h"

namespace greycard {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;

class Reports : public CommandTest {
 protected:
  void writeCharts() const {
    run({"simulate", "-o", "a.png", "--light", "A", "--size", "640x480", "--seed", "2"});
    run({"ccm", "a.png", "--light", "A", "--json", "fit.json", "--quiet"});
    run({"evaluate", "a.png", "--light", "A", "--json", "as_is.json", "--quiet"});
  }
};

TEST_F(Reports, ComparisonTellsWhichResultIsNearerPatchByPatch) {
  writeCharts();
  const Outcome outcome =
      run({"compare", "as_is.json", "fit.json", "--report", "both.html", "--json", "-"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const json both = json::parse(outcome.out), fit = json::parse(read("fit.json"));
  EXPECT_EQ(both["a"]["kind"], "evaluation");
  EXPECT_EQ(both["b"]["kind"], "fit");
  EXPECT_EQ(both["b"]["ciede2000"]["mean"], fit["delta_e"]["ciede2000"]["mean"]);
  EXPECT_THAT(read("both.html"), AllOf(HasSubstr("B is nearer"), HasSubstr("Both together")));

  const Outcome refused = run({"compare", "fit.json", "a.png"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, AllOf(HasSubstr("a.png"), HasSubstr("can't be compared")));
}

TEST_F(Reports, EverySubCommandThatMeasuresWritesAPage) {
  writeCharts();
  run({"simulate", "--flat", "-o", "flat.pgm", "--size", "700x640", "--sigma", "2"});
  const std::vector<std::vector<std::string>> commands = {
      {"ccm", "a.png", "--light", "A"},
      {"ccm", "a.png", "--light", "A", "--fit", "best"},
      {"evaluate", "a.png"},
      {"sigma", "flat.pgm"},
      {"ae", "--image", "a.png", "--target", "60", "--evaluations", "50"},
      {"ae", "--image", "a.png", "--target", "60", "--manual"},
      {"wb-map", "--from", "0.4,0.7", "--from", "0.6,0.5", "--from", "0.9,0.4", "--to", "0.5,0.7",
       "--to", "0.6,0.6", "--to", "0.9,0.3", "--point", "0.7,0.5"},
      {"skin", "a.png", "a.png", "fit.json"}};
  for (std::vector<std::string> words : commands) {
    SCOPED_TRACE(words.front());
    words.insert(words.end(), {"--report", "page.html"});
    const Outcome outcome = run(words);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(read("page.html"),
                AllOf(testing::StartsWith("<!DOCTYPE html>"), testing::EndsWith("</html>\n"),
                      HasSubstr("How these figures came about"), HasSubstr("--report page.html")));
  }
}

}  // namespace
}  // namespace greycard
