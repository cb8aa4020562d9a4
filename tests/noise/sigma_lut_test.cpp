#include "greycard/sigma_lut.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <opencv2/imgproc.hpp>
#include <thread>

#include "exception.h"
#include "greycard/flat_field_simulator.h"
#include "velmo_utils.h"

namespace greycard {
namespace {

using Samples = std::vector<std::uint16_t>;

Picture flatField(int width, int height, double sigma, double gain, std::uint64_t seed) {
  FlatFieldSimulator simulator;
  simulator.m_settings = {
      .width = width, .height = height, .centreSigma = sigma, .cornerGain = gain, .seed = seed};
  EXPECT_TRUE(simulator.Simulate());
  return simulator.m_picture;
}

SigmaLUT calculate(std::uint64_t width, std::uint64_t height, const Samples& samples) {
  SigmaLUT sigma;
  EXPECT_TRUE(sigma.CalculateSigmaLUT(width, height, samples));
  return sigma;
}

cv::Mat cosineFiltered(const cv::Mat& image, int taps) {
  cv::Mat kernel(taps, 1, CV_64F), filtered;
  for (int i = 0; i < taps; ++i)
    kernel.at<double>(i) = std::cos((i - (taps - 1) / 2.0) * CV_PI / (taps + 1));
  kernel /= cv::sum(kernel)[0];
  cv::sepFilter2D(image, filtered, CV_64F, kernel, kernel, {-1, -1}, 0, cv::BORDER_REFLECT);
  return filtered;
}

// The table as it is defined, in plain loops and double precision; rings in single precision.
struct PlainTable {
  double centre = 0.0;
  std::vector<double> ring, table, residuals;
  std::vector<std::uint64_t> pixels;
  cv::Mat sigma;

