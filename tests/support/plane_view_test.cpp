#include "plane_view.h"

#include <gmock/gmock.h>

#include <numeric>
#include <utility>
#include <vector>

#include "picture_view.h"

namespace greycard {
namespace {

using testing::ElementsAre;

TEST(PlaneView, StepsOverTheGapsOfItsRows) {
  std::vector<int> memory(15);
  std::iota(memory.begin(), memory.end(), 0);
  const PlaneView<int> plane(memory.data(), 4, 3, 5);  // columns 0 to 3 of 5
  EXPECT_THAT(plane.row(2), ElementsAre(10, 11, 12, 13));
  EXPECT_THAT(plane.run(1, 1, 3), ElementsAre(6, 7));
  const PlaneView<int> part = plane.part(1, 1, 2, 2);
  EXPECT_THAT(part.row(1), ElementsAre(11, 12));
  part(0, 1) = -1;
  EXPECT_EQ(memory[11], -1);
  EXPECT_EQ(plane.part(4, 3, 0, 0).height(), 0u);
  Picture picture(2, 3, 3, 8);
  samplesOf(picture)(5, 2) = 9;
  EXPECT_EQ(picture.pixel(1, 2)[2], 9);
  EXPECT_EQ(samplesOf(std::as_const(picture)).width(), 6u);
}

#ifndef NDEBUG
TEST(PlaneViewDeath, OutsideThePlaneStopsADebugBuild) {
  std::vector<int> memory(12);
  const PlaneView<int> plane(memory, 4, 3);
  EXPECT_DEATH(plane.row(3), "y < m_height");
  EXPECT_DEATH(plane(4, 0), "x < m_width");
  EXPECT_DEATH(plane.run(0, 2, 5), "end <= m_width");
  EXPECT_DEATH(plane.part(1, 0, 4, 1), "width <= m_width - x");
  EXPECT_DEATH(PlaneView<int>(memory, 4, 4), "elements.size");
}
#endif

}  // namespace
}  // namespace greycard
