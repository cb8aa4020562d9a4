#include "result/chart_doubts.h"

#include <gmock/gmock.h>

#include <functional>

namespace greycard {
namespace {

using testing::ElementsAre;

// A window without any doubt.
ChartWindow sureWindow() {
  ChartWindow window;
  window.inside = window.flat = window.supporting = 24;
  window.colour.score = 0.9;
  window.colour.neutralsDarken = true;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    PlaceSample& sample = window.samples[i];
    sample.inside = true;
    const auto level = static_cast<float>(250 - 10 * i);
    for (auto& mean : sample.mean) mean = level;
  }
  return window;
}

TEST(ChartDoubts, BeginWhereTheyAreStated) {
  const struct {
    std::function<void(ChartWindow&)> change;
    double side;
    const char* doubt;
  } cases[] = {
      {[](ChartWindow& w) { w.flat = 21; }, 9.0, ""},
      {[](ChartWindow& w) { w.flat = 20, w.samples[4].scatter = 30, w.gain = 2; }, 9.0,
       "4 of the 24 regions are not uniform, most of all that of patch 5 (parts of it differ from "
       "its mean by 15 of 255 levels)"},
      {[](ChartWindow& w) { w.inside = w.flat = 23; }, 9.0,
       "1 of the 24 patch centres lie outside the picture"},
      {[](ChartWindow& w) { w.colour.score = 0.7; }, 9.0, ""},
      {[](ChartWindow& w) { w.colour.score = 0.69; }, 9.0,
       "the patches do not follow the chart's colours (likeness 0.69, a chart gives above 0.70)"},
      {[](ChartWindow& w) { w.colour.neutralsDarken = false; }, 9.0,
       "the neutral row does not darken from white to black: patches 19 and 24 are nearly equal"},
      {[](ChartWindow& w) {
         w.colour.neutralsDarken = false;
         for (auto& mean : w.samples[20].mean) mean += 12.5F;
       },
       9.0,
       "the neutral row does not darken from white to black: patch 21 is brighter than patch 20"},
      {[](ChartWindow& w) {
         w.colour.neutralsDarken = false;
         for (auto& mean : w.samples[20].mean) mean += 12.0F;
       },
       9.0,
       "the neutral row does not darken from white to black: patches 19 and 24 are nearly equal"},
      {[](ChartWindow&) {}, 5.0, ""},
      {[](ChartWindow&) {}, 4.9,
       "the patches are only about 5 pixels wide, too few to judge the fit"}};
  for (const auto& c : cases) {
    ChartWindow window = sureWindow();
    c.change(window);
    const auto doubts = chartDoubts(window, 0.7, c.side);
    if (std::string(c.doubt).empty())
      EXPECT_THAT(doubts, testing::IsEmpty());
    else
      EXPECT_THAT(doubts, ElementsAre(c.doubt));
  }
  EXPECT_EQ(patchWords({3}), "patch 3");
  EXPECT_EQ(patchWords({3, 7}), "patches 3 and 7");
  EXPECT_EQ(patchWords({3, 7, 24}), "patches 3, 7 and 24");
}

}  // namespace
}  // namespace greycard
