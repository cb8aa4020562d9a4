#include "greycard/batch/result.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>

#include "greycard/chart_regions.h"
#include "greycard/chart_simulator.h"
#include "greycard/present/chart.h"
#include "greycard/version.h"
#include "scratch_folder.h"

namespace greycard::batch {
namespace {

using testing::HasSubstr;

class Results : public ScratchFolder {
 protected:
  File chart() const {
    ChartSimulator simulator;
    simulator.m_settings.width = 320;
    simulator.m_settings.height = 240;
    simulator.Simulate();
    writePicture(folder / "chart.png", simulator.m_picture);
    return {folder / "chart.png", "chart.png"};
  }
};

TEST_F(Results, HoldTheJobsOwnJsonAndReadBackWhole) {
  const File file = chart();
  Settings settings;
  for (const Job job : {Job::chart, Job::ccm, Job::evaluate}) {
    settings.job = job;
    std::vector<double> progress;
    const auto result = doPhotograph(file, settings, [&](double done) {
      progress.push_back(done);
      return true;
    });
    ASSERT_TRUE(result);
    EXPECT_TRUE(std::ranges::is_sorted(progress));
    EXPECT_EQ(progress.front(), 0.0);
    EXPECT_EQ(result->reason, "");
    const Photograph photograph = readPhotograph(file.photo);
    const std::string expected = job == Job::chart
                                     ? present::toJson(searchChart(photograph, LocateOptions{}))
                                 : job == Job::ccm ? present::toJson(*fitChart(photograph))
                                                   : present::toJson(evaluateChart(photograph));
    EXPECT_EQ(result->result, expected);
    Result again;
    fromJson(toJson(*result), again);
    EXPECT_EQ(again.result, expected);
    EXPECT_EQ(toJson(again), toJson(*result));
    EXPECT_EQ(again.figures.matrix, result->figures.matrix);
    EXPECT_EQ(again.figures.meanError, result->figures.meanError);
    EXPECT_THAT(result->thumbnail, testing::StartsWith("data:image/jpeg;base64,"));
    if (job == Job::chart) continue;
    const ErrorColumn errors = job == Job::ccm ? fitChart(photograph)->after.ciede2000
                                               : evaluateChart(photograph).errors.ciede2000;
    EXPECT_EQ(result->figures.meanError, errors.mean);
    EXPECT_EQ(result->figures.worstError, errors.worst);
    EXPECT_EQ(result->figures.worstPatch, errors.worstPatch);
    EXPECT_EQ(result->figures.light, illum_D65);
  }
  EXPECT_FALSE(doPhotograph(file, settings, [](double) { return false; })) << "cancelled";
}

TEST_F(Results, TellWhyAPhotographFailed) {
  Picture grey(64, 48, 3, 8);
  writePicture(folder / "blank.png", grey);
  write("junk.jpg", "junk");
  struct Case {
    const char *name, *told;
    bool read;  // a content that is there fails the same way again
  };
  for (const Case& c : {Case{"absent.png", "absent.png", false}, Case{"junk.jpg", "picture", true},
                        Case{"blank.png", "chart", true}, Case{".", "folder", false}})
    for (const Job job : {Job::chart, Job::ccm}) {
      Settings settings;
      settings.job = job;
      const Result result = *doPhotograph({folder / c.name, c.name}, settings);
      EXPECT_THAT(result.reason, HasSubstr(c.told));
      EXPECT_EQ(result.contentHash.empty(), !c.read) << c.name;
      EXPECT_EQ(result.thumbnail.empty(), std::string(c.name) != "blank.png") << c.name;
      Result again;
      fromJson(toJson(result), again);
      EXPECT_EQ(toJson(again), toJson(result));
    }
}

TEST_F(Results, OfAWorkerThatDiedTellItInOneLine) {
  const Result result = failedResult({folder / "a.png", "a.png"}, Settings(), "killed\nby 9\x7f");
  EXPECT_EQ(result.reason, "killed?by 9?");
  EXPECT_TRUE(result.failed());
  EXPECT_EQ(result.job, Job::ccm);
}

// A chart in doubt that is forced: its doubts are told.
TEST_F(Results, OfAForcedChartTellItsDoubts) {
  const File file = chart();
  PatchRegions turned = searchChart(readPicture(file.photo)).chart.regions;
  std::ranges::reverse(turned);
  writeRegions(folder / "turned.txt", turned);
  Settings settings;
  settings.job = Job::chart;
  settings.options = R"({"force": true, "regions": ")" + (folder / "turned.txt").string() + "\"}";
  const Result result = *doPhotograph(file, settings);
  EXPECT_EQ(result.reason, "");
  EXPECT_THAT(result.figures.warnings,
              testing::Contains(HasSubstr("may not be where the regions")));
  settings.options.replace(settings.options.find("true"), 4, "false");
  const Result refused = *doPhotograph(file, settings);
  EXPECT_TRUE(refused.failed());
  EXPECT_EQ(refused.thumbnail, result.thumbnail);  // with the patches in it
}

TEST_F(Results, AreDoneWhileNothingThatBearsOnThemChanges) {
  const File file = chart();
  const auto place = folder / "chart.json";
  const Settings settings;
  const auto isDoneNow = [&] { return isDone(place, file, settings); };
  EXPECT_FALSE(isDoneNow()) << "no file";
  const Result result = *doPhotograph(file, settings);
  writeResult(place, result);
  EXPECT_TRUE(isDoneNow());

  Settings others;
  others.options = R"({"light": "A"})";
  EXPECT_FALSE(isDone(place, file, others));
  const std::string whole = toJson(result);
  for (const std::string& text : {std::string(), whole.substr(0, whole.size() / 2),
                                  std::string("{}"), std::string("\0\xff", 2)}) {
    writeWholeFile(place, text);
    EXPECT_FALSE(isDoneNow()) << text.size() << " bytes";
  }
  Result older = result;
  older.version = "0.0.9";
  writeResult(place, older);
  EXPECT_FALSE(isDoneNow());
  writeResult(place, failedResult(file, settings, "its worker died"));
  EXPECT_FALSE(isDoneNow());
  writeResult(place, result);
  EXPECT_TRUE(isDoneNow());
  std::ofstream(file.photo, std::ios::app) << "x";
  EXPECT_FALSE(isDoneNow()) << "the photograph has changed";
}

}  // namespace
}  // namespace greycard::batch
