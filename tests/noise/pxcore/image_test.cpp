#include "image.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>
#include <numeric>
#include <opencv2/core.hpp>

#include "ip_filter_sep.h"
#include "sizes.h"

namespace greycard::pxcore {
namespace {

constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();

TEST(Image, PaddingMirrorsAgainAndAgain) {
  for (const auto& [w, h, pad] : {std::array{5, 4, 3}, {3, 3, 102}, {1, 7, 9}, {1, 1, 2}}) {
    SCOPED_TRACE(testing::Message() << w << " x " << h << ", " << pad);
    TImage<float> image(static_cast<std::uint64_t>(w), static_cast<std::uint64_t>(h)), padded;
    cv::Mat mat(h, w, CV_32F), expected;
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x)
        mat.at<float>(y, x) = image.RowPtr(static_cast<std::uint64_t>(y))[x] =
            static_cast<float>(10 * y + x);
    cv::copyMakeBorder(mat, expected, pad, pad, pad, pad, cv::BORDER_REFLECT);
    const Rect centre = padded.ClonePadded(image, static_cast<std::uint64_t>(pad));
    EXPECT_EQ(centre.x, static_cast<std::uint64_t>(pad));
    EXPECT_EQ(centre.height, static_cast<std::uint64_t>(h));
    image.ClonePadded(image, static_cast<std::uint64_t>(pad));
    for (TImage<float>* result : {&padded, &image}) {
      const cv::Mat found(expected.rows, expected.cols, CV_32F, result->RowPtr(0),
                          result->Stride());
      EXPECT_EQ(cv::norm(found, expected, cv::NORM_INF), 0.0);
    }
  }
}

TEST(Image, StridesAndViews) {
  EXPECT_EQ(TMem2D<float>::minStride(5, 3), 60u);
  EXPECT_EQ(TMem2D<short>::defaultMemStride(9, 1), 32u);
  EXPECT_EQ(TMem2D<short>::defaultMemStride(4, 2), 16u);
  EXPECT_EQ(TMem2D<float>().Stride(), 0u);
  EXPECT_EQ(TImage<unsigned char>::defaultImageStride(5), 8u);
  EXPECT_TRUE(ValidSize(3, 3, 4));
  EXPECT_FALSE(ValidSize(4, 3, 4));
  EXPECT_TRUE(ValidMultipliers(kHuge, 1));
  EXPECT_FALSE(ValidMultipliers(kHuge / 2 + 1, 2));
  EXPECT_TRUE(ValidMultipliers(0, kHuge) && ValidMultipliers(kHuge / 65536, 65536));
  EXPECT_FALSE(ValidMultipliers(65536, kHuge / 65536 + 1));

  TImage<unsigned char> bytes(4, 2);
  std::iota(bytes.RowPtr(0), bytes.RowPtr(0) + bytes.Stride() * 2, static_cast<unsigned char>(250));
  TImage<float> floats;
  floats.ConvertFrom(bytes);
  EXPECT_EQ(floats.RowPtr(0)[3], 253.0F);
  TImageRoi<float> view = floats.GetRectRoi({1, 1, 2, 1});
  view.ApplyPixelOp(view, [](float v) { return v + 1.0F; });
  floats.ApplyPixelOp(floats, floats, std::minus<>());
  EXPECT_EQ(floats.RowPtr(0)[0], 0.0F);
  EXPECT_EQ(view.RowPtr(0)[1], 0.0F);  // a view shares the pixels, and keeps them
  floats.Release();
  EXPECT_FALSE(floats.IsValid());
  EXPECT_TRUE(view.IsValid());
}

TEST(Image, ChecksNameTheConditionAndThePlace) {
  TImage<float> image(4, 3), other(3, 4), none;
  const IpFilterSep noKernel, filter(TVector<float>(3, 0.5F));
  const struct {
    std::function<void()> call;
    std::string text;
  } cases[] = {
      {[&] { filter.FilterImage(image, other); }, "imgIn.IsSameSize(imgOut)"},
      {[&] { filter.FilterImage(none, other); }, "imgIn.IsValid() && imgOut.IsValid()"},
      {[&] { noKernel.FilterImage(image, image); },
       "ValidSize(m_fvHKernel.Length()) && ValidSize(m_fvVKernel.Length())"},
      {[&] { none.ClonePadded(image, kHuge); }, "ValidSize(nPad, 0)"},
      {[&] { TMem2D<float>::minStride(kHuge / 2, 1); }, "ValidMultipliers(nByte, nCols)"},
      {[&] { TMem2D<short>::defaultMemStride(kHuge / 2, 1); }, "(nMinStride + 15) > nMinStride"},
      {[&] {
         image.GetRectRoi({3, 0, 2, 1});
       },
       "contains(rect)"},
      {[&] { none.TMem2D<float>::Create(4, 3, 1, 12); },
       "nStride >= minStride(nCols, nChannels) && nStride % sizeof(T) == 0"},
      {[&] { none.TMem2D<float>::Create(4, 3, 1, 18); },
       "nStride >= minStride(nCols, nChannels) && nStride % sizeof(T) == 0"},
      {[&] { none.TMem2D<float>::Create(4, 0); },
       "ValidSize(nCols) && ValidSize(nRows) && ValidSize(nChannels)"},
  };
  for (const auto& [call, text] : cases) {
    SCOPED_TRACE(text);
    try {
      call();
      ADD_FAILURE() << "not refused";
    } catch (const ExceptionCheck& error) {
      EXPECT_THAT(error.what(), testing::MatchesRegex("[A-Za-z]+ \\([0-9]+\\): assertion .*"));
      EXPECT_THAT(error.what(), testing::EndsWith("assertion (" + text + ") failed"));
      EXPECT_EQ(UniStr(error.GetErrMsg()).ToMBCS(UniStr::kUtf8), error.what());
      EXPECT_EQ(error.TypeName(), "ExceptionCheck");
    }
  }
  EXPECT_THROW(none.ClonePadded(image, kHuge / 2), ExceptionRuntime);
  EXPECT_THROW(none.Create(1ULL << 40, 1ULL << 20), ExceptionRuntime);
  EXPECT_FALSE(none.IsValid());
}

// The padded image may fill the machine's memory to the last sample.
TEST(Image, MemoryIsThatOfThePaddedImage) {
  const std::uint64_t memory = static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES)) *
                               static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
  for (const auto& [h, pad, bytes] : {std::array<std::uint64_t, 3>{100, 50, 1}, {7, 0, 4}}) {
    const std::uint64_t widest = memory / bytes / (h + 2 * pad) - 2 * pad;
    EXPECT_NO_THROW(requireMemory(widest, h, pad, bytes));
    EXPECT_THROW(requireMemory(widest + 1, h, pad, bytes), ExceptionRuntime);
  }
  EXPECT_EQ(TImage<float>().Height() + TImage<float>().Width(), 0U);
}

}  // namespace
}  // namespace greycard::pxcore
