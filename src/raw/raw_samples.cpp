#include "raw_samples.h"

#include <algorithm>
#include <numeric>
#include <span>
#include <utility>

namespace greycard {
namespace {

constexpr float kFullScale = 65535.0F;

// (code - black) * scale: 0 at the black level, full scale at the white level.
struct Line {
  float black = 0.0F, scale = 1.0F;
  float at(std::uint16_t code) const { return (static_cast<float>(code) - black) * scale; }
};

Line lineOf(double black, double white) {
  return {static_cast<float>(black), static_cast<float>(kFullScale / (white - black))};
}

std::uint16_t rounded(float value) {
  return static_cast<std::uint16_t>(static_cast<int>(std::clamp(value, 0.0F, kFullScale) + 0.5F));
}

// The lines of one row's samples as far as they differ: after `period` of them they repeat.
class LineRow {
 public:
  /// \param base  which of the levels' `black` holds for a column, and which of `white`
  template <typename Base, typename Channel>
  LineRow(const RawLevels& levels, std::size_t row, std::size_t step, Base base, Channel channel)
      : m_lines(std::lcm(levels.columns, step)) {
    for (std::size_t x = 0; x < m_lines.size(); ++x)
      m_lines[x] = lineOf(levels.at(row, x, base(x)), levels.white[channel(x)]);
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

// The mean of two samples of a cell; full scale when either clips.
std::uint16_t binned(float a, float b) {
  return a >= kFullScale || b >= kFullScale
             ? std::uint16_t{65535}
             : rounded(0.5F * (std::max(a, 0.0F) + std::max(b, 0.0F)));
}

struct CellRow {
  std::array<const std::uint16_t*, 2> codes;
  std::array<const Line*, 2> lines;
};

// Levels that are the same in every cell stay in registers.
void binEqualCells(const CellRow& row, const std::array<Places, 3>& places,
                   std::span<std::uint16_t> out) {
  for (std::size_t c = 0; c < 3; ++c) {
    const auto [p, q] = places[c];
    const std::uint16_t *a = row.codes[p / 2] + p % 2, *b = row.codes[q / 2] + q % 2;
    const Line lineA = row.lines[p / 2][p % 2], lineB = row.lines[q / 2][q % 2];
    if (p == q)
      for (std::size_t i = 0; 3 * i < out.size(); ++i) out[3 * i + c] = rounded(lineA.at(a[2 * i]));
    else
      for (std::size_t i = 0; 3 * i < out.size(); ++i)
        out[3 * i + c] = binned(lineA.at(a[2 * i]), lineB.at(b[2 * i]));
  }
}

void binUnequalCells(const CellRow& row, std::size_t period, const std::array<Places, 3>& places,
                     std::span<std::uint16_t> out) {
  for (std::size_t i = 0; 3 * i < out.size(); ++i)
    for (std::size_t c = 0; c < 3; ++c) {
      const auto value = [&](std::size_t place) {
        const std::size_t x = 2 * i + place % 2;
        return row.lines[place / 2][x % period].at(row.codes[place / 2][x]);
      };
      out[3 * i + c] = binned(value(places[c].first), value(places[c].second));
    }
}

}  // namespace

Picture binMosaic(const RawSamples& samples, const std::array<int, 4>& channels,
                  const RawLevels& levels) {
  const auto places = placesOf(channels);
  std::vector<LineRow> lineRows;
  for (std::size_t y = 0; y < std::lcm(levels.rows, std::size_t{2}); ++y) {
    const auto base = [y](std::size_t x) { return y % 2 * 2 + x % 2; };
    const auto channel = [&](std::size_t x) { return static_cast<std::size_t>(channels[base(x)]); };
    lineRows.emplace_back(levels, y, std::size_t{2}, base, channel);
  }

  Picture picture(samples.width / 2, samples.height / 2, 3, 16);
  const auto rowSamples = 3 * static_cast<std::size_t>(picture.width);
  for (std::size_t y = 0; y < static_cast<std::size_t>(picture.height); ++y) {
    const std::uint16_t* codes = samples.first + 2 * y * samples.stride;
    const LineRow &upper = lineRows[2 * y % lineRows.size()],
                  &lower = lineRows[(2 * y + 1) % lineRows.size()];
    const CellRow row{{codes, codes + samples.stride}, {upper.lines(), lower.lines()}};
    const std::span out(picture.samples.data() + y * rowSamples, rowSamples);
    if (upper.period() == 2)
      binEqualCells(row, places, out);
    else
      binUnequalCells(row, upper.period(), places, out);
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
      for (std::size_t x = 0; x < width; ++x)
        out[static_cast<std::ptrdiff_t>(x * used + c)] =
            rounded(row.lines()[x % row.period()].at(codes[x * step + c]));
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
