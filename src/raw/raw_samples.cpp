#include "raw_samples.h"

#include <algorithm>
#include <numeric>
#include <span>
#include <utility>

namespace greycard {
namespace {

// Shares of full scale as whole numbers, which a compiler handles four at a time: 1/16 of a 16-bit
// sample. Codes far beyond levels that are kLeastLevels apart still fit an int.
constexpr int kUnit = 16, kFullScale = 65535 * kUnit;
static_assert(65536.0 / kLeastLevels * kFullScale < 2147483647.0);
// A clipped sample ends here or above, whatever the rounding of its line; the next code lies below.
constexpr int kClipped = kFullScale - kUnit / 2;

// 0 at the black level, full scale at the white level; a half more, for rounding.
struct Line {
  float scale = 1.0F, offset = 0.0F;

  Line() = default;
  Line(double black, double white)
      : scale(static_cast<float>(kFullScale / (white - black))),
        offset(static_cast<float>(0.5 - black * kFullScale / (white - black))) {}
  int at(std::uint16_t code) const {
    return static_cast<int>(static_cast<float>(code) * scale + offset);
  }
};

// The nearest sample to a share, and to the mean of two; full scale when either clips.
std::uint16_t sampleOf(int share) {
  const int sample = ((share > 0 ? share : 0) + kUnit / 2) / kUnit;
  return static_cast<std::uint16_t>(sample < 65535 ? sample : 65535);
}
std::uint16_t sampleOf(int a, int b) {
  const int sum = (a > 0 ? a : 0) + (b > 0 ? b : 0), larger = a > b ? a : b;
  return static_cast<std::uint16_t>(larger >= kClipped ? 65535 : (sum + kUnit) / (2 * kUnit));
}

// The lines of one row's samples as far as they differ: after `period` of them they repeat.
class LineRow {
 public:
  /// \param base  which of the levels' `black` holds for a column, and which of `white`
  template <typename Base, typename Channel>
  LineRow(const RawLevels& levels, std::size_t row, std::size_t step, Base base, Channel channel)
      : m_lines(std::lcm(levels.columns, step)) {
    for (std::size_t x = 0; x < m_lines.size(); ++x)
      m_lines[x] = Line(levels.at(row, x, base(x)), levels.white[channel(x)]);
  }
  std::size_t period() const { return m_lines.size(); }
  const Line* lines() const { return m_lines.data(); }

