// The filters against OpenCV's, which sums directly, in double precision.

#include "ip_filter_sep.h"

#include <gtest/gtest.h>

#include <opencv2/imgproc.hpp>
#include <random>

#include "exception.h"
#include "ip_filter_1d.h"

namespace greycard::pxcore {
namespace {

// A millionth of this is what the brightest pixel may leave behind where the sum is 0.
constexpr double kTrace = 1e-3;

TVector<float> cosine(std::uint64_t taps) {
  IpFilter1D filter;
  filter.CosineKernel(taps);
  return filter.Kernel();
}

TVector<float> ramp(std::size_t taps) {
  TVector<float> kernel(taps);
  for (std::size_t i = 0; i < taps; ++i) kernel[i] = static_cast<float>(i + 1);
  return kernel;
}

cv::Mat matOf(const TVector<float>& kernel) {
  cv::Mat mat(static_cast<int>(kernel.Length()), 1, CV_64F);
  for (std::size_t i = 0; i < kernel.Length(); ++i)
    mat.at<double>(static_cast<int>(i)) = static_cast<double>(kernel[i]);
  return mat;
}

// Squared noise with black parts and a few very bright pixels: what has left a window must leave no
// trace.
TImage<float>& energy(TImage<float>& image) {
  std::mt19937 random(1);
  for (std::uint64_t y = 0; y < image.Height(); ++y)
    for (std::uint64_t x = 0; x < image.Width(); ++x) {
      const float v = static_cast<float>(random() % 1000) * 0.01F;
      image.RowPtr(y)[x] = random() % 500 == 0 ? 65025.0F : x / 300 % 2 == 1 ? 0.0F : v * v;
    }
  return image;
}

TEST(IpFilterSep, IsTheDirectSum) {
  const struct {
    std::uint64_t w, h;
    TVector<float> across, down;
  } cases[] = {{1, 1, cosine(205), cosine(205)},     {3, 3, cosine(205), cosine(205)},
               {1, 700, cosine(205), cosine(205)},   {2200, 1, cosine(205), cosine(205)},
               {17, 2200, cosine(25), cosine(205)},  {1100, 70, cosine(205), cosine(25)},
               {600, 300, cosine(205), cosine(205)}, {40, 30, cosine(1), cosine(2)},
               {300, 200, cosine(206), cosine(24)},  {50, 40, ramp(4), ramp(7)},
               {3, 2, ramp(9), cosine(11)}};
  for (const auto& [w, h, across, down] : cases) {
    SCOPED_TRACE(testing::Message() << w << " x " << h << ", " << across.Length() << " taps");
    TImage<float> in(w, h), out(w, h);
    energy(in);
    IpFilterSep transposed;
    transposed.SetKernel(down, across);
    const IpFilterSep filter(transposed, true);
    filter.FilterImage(in, out);
    cv::Mat mat, sum;
    cv::Mat(static_cast<int>(h), static_cast<int>(w), CV_32F, in.RowPtr(0), in.Stride())
        .convertTo(mat, CV_64F);
    cv::sepFilter2D(mat, sum, CV_64F, matOf(across), matOf(down), {-1, -1}, 0, cv::BORDER_REFLECT);
    double worst = 0.0;
    for (int y = 0; y < sum.rows; ++y)
      for (int x = 0; x < sum.cols; ++x) {
        const double expected = sum.at<double>(y, x);
        const double error = std::abs(out.RowPtr(static_cast<std::uint64_t>(y))[x] - expected);
        worst = std::max(worst, error / (expected + kTrace));
      }
    EXPECT_LT(worst, 1e-6);
    filter.FilterImage(in, in);  // in place
    EXPECT_TRUE(std::equal(in.RowPtr(h - 1), in.RowPtr(h - 1) + w, out.RowPtr(h - 1)));
  }
}

// What a long bright stretch leaves in the running sums is gone with the next sums taken afresh.
TEST(IpFilterSep, DarknessIsZeroAgainAfterAThousandPixels) {
  for (const bool across : {true, false}) {
    TImage<float> image(across ? 6000 : 1, across ? 1 : 6000), out(image.Width(), image.Height());
    for (std::uint64_t i = 0; i < 6000; ++i)
      image.RowPtr(across ? 0 : i)[across ? i : 0] =
          i < 4000 ? 65025.0F - static_cast<float>(i % 7) : 0.0F;
    IpFilterSep(cosine(205)).FilterImage(image, out);
    for (std::uint64_t i = 5120; i < 6000; ++i)
      ASSERT_EQ(out.RowPtr(across ? 0 : i)[across ? i : 0], 0.0F) << i;
  }
}

TEST(IpFilter1D, KernelAndConvolution) {
  // Values of cos at 0, +-30 and +-60 degrees.
  const double half = 0.5, root = std::sqrt(0.75), all = 1.0 + 2.0 * (half + root);
  const auto kernel = cosine(5);
  for (const auto& [i, value] : {std::pair{0, half}, {1, root}, {2, 1.0}, {3, root}, {4, half}})
    EXPECT_NEAR(kernel[static_cast<std::size_t>(i)], value / all, 1e-7);

  const IpFilter1D filter(ramp(3));
  const float signal[] = {1, 0, -2, 5};
  const float expected[] = {1, 2, 1, 1, 4, 15};  // by hand
  const auto found = filter.ConvSignal(4, signal);
  ASSERT_EQ(found.Length(), 6u);
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(found[i], expected[i]) << i;

  EXPECT_THROW(IpFilter1D().CosineKernel(0), ExceptionCheck);
  EXPECT_THROW(filter.ConvSignal(0, signal), ExceptionCheck);
  EXPECT_THROW(IpFilter1D().ConvSignal(4, signal), ExceptionCheck);
}

}  // namespace
}  // namespace greycard::pxcore
