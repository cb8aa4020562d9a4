#include "stored_codes.h"

#include <gtest/gtest.h>
#include <libraw/libraw.h>

#include <memory>
#include <utility>

#include "greycard/raw/write_dng.h"
#include "raw_fixture.h"

namespace greycard {
namespace {

constexpr short kIntel = 0x4949, kMotorola = 0x4D4D;

// Opened, in that byte order whatever the file says.
std::unique_ptr<LibRaw> opened(const std::string& bytes, short order) {
  auto raw = openedByLibRaw(bytes);
  raw->get_internal_data_pointer()->unpacker_data.order = order;
  return raw;
}

TEST(StoredCodes, AreWhatLibRawUnpacks) {
  constexpr int kWidth = 66, kHeight = 38;
  for (const int bits : {8, 10, 12, 14, 16})
    for (const short order : {kIntel, kMotorola}) {
      SCOPED_TRACE(bits);
      DngDescription d;
      d.pattern = BayerPattern::GRBG;
      d.bits = bits;
      d.whiteLevel = (1 << bits) - 1;
      const std::string bytes =
          encodeDng(randomCodes(kWidth, kHeight, 1, (1U << static_cast<unsigned>(bits)) - 1), d);
      const auto unpacked = opened(bytes, order), ours = opened(bytes, order);
      ASSERT_EQ(unpacked->unpack(), LIBRAW_SUCCESS);
      ASSERT_TRUE(storesCodes(*ours));
      constexpr int kTop = 3, kLeft = 5;
      ours->imgdata.sizes.top_margin = kTop;
      ours->imgdata.sizes.left_margin = kLeft;
      const MosaicRows rows = storedRows(*ours, "");
      int differing = 0;
      for (int y = kTop; y + 1 < kHeight; y += 2) {
        const RowPair pair = rows();
        for (int x = 0; x + kLeft < kWidth; ++x)
          for (int i = 0; i < 2; ++i)
            differing += pair[static_cast<std::size_t>(i)][x] !=
                         unpacked->imgdata.rawdata.raw_image[(y + i) * kWidth + x + kLeft];
      }
      EXPECT_EQ(differing, 0);
    }
}

// What unpacking would do more than copy isn't left out.
TEST(StoredCodes, AreLeftToLibRawWhereItAltersThem) {
  const std::string bytes = encodeDng(randomCodes(64, 48, 1, 16383), {BayerPattern::RGGB});
  const auto raw = opened(bytes, kIntel);
  EXPECT_TRUE(storesCodes(*raw));
  for (const int code : {0, 100, 65535}) {
    raw->imgdata.color.curve[code] = 200;
    EXPECT_FALSE(storesCodes(*raw)) << code;
    raw->imgdata.color.curve[code] = static_cast<ushort>(code);
  }
  unpacker_data_t& file = raw->get_internal_data_pointer()->unpacker_data;
  for (unsigned* setting : {&file.tiff_samples, &file.load_flags, &file.zero_after_ff}) {
    const unsigned before = std::exchange(*setting, *setting + 1);
    EXPECT_FALSE(storesCodes(*raw)) << setting - &file.tiff_samples;
    *setting = before;
  }
  for (const unsigned bits : {7U, 17U}) {
    const unsigned before = std::exchange(file.tiff_bps, bits);
    EXPECT_FALSE(storesCodes(*raw)) << bits;
    file.tiff_bps = before;
  }
  EXPECT_TRUE(storesCodes(*raw));
  raw->imgdata.sizes.mask[0][3] = 8;
  EXPECT_FALSE(storesCodes(*raw));
}

}  // namespace
}  // namespace greycard
