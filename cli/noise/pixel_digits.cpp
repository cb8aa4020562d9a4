#include "pixel_digits.h"

#include <algorithm>

namespace greycard::cli {
namespace {

constexpr int kColumns = 3, kRows = 5, kScale = 3;

// Rows from the top, three bits each, the left one highest.
constexpr std::string_view kCharacters = "0123456789.";
constexpr std::array<std::array<std::uint8_t, kRows>, 11> kShapes{{{7, 5, 5, 5, 7},
                                                                   {2, 6, 2, 2, 7},
                                                                   {7, 1, 7, 4, 7},
                                                                   {7, 1, 7, 1, 7},
                                                                   {5, 5, 7, 1, 1},
                                                                   {7, 4, 7, 1, 7},
                                                                   {7, 4, 7, 5, 7},
                                                                   {7, 1, 2, 2, 2},
                                                                   {7, 5, 7, 5, 7},
                                                                   {7, 5, 7, 1, 7},
                                                                   {0, 0, 0, 0, 2}}};

}  // namespace

void drawDigits(Picture& picture, int left, int top, std::string_view text, const Rgb8& colour) {
  for (const char c : text) {
    const auto shape = kCharacters.find(c);
    for (int y = 0; shape != std::string_view::npos && y < kRows * kScale; ++y)
      for (int x = 0; x < kColumns * kScale; ++x) {
        const bool set =
            kShapes[shape][static_cast<std::size_t>(y / kScale)] >> (kColumns - 1 - x / kScale) & 1;
        if (set && left + x < picture.width && top + y < picture.height)
          std::ranges::copy(colour, picture.pixel(left + x, top + y));
      }
    left += kDigitWidth;
  }
}

}  // namespace greycard::cli