 private:
  std::vector<Line> m_lines;
};

// Where a channel stands in a cell: once or twice.
struct Places {
  std::size_t first = 0, second = 0;
};

std::array<Places, 3> placesOf(const std::array<int, 4>& channels) {
  std::array<Places, 3> places;
  for (std::size_t place = channels.size(); place-- > 0;)
    places[static_cast<std::size_t>(channels[place])].first = place;
  for (std::size_t place = 0; place < channels.size(); ++place)
    places[static_cast<std::size_t>(channels[place])].second = place;
  return places;
}

struct CellRow {
  RowPair codes;
  std::array<const LineRow*, 2> lines;
};

// As many cells as stay in the nearest cache, place by place, so that each loop runs over
// neighbours.
constexpr std::size_t kBlock = 256;
using CellBlock = std::array<std::array<int, kBlock>, 4>;

void takeCells(const CellRow& row, std::size_t first, std::size_t count, CellBlock& values) {
  for (std::size_t r = 0; r < 2; ++r) {
    const std::uint16_t* codes = row.codes[r] + 2 * first;
    const Line* lines = row.lines[r]->lines();
    const std::size_t period = row.lines[r]->period();
    int *left = values[2 * r].data(), *right = values[2 * r + 1].data();
    if (period == 2) {
      const Line ofLeft = lines[0], ofRight = lines[1];
      for (std::size_t i = 0; i < count; ++i) {
        left[i] = ofLeft.at(codes[2 * i]);
        right[i] = ofRight.at(codes[2 * i + 1]);
      }
      continue;
    }
    for (std::size_t i = 0; i < count; ++i) {
      left[i] = lines[2 * (first + i) % period].at(codes[2 * i]);
      right[i] = lines[(2 * (first + i) + 1) % period].at(codes[2 * i + 1]);
    }
  }
}

void binRow(const CellRow& row, const std::array<Places, 3>& places, std::span<std::uint16_t> out) {
  CellBlock values;
  std::array<std::array<std::uint16_t, kBlock>, 3> channels;
  const std::size_t cells = out.size() / 3;
  for (std::size_t first = 0; first < cells; first += kBlock) {
    const std::size_t count = std::min(kBlock, cells - first);
    takeCells(row, first, count, values);
    for (std::size_t c = 0; c < 3; ++c) {
      const int *a = values[places[c].first].data(), *b = values[places[c].second].data();
      if (a == b)
        for (std::size_t i = 0; i < count; ++i) channels[c][i] = sampleOf(a[i]);
      else
        for (std::size_t i = 0; i < count; ++i) channels[c][i] = sampleOf(a[i], b[i]);
    }
    std::uint16_t* pixel = out.data() + 3 * first;
    for (std::size_t i = 0; i < count; ++i, pixel += 3)
      for (std::size_t c = 0; c < 3; ++c) pixel[c] = channels[c][i];
  }
}

}  // namespace

MosaicRows rowsOf(const RawSamples& samples) {
  return [upper = samples.first, stride = samples.stride]() mutable {
    const RowPair rows{upper, upper + stride};
    upper += 2 * stride;
    return rows;
  };
}

Picture binMosaic(int width, int height, const MosaicRows& rows, const std::array<int, 4>& channels,
                  const RawLevels& levels) {
  const auto places = placesOf(channels);
  std::vector<LineRow> lineRows;
  for (std::size_t y = 0; y < std::lcm(levels.rows, std::size_t{2}); ++y) {
    const auto base = [y](std::size_t x) { return y % 2 * 2 + x % 2; };
    const auto channel = [&](std::size_t x) { return static_cast<std::size_t>(channels[base(x)]); };
    lineRows.emplace_back(levels, y, std::size_t{2}, base, channel);
  }

  // Filled row by row, so that its memory is written once.
  Picture picture;
  picture.width = width / 2;
  picture.height = height / 2;
  picture.bits = 16;
  std::vector<std::uint16_t> pixels(3 * static_cast<std::size_t>(picture.width));
  picture.samples.reserve(pixels.size() * static_cast<std::size_t>(picture.height));
  for (std::size_t y = 0; y < static_cast<std::size_t>(picture.height); ++y) {
    const LineRow &upper = lineRows[2 * y % lineRows.size()],
                  &lower = lineRows[(2 * y + 1) % lineRows.size()];
    binRow({rows(), {&upper, &lower}}, places, pixels);
    picture.samples.insert(picture.samples.end(), pixels.begin(), pixels.end());
  }
  return picture;
}

Picture scaledSamples(const RawSamples& samples, int channels, int perPixel,
                      const RawLevels& levels) {
  Picture picture(samples.width, samples.height, channels, 16);
  const auto used = static_cast<std::size_t>(channels), step = static_cast<std::size_t>(perPixel),
             width = static_cast<std::size_t>(samples.width);
  auto out = picture.samples.begin();
  for (std::size_t y = 0; y < static_cast<std::size_t>(samples.height); ++y) {
    const std::uint16_t* codes = samples.first + y * samples.stride;
    for (std::size_t c = 0; c < used; ++c) {
      const auto same = [c](std::size_t) { return c; };
      const LineRow row(levels, y, 1, same, same);
      for (std::size_t x = 0; x < width; ++x) {
        const int share = row.lines()[x % row.period()].at(codes[x * step + c]);
        out[static_cast<std::ptrdiff_t>(x * used + c)] = sampleOf(share);
      }
    }
    out += static_cast<std::ptrdiff_t>(width * used);
  }
  return picture;
}

Picture oriented(Picture picture, int orientation) {
  if (orientation < 2 || orientation > 8) return picture;
  // What takes the seen picture's rows and columns to those of the file: EXIF 2.32, Orientation.
  const bool swaps = orientation >= 5;
  const bool fromBelow =
      orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
  const bool fromRight =
      orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
  Picture seen(swaps ? picture.height : picture.width, swaps ? picture.width : picture.height,
               picture.channels, picture.bits);
  for (int y = 0; y < seen.height; ++y)
    for (int x = 0; x < seen.width; ++x) {
      const int row = swaps ? x : y, column = swaps ? y : x;
      const std::uint16_t* from = picture.pixel(fromRight ? picture.width - 1 - column : column,
                                                fromBelow ? picture.height - 1 - row : row);
      std::copy_n(from, picture.channels, seen.pixel(x, y));
    }
  return seen;
}

}  // namespace greycard
