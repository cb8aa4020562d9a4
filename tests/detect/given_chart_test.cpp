#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "chart_renderer.h"
#include "greycard/chart_location.h"
#include "greycard/chart_search_pictures.h"

namespace greycard {
namespace {

using testing::Contains;
using testing::HasSubstr;

// Corners of the patch centres' field, each moved outward by so many pitches.
ChartCorners cornersOf(const ChartPose& pose, double beyond) {
  ChartCorners corners;
  corners.kind = CornerKind::PatchCentres;
  const double signs[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
  for (std::size_t k = 0; k < 4; ++k)
    corners.points[k] = project(pose, signs[k][0] * (2.5 + beyond), signs[k][1] * (1.5 + beyond));
  return corners;
}

TEST(GivenChart, CornersAreMovedToThePatchesSeenNearThem) {
  ChartPose pose{.turnDegrees = 20, .tiltX = 0.03, .tiltY = -0.02};
  const auto picture = renderChart(pose);
  for (const double beyond : {0.0, 0.15, -0.2}) {
    const auto detection = placeChart(picture, cornersOf(pose, beyond));
    EXPECT_EQ(detection.method, ChartMethod::Corners);
    EXPECT_TRUE(detection.trustworthy());
    EXPECT_LT(worstDistance(detection.placement.centres, trueCentres(pose)), 0.06 * pose.pitch);
  }
  auto exactly = cornersOf(pose, 0.0);
  exactly.refine = false;
  EXPECT_LT(worstDistance(placeChart(picture, exactly).placement.centres, trueCentres(pose)), 0.02)
      << "the fit holds its perspective terms back a little";
  exactly.kind = CornerKind::PatchField;
  EXPECT_FALSE(placeChart(picture, exactly).trustworthy()) << "half a patch off all round";
}

TEST(GivenChart, WrongCornersAreDoubtedOrRefused) {
  const ChartPose pose;
  const auto picture = renderChart(pose);
  auto corners = cornersOf(pose, 0.0);
  std::rotate(corners.points.begin(), corners.points.begin() + 2, corners.points.end());
  EXPECT_THAT(placeChart(picture, corners).doubts, Contains(HasSubstr("the third of them")));
  std::swap(corners.points[1], corners.points[3]);
  EXPECT_THAT([&] { placeChart(picture, corners); },
              testing::ThrowsMessage<std::invalid_argument>(HasSubstr("anticlockwise")));
  for (const Point2& place :
       {corners.points[2], Point2{std::numeric_limits<double>::infinity(), 0}}) {
    corners.points[0] = place;
    EXPECT_THROW(placeChart(picture, corners), std::invalid_argument);
  }
}

TEST(GivenChart, PatchesGoThroughTheSameChecks) {
  const ChartPose pose;
  const auto picture = renderChart(pose);
  auto patches = placeChart(picture, cornersOf(pose, 0.0)).placement.patches;
  EXPECT_TRUE(checkPatches(picture, patches).trustworthy());
  for (auto& patch : patches)
    for (auto& corner : patch) corner.x += pose.pitch;
  EXPECT_FALSE(checkPatches(picture, patches).trustworthy());
  std::reverse(patches.begin(), patches.end());
  EXPECT_THAT(checkPatches(picture, patches).doubts, Contains(HasSubstr("does not darken")));
}

TEST(StagePictures, ShowTheWayToTheChart) {
  const auto stages = chartSearchStages(renderChart({}));
  ASSERT_EQ(stages.size(), 4U);
  EXPECT_EQ(stages.front().name, "1_working");
  EXPECT_NE(stages[2].picture.samples, stages[3].picture.samples);
  EXPECT_TRUE(chartSearchStages(Picture(65535, 1, 3, 8)).empty());
}

}  // namespace
}  // namespace greycard
