#include "greycard/batch/summary.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace greycard::batch {
namespace {

Result fitWith(const std::string& photo, Illum light, double entry) {
  Result result;
  result.photo = photo;
  result.figures.light = light;
  result.figures.matrix = Matrix3{{{entry, 0, 1 - entry}, {0, 1, 0}, {0, 0, 1}}};
  result.figures.meanError = entry;
  return result;
}

// 1, 1.02, 1.04, 1.06, 2: median 1.04, deviations 0.04, 0.02, 0, 0.02, 0.96, so their median is
// 0.02; mean 1.224, squares 0.050176 + 0.041616 + 0.033856 + 0.026896 + 0.602176.
TEST(Summary, TellsMeanSpreadAndWhatLiesOutside) {
  std::vector<Result> results;
  for (const double entry : {1.0, 2.0, 1.02, 1.04, 1.06})
    results.push_back(fitWith("p" + std::to_string(results.size()), illum_A, entry));
  results.push_back(fitWith("nan", illum_A, std::numeric_limits<double>::quiet_NaN()));
  results.push_back(fitWith("d1", illum_D65, 1.0));
  results.push_back(fitWith("d2", illum_D65, 9.0));
  results.push_back({});
  results.back().photo = "bad";
  results.back().reason = "it is empty";

  const Summary summary = summaryOf(results, {});
  EXPECT_EQ(summary.photographs, 9U);
  ASSERT_EQ(summary.failures.size(), 1U);
  EXPECT_EQ(summary.failures[0].photo, "bad");
  ASSERT_EQ(summary.lights.size(), 1U) << "two fits say nothing of each other";
  const LightSummary& light = summary.lights[0];
  EXPECT_EQ(light.fits, 5U);
  EXPECT_NEAR(light.mean[0][0], 1.224, 1e-12);
  EXPECT_NEAR(light.spread[0][0], std::sqrt(0.75472 / 4.0), 1e-12);
  EXPECT_NEAR(light.median[0][0], 1.04, 1e-12);
  EXPECT_NEAR(light.medianDeviation[0][0], 0.02, 1e-12);
  ASSERT_EQ(light.outside.size(), 1U);
  EXPECT_EQ(light.outside[0].photo, "p1");
  EXPECT_EQ(light.outside[0].row, 0);
  EXPECT_NEAR(light.outside[0].distance, 0.96 / (1.4826 * 0.02), 1e-9);

  Summary again, edge = summary;
  fromJson(toJson(summary), again);
  EXPECT_EQ(toJson(again), toJson(summary));
  edge.lights[0].outside[0].row = edge.lights[0].outside[0].column = 2;
  EXPECT_NO_THROW(fromJson(toJson(edge), again));
  edge.lights[0].outside[0].row = 3;
  EXPECT_THROW(fromJson(toJson(edge), again), std::invalid_argument);
  edge.lights[0].outside[0].row = 0, edge.lights[0].outside[0].column = 3;
  EXPECT_THROW(fromJson(toJson(edge), again), std::invalid_argument);
}

TEST(Summary, OutsideBeginsWhereTheRuleSays) {
  // All but one agree, so the floor counts: 3.5 x 0.01, on either side of the last one's place.
  for (const auto& [entry, floor, outside] :
       {std::tuple{1.034, 0.01, 0U}, std::tuple{1.036, 0.01, 1U}, std::tuple{1.036, 0.02, 0U}}) {
    std::vector<Result> results(3, fitWith("same", illum_D50, 1.0));
    results.push_back(fitWith("other", illum_D50, entry));
    Settings settings;
    settings.outliers.floor = floor;
    EXPECT_EQ(summaryOf(results, settings).lights.at(0).outside.size(), outside) << entry;
  }
  Settings settings;
  settings.outliers.factor = std::nan("");
  EXPECT_THROW(summaryOf({}, settings), std::invalid_argument);
}

TEST(Table, HasARowForEachPhotographAndQuotesAsRfc4180Says) {
  std::vector<Result> results{fitWith("a,\"b\".png", illum_A, 0.5), {}};
  results[0].figures.whiteBalance = Vector3{1.5, 1.0, 0.1};
  results[0].figures.worstPatch = 17;
  results[0].figures.warnings = {"w"};
  results[1].photo = "c.png";
  results[1].reason = "no\nchart";
  const std::string csv = resultsCsv(results);
  EXPECT_EQ(csv.substr(csv.find('\n') + 1),
            "\"a,\"\"b\"\".png\",done,A,0.5,,18,1.5,1,0.1,,0.5,0,0.5,0,1,0,0,0,1,1,\n"
            "c.png,failed,,,,,,,,,,,,,,,,,,0,\"no\nchart\"\n");
}

TEST(Page, ShowsFailuresThenTheWorstFirstAndEscapesNames) {
  std::vector<Result> results{fitWith("good", illum_A, 0.5),
                              fitWith("<worst>", illum_A, 3.0),
                              fitWith("middle", illum_A, 1.0),
                              {}};
  results[3].photo = "broken";
  results[3].reason = "a <b> tag";
  const std::string page = indexPage(results, summaryOf(results, {}));
  // The summary names the outside ones before the list does.
  const auto list = page.find("the worst first");
  ASSERT_NE(list, std::string::npos);
  EXPECT_LT(page.find("a &lt;b&gt; tag"), list);
  EXPECT_LT(page.find("&lt;worst&gt;", list), page.find("middle", list));
  EXPECT_LT(page.find("middle", list), page.find("good", list));
  EXPECT_EQ(page.find("<worst>"), std::string::npos);
}

}  // namespace
}  // namespace greycard::batch