  PlainTable(int w, int h, const Samples& samples) {
    const int cx = w / 2, cy = h / 2;
    const auto scale = static_cast<float>(std::sqrt(1.0 * cx * cx + 1.0 * cy * cy) / 164.0);
    const float corner = std::sqrt(static_cast<float>(cx * cx + cy * cy)) / scale;
    ring.resize(std::max<std::size_t>(164, static_cast<std::size_t>(std::ceil(corner))), 0.001);
    pixels.resize(ring.size());
    residuals.resize(ring.size());
    cv::Mat image(h, w, CV_64F);
    std::ranges::copy(samples, image.ptr<double>());
    const cv::Mat residual = cosineFiltered(image, 25) - image;
    cv::sqrt(cosineFiltered(residual.mul(residual), 205), sigma);
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) {
        const double s = sigma.at<double>(y, x);
        if (cx >= 300 && cy >= 300 && std::abs(y - cy + 0.5) < 300 && std::abs(x - cx + 0.5) < 300)
          centre = std::max(centre, s);
        const float r = std::sqrt(static_cast<float>((x - cx) * (x - cx) + (y - cy) * (y - cy)));
        const auto bin =
            std::min<std::size_t>(static_cast<std::size_t>(r / scale + 0.5F), ring.size() - 1);
        ring[bin] = std::max(ring[bin], s);
        residuals[bin] += std::pow(residual.at<double>(y, x), 2);
        ++pixels[bin];
      }
    smooth();
  }
  void smooth() {
    std::vector<double> step(ring.size(), 0.0);
    for (std::size_t i = 1; i < ring.size(); ++i) {
      step[i] = (ring[i] - ring[i - 1]) / ring[0];
      if (step[i] < -0.1) step[i] = 0.0;
    }
    double sum = 0.0, t = 1.0;
    for (int k = -5; k <= 5; ++k) sum += std::cos(k * CV_PI / 12);
    for (int i = 0; i < 164; ++i) {
      for (int k = -5; i > 0 && k <= 5; ++k)
        if (i + k >= 0 && i + k < static_cast<int>(ring.size()))
          t += step[static_cast<std::size_t>(i + k)] * std::cos(k * CV_PI / 12) / sum;
      table.push_back(t);
    }
  }
};

TEST(SigmaLut, FollowsItsDefinition) {
  for (const auto& [w, h, gain] :
       {std::array{701, 640, 3}, {400, 90, 20}, {31, 9082, 1}, {2, 2, 1}, {7, 7, 1}}) {
    SCOPED_TRACE(testing::Message() << w << " x " << h);
    const Picture picture = flatField(w, h, 2.0, gain, 5);
    const auto width = static_cast<std::uint64_t>(w), height = static_cast<std::uint64_t>(h);
    SigmaLUT sigma;
    std::vector<float> local(picture.samples.size());
    ASSERT_TRUE(sigma.CalculateSigmaLUT(width, height, picture.samples, local));
    const PlainTable plain(w, h, picture.samples);
    for (std::size_t i = 0; i < local.size(); ++i)
      ASSERT_NEAR(local[i], plain.sigma.ptr<double>()[i], 1e-4) << i;
    EXPECT_NEAR(sigma.center_noise_sigma, plain.centre, 1e-5);
    EXPECT_NEAR(sigma.report.centreRingSigma, plain.ring[0], 1e-5);
    EXPECT_TRUE(std::equal(sigma.report.ringPixels.begin(), sigma.report.ringPixels.end(),
                           plain.pixels.begin()));
    VelmoLib::VelmoUtils::RNRLUT raw;
    const std::vector<unsigned char> bytes(picture.samples.begin(), picture.samples.end());
    VelmoLib::VelmoUtils::EstimateRnrSigmaLutFormYuv(
        false, width, height,
        static_cast<float>(std::sqrt(w / 2 * (w / 2) + h / 2 * (h / 2)) / 164.0), bytes.data(),
        raw);
    for (std::size_t i = 0; i < 164; ++i) {
      SCOPED_TRACE(i);
      EXPECT_NEAR((*sigma.lut)[i], std::max(plain.table[i], 1.0), 1e-4);
      EXPECT_NEAR(raw.lut[i], i == 0 ? 1.0 : plain.ring[i] / plain.ring[0], 1e-4);
      EXPECT_EQ(raw.lut[i], sigma.report.rawRatio[i]);
      const double mean = plain.residuals[i] / std::max(1.0, static_cast<double>(plain.pixels[i]));
      EXPECT_NEAR(sigma.report.residualSigma[i], std::sqrt(mean), 1e-4);
    }
  }
}

TEST(SigmaLut, FlatAndSmallPictures) {
  // One pixel, fewer than the kernels' taps, fewer than the centre window.
  for (const auto& [w, h] : {std::pair{1, 1}, {3, 3}, {1, 400}, {500, 500}, {600, 600}}) {
    const SigmaLUT sigma = calculate(static_cast<std::uint64_t>(w), static_cast<std::uint64_t>(h),
                                     Samples(static_cast<std::size_t>(w * h), 255));
    EXPECT_EQ(sigma.center_noise_sigma, 0.0F);
    EXPECT_THAT(*sigma.lut, testing::Each(1.0F));
    EXPECT_EQ(sigma.msg, "");
    EXPECT_EQ(sigma.report.centreWindowEmpty, w < 600);
    EXPECT_EQ(sigma.report.ceilingShare, 1.0);
    EXPECT_EQ(std::accumulate(sigma.report.ringPixels.begin(), sigma.report.ringPixels.end(), 0u),
              static_cast<unsigned>(w * h));
  }
}

// A tenth of the shorter side: squares of 3 pixels, in the middle from (18, 13) on.
TEST(SigmaLut, MeansOfTheCentreAndOfTheCorners) {
  Samples samples;
  for (int y = 0; y < 30; ++y)
    for (int x = 0; x < 40; ++x) samples.push_back(static_cast<std::uint16_t>(3 * x + y * y / 8));
  samples[0] = 256 + 255;
  double sums[2]{};
  for (int y = 0; y < 30; ++y)
    for (int x = 0; x < 40; ++x) {
      const double sample = samples[static_cast<std::size_t>(40 * y + x)] & 255;
      if (x >= 18 && x < 21 && y >= 13 && y < 16) sums[0] += sample / 9;
      if ((x < 3 || x >= 37) && (y < 3 || y >= 27)) sums[1] += sample / 36;
    }
  const SigmaReport report = calculate(40, 30, samples).report;
  EXPECT_NEAR(report.centreMean, sums[0], 1e-9);
  EXPECT_NEAR(report.cornerMean, sums[1], 1e-9);
  EXPECT_NEAR(report.fallOff(), 1 - sums[1] / sums[0], 1e-12);
  EXPECT_EQ(SigmaReport().fallOff(), 0.0);
  EXPECT_EQ(report.ceilingShare, 1 / 1200.0);
  EXPECT_EQ(report.floorShare, 2 / 1200.0);
  EXPECT_EQ(report.highByteDropped, 1u);
}

// A pattern of +-amplitude has that as its local sigma.
TEST(SigmaLut, AdvisesTheUser) {
  const std::string raised = "Some calculated values were below 1.0 and have been clamped to 1.0.";
  const std::string exceeds =
      "Sigma LUT exceeds typical range. The image may have blank pixels at its border. Please "
      "check "
      "the image and crop the blank pixels.";
  const struct {
    double middle, rim;  // amplitude at 0.4 of the half-diagonal, and beyond 0.7
    std::string message;
  } cases[] = {{10, 10, ""},
               {10, 49, ""},
               {6, 6, raised},
               {10, 51, exceeds},
               {6, 90, raised + "  " + exceeds}};
  for (const auto& [middle, rim, message] : cases) {
    Samples samples;
    for (int y = 0; y < 1200; ++y)
      for (int x = 0; x < 1600; ++x) {
        const double rho = std::hypot(x - 800, y - 600) / 1000.0;
        const double amplitude =
            rho > 0.7 ? rim : std::lerp(10.0, middle, std::min(rho / 0.4, 1.0));
        samples.push_back(
            static_cast<std::uint16_t>(128.0 + ((x + y) % 2 == 0 ? amplitude : -amplitude) + 0.5));
      }
    const SigmaLUT sigma = calculate(1600, 1200, samples);
    EXPECT_EQ(sigma.msg, message);
    EXPECT_GE(*std::ranges::min_element(*sigma.lut), 1.0F);
  }
}

TEST(SigmaLut, Refusals) {
  SigmaLUT sigma = calculate(2, 2, Samples(4, 9));
  const Samples samples(6, 9);
  const auto isEmpty = [&] { return sigma.msg.empty() && !sigma.lut; };
  EXPECT_FALSE(sigma.CalculateSigmaLUT(3, 2, {}));
  EXPECT_TRUE(isEmpty());
  EXPECT_FALSE(sigma.CalculateSigmaLUT(0, 2, samples));
  EXPECT_FALSE(sigma.CalculateSigmaLUT(3, 0, samples));
  constexpr auto kHuge = std::numeric_limits<std::uint64_t>::max();
  for (const auto& [w, h] : {std::pair{std::uint64_t{7}, std::uint64_t{1}}, {kHuge, 2}, {2, kHuge}})
    EXPECT_THROW(sigma.CalculateSigmaLUT(w, h, samples), std::invalid_argument);
  std::vector<float> places(5);
  EXPECT_THROW(sigma.CalculateSigmaLUT(3, 2, samples, places), std::invalid_argument);
  EXPECT_TRUE(isEmpty());

  using VelmoLib::VelmoUtils;
  VelmoUtils::RNRLUT table;
  const unsigned char byte = 7;
  const auto estimate = [&](std::uint64_t w, std::uint64_t h, float scale) {
    VelmoUtils::EstimateRnrSigmaLutFormYuv(true, w, h, scale, &byte, table);
  };
  EXPECT_THROW(estimate(kHuge, kHuge, 1.0F), pxcore::ExceptionRuntime);
  EXPECT_THROW(estimate(1ULL << 32, 1ULL << 32, 1.0F), pxcore::ExceptionRuntime);
  EXPECT_THROW(estimate(1, 0, 1.0F), pxcore::ExceptionCheck);
  pxcore::TImage<unsigned char> image(3, 3);
  std::fill_n(image.RowPtr(0), 3 * image.Stride(), byte);
  for (const float scale : {0.0F, -1.0F, 1e-30F, std::nanf("")})
    EXPECT_THROW(VelmoUtils::EstimateRnrSigmaLutFormYuv(true, 3, 3, scale, image, table),
                 pxcore::ExceptionCheck);
  for (const auto& [w, h] : {std::pair{3, 4}, {4, 3}})
    EXPECT_THROW(
        VelmoUtils::EstimateRnrSigmaLutFormYuv(true, static_cast<std::uint64_t>(w),
                                               static_cast<std::uint64_t>(h), 1.0F, image, table),
        pxcore::ExceptionCheck);
}

TEST(SigmaLutTwoThreads, DoNotMeet) {
  const Picture picture = flatField(300, 200, 3.0, 2.0, 1);
  const SigmaLUT alone = calculate(300, 200, picture.samples);
  SigmaLUT first, second;
  std::thread other([&] { second = calculate(300, 200, picture.samples); });
  first = calculate(300, 200, picture.samples);
  other.join();
  EXPECT_EQ(first.lut, alone.lut);
  EXPECT_EQ(second.lut, alone.lut);
}

}  // namespace
}  // namespace greycard
