#include "flatness.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <opencv2/core.hpp>

namespace greycard {
namespace {

// Least squares by another's solver.
TEST(Unflatness, IsWhatTheBestFallOffLeaves) {
  pxcore::TImage<unsigned char> image;
  constexpr int kAcross = 12, kDown = 9, kBlock = 25;
  image.Create(kAcross * kBlock, kDown * kBlock);
  cv::Mat radii(kAcross * kDown, 3, CV_64F), means(kAcross * kDown, 1, CV_64F), best;
  double sum = 0.0;
  for (int j = 0; j < kDown; ++j)
    for (int i = 0; i < kAcross; ++i) {
      const int value = 120 + (i * 31 + j * 17) % 40 - (i - 6) * (i - 6) / 2;
      for (int y = 0; y < kBlock; ++y)
        for (int x = 0; x < kBlock; ++x)
          image.RowPtr(static_cast<std::uint64_t>(j * kBlock + y))[i * kBlock + x] =
              static_cast<unsigned char>(value);
      const double x = i + 0.5 - 0.5 * kAcross, y = j + 0.5 - 0.5 * kDown;
      const double r2 = (x * x + y * y) / (36.0 + 20.25);
      const int row = j * kAcross + i;
      for (int k = 0; k < 3; ++k) radii.at<double>(row, k) = std::pow(r2, k);
      means.at<double>(row) = value;
      sum += value;
    }
  cv::solve(radii, means, best, cv::DECOMP_SVD);
  const double left = cv::norm(means - radii * best) / std::sqrt(means.rows);
  EXPECT_NEAR(unflatness(image).value(), left / (sum / means.rows), 1e-9);
  pxcore::TImage<unsigned char> black;
  black.Create(kAcross * kBlock, kDown * kBlock);
  for (std::uint64_t y = 0; y < black.Height(); ++y) std::fill_n(black.RowPtr(y), black.Width(), 0);
  EXPECT_FALSE(unflatness(black));
}

}  // namespace
}  // namespace greycard
