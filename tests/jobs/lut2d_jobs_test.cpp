#include <gmock/gmock.h>

#include "greycard/jobs/apply_lut2d.h"
#include "greycard/jobs/invert_lut2d.h"
#include "greycard/lut2d_table.h"

namespace greycard {
namespace {

using testing::HasSubstr;

Lut2DConfig dragged(const Lut2dDragOptions& drag) {
  Lut2DConfig table = identityLut2d({{0.0F, 0.1F, 0.9F, 1.0F}});
  dragLut2d(table, drag);
  return table;
}

// A green of hue 120 and saturation 0.5, and a grey, in each kind of samples.
TEST(ApplyLut2d, MovesColoursInEveryKindOfSamples) {
  const Lut2DConfig table = dragged({118.0, 0.52, -30.0, 0.1, 2, 3});
  const struct {
    int white, fileBits;
    std::optional<int> bits;
  } cases[] = {{255, 8, {}}, {255, 8, 8}, {65535, 16, {}}, {1023, 16, 10}, {65535, 16, 16}};
  for (const auto& [white, fileBits, bits] : cases) {
    SCOPED_TRACE(white);
    const auto sample = [white = white](double share) {
      return static_cast<std::uint16_t>(share * white + 0.5);
    };
    Picture picture(2, 1, 3, fileBits);
    picture.samples = {sample(0.25), sample(0.75), sample(0.25),
                       sample(0.4),  sample(0.4),  sample(0.4)};
    const AppliedLut2d applied = applyLut2d(picture, table, {bits});
    EXPECT_EQ(applied.report.whiteLevel, white);
    EXPECT_EQ(applied.report.pixels, 2u);
    EXPECT_EQ(applied.report.changedPixels, 1u);
    const Picture moved = applied.picture();
    EXPECT_EQ(moved.bits, fileBits);
    EXPECT_GT(moved.samples[0], picture.samples[0]);  // towards yellow
    const int step = (white + 1022) / 1023;           // of 10 bits, back in the file's
    for (std::size_t c = 3; c < 6; ++c) EXPECT_NEAR(moved.samples[c], picture.samples[c], step);
    EXPECT_EQ(applied.comparison().bits, 8);
    EXPECT_EQ(applied.comparison().width, 2 + 4 + 2);
  }
}

TEST(ApplyLut2d, SamplesThatAreNotOfTheBitsAreRefused) {
  Picture eight(1, 1, 3, 8), sixteen(1, 1, 3, 16);
  sixteen.samples[1] = 1024;
  const struct {
    const Picture& picture;
    int bits;
    const char* fact;
  } cases[] = {
      {eight, 10, "\"a.png\" has 8-bit samples"},
      {sixteen, 8, "\"a.png\" has 16-bit samples"},
      {sixteen, 10, "\"a.png\" has samples above 1023, which 10 bits can't hold"},
  };
  for (const auto& [picture, bits, fact] : cases) try {
      applyLut2d(picture, identityLut2d(), {bits}, "a.png");
      FAIL() << fact;
    } catch (const WrongSampleBits& wrong) {
      EXPECT_EQ(wrong.fact(), fact);
      EXPECT_THAT(wrong.what(), testing::StartsWith(wrong.fact() + "; "));
    }
  EXPECT_THROW(applyLut2d(eight, identityLut2d(), {9}), std::invalid_argument);
  EXPECT_THROW(applyLut2d(Picture(65536, 1, 3, 8), identityLut2d()), JobError);
}

TEST(InvertLut2d, TheInverseUndoesSmallChanges) {
  const Lut2dInverse same = invertLut2d(identityLut2d());
  EXPECT_EQ(same.report.uncoveredNodes, 0);
  EXPECT_LT(same.report.roundTrip.sat.worst, 0.02);  // what two passes round away
  EXPECT_LT(same.report.roundTrip.hueDeg.mean, 0.5);

  const Lut2DConfig table = dragged({200.0, 0.5, -8.0, 0.0, 6, 8});
  const Lut2dInverse moved = invertLut2d(table);
  EXPECT_LT(moved.report.roundTrip.hueDeg.worst, 8.0);
  EXPECT_GT(moved.table.lut_2d_h[13 * kLut2dSatColumns + 7], 2.0);  // the drag was downward
  EXPECT_EQ(moved.table.inverse_flag, 0.0F);
  // Without its inverse the table is as far off as the drag.
  EXPECT_GT(roundTripLut2d(table, identityLut2d()).hueDeg.worst, 7.0);
}

}  // namespace
}  // namespace greycard
