#include "linear_interpolation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

namespace greycard {
namespace {

using Values = std::vector<double>;

TEST(Interp1, NearestNeighbourTiesGoToTheLaterEntry) {
  const Values x{0, 1, 2, 3, 3};
  for (const auto& [value, index] : {std::pair{2.5, 4}, {1.5, 2}, {1.4, 1}, {-9.0, 0}, {99.0, 4}})
    EXPECT_EQ(nearestNeighbourIndex<double>(x, value), index) << value;
  EXPECT_EQ(nearestNeighbourIndex<double>({}, 1.0), 0);
}

TEST(Interp1, JoinsThePointsByLinesAndGoesOnBeyondThem) {
  const Values x{0, 1, 3}, y{0, 10, 20};
  EXPECT_EQ(interp1<double>(x, y, Values{-1, 0, 0.25, 0.75, 1, 1.5, 2.5, 3, 5}),
            (Values{-10, 0, 2.5, 7.5, 10, 12.5, 17.5, 20, 30}));
  EXPECT_TRUE(std::isnan(interp1<double>(Values{1, 1}, Values{0, 1}, Values{1})[0]));
  EXPECT_THROW(interp1<double>(Values{1}, Values{1}, Values{1}), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
