// What many results say together, as page, table and JSON.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "golden.h"
#include "greycard/batch/summary.h"

namespace greycard::batch {
namespace {

Result result(const std::string& photo, Job job, Illum light, double mean) {
  Result result;
  result.photo = photo;
  result.job = job;
  result.version = "0.0.1";
  result.contentHash = std::string(32, 'a');
  result.settingsHash = std::string(32, 'b');
  result.options = R"({"light": "D65"})";
  result.result = R"({"found": true})";
  result.thumbnail = "data:image/jpeg;base64,AAAA";
  result.figures.warnings = {};
  if (job == Job::chart) return result;
  result.figures.light = light;
  result.figures.meanError = mean;
  result.figures.worstError = 2.0 * mean;
  result.figures.worstPatch = 6;
  if (job == Job::evaluate) return result;
  result.figures.whiteBalance = Vector3{1.5, 1.0, 2.25};
  result.figures.exposure = 0.875;
  result.figures.matrix =
      Matrix3{{{1.0 + mean, -mean, 0.0}, {-0.25, 1.5, -0.25}, {0.0, -0.5 - 0.0625 * mean, 1.5}}};
  return result;
}

std::vector<Result> resultsOf(Job job) {
  std::vector<Result> results;
  const struct {
    const char* photo;
    Illum light;
    double mean;
  } photographs[] = {{"a/one_A.png", illum_A, 1.0},   {"two_A.png", illum_A, 1.25},
                     {"three_A.png", illum_A, 1.125}, {"four_A.png", illum_A, 3.0},
                     {"one_D65.dng", illum_D65, 0.5}, {"two_D65.dng", illum_D65, 0.5},
                     {"x_D65.dng", illum_D65, 0.5},   {"alone.png", illum_TL84, 2.0}};
  for (const auto& p : photographs) results.push_back(result(p.photo, job, p.light, p.mean));
  results[1].figures.warnings = {"patch 19 clips", "the light is <uneven>"};
  results[5].figures.meanError.reset();
  results.push_back(result("broken.jpg", Job::chart, illum_A, 0.0));
  results.back().job = job;
  results.back().result = results.back().thumbnail = "";
  results.back().reason = "can't read it";
  return results;
}

// The page without what all pages begin with.
std::string bodyOf(const std::string& page) {
  return page.substr(page.find("<h1>"));
}

TEST(GoldenBatch, PagesSummariesAndResults) {
  for (const Job job : {Job::chart, Job::ccm, Job::evaluate}) {
    const std::vector<Result> results = resultsOf(job);
    Settings settings;
    settings.job = job;
    Summary summary = summaryOf(results, settings);
    summary.version = "0.0.1";
    Summary again;
    fromJson(toJson(summary), again);
    EXPECT_EQ(toJson(again), toJson(summary));
    const std::string name(kJobNames[static_cast<std::size_t>(job)]);
    expectGolden("batch/golden/" + name + ".html", bodyOf(indexPage(results, summary)));
    expectGolden("batch/golden/" + name + ".json", toJson(summary) + toJson(results[0]) +
                                                       toJson(results[1]) + toJson(results.back()));
    expectGolden("batch/golden/" + name + ".csv", resultsCsv(results));
  }
  std::vector<Result> odd = resultsOf(Job::ccm);
  (*odd[3].figures.matrix)[2] = {9.0, -4.0, -4.0};  // in the last row and each column
  Summary summary = summaryOf(odd, {}), again;
  fromJson(toJson(summary), again);
  EXPECT_EQ(toJson(again), toJson(summary));
  const std::vector<Result> none{result("only.png", Job::ccm, illum_A, 0.75)};
  summary = summaryOf(none, {});
  summary.version = "0.0.1";
  expectGolden("batch/golden/one.html", bodyOf(indexPage(none, summary)));
}

}  // namespace
}  // namespace greycard::batch
