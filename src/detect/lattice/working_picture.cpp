#include "lattice/working_picture.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "search_image.h"

namespace greycard {
namespace {

constexpr int kProbesPerSide = 128;      // pixels looked at for the brightness, along each side
constexpr double kBrightShare = 0.995;   // of the probes are darker than what counts as bright
constexpr double kDarkBelow = 160.0;     // 8-bit level: a picture whose bright parts reach it stays
constexpr double kBrightTarget = 200.0;  // 8-bit level to which bright parts of others are brought
constexpr double kStrongestGain = 16.0;  // beyond it there is only noise

// Mean of a sum over factor x factor 8-bit values times a gain of at most 16, rounded. All of it
// fits 32 bits.
struct MeanLevel {
  using Sum = std::uint16_t;  // of the samples of at most 257 rows
  using Total = std::uint32_t;
  std::uint32_t share;  // of a total, in 2^-20

  std::uint8_t operator()(Total total) const {
    return static_cast<std::uint8_t>(std::min((total * share + (1U << 19)) >> 20, 255U));
  }
};

// The table's entry for the mean.
struct TableLevel {
  using Sum = std::uint32_t;
  using Total = std::uint64_t;
  std::uint64_t samples;
  const std::vector<std::uint8_t>& table;

  std::uint8_t operator()(Total total) const {
    return table[std::min<std::size_t>((total + samples / 2) / samples, table.size() - 1)];
  }
};

// Sums of `factor` rows, sample by sample; `Factor` is it where it is known beforehand, else 0.
template <int Factor, typename Sum>
void addRows(const std::uint16_t* from, std::size_t stride, int factor, std::vector<Sum>& sums) {
  if constexpr (Factor > 0) {
    for (std::size_t i = 0; i < sums.size(); ++i) {
      Sum sum = 0;
      for (std::size_t k = 0; k < Factor; ++k) sum = static_cast<Sum>(sum + from[i + k * stride]);
      sums[i] = sum;
    }
  } else {
    std::fill(sums.begin(), sums.end(), Sum{0});
    for (int k = 0; k < factor; ++k, from += stride)
      for (std::size_t i = 0; i < sums.size(); ++i) sums[i] = static_cast<Sum>(sums[i] + from[i]);
  }
}

template <int Channels, int Factor, typename Level, typename Sample>
void sumsToRow(const Sample* sums, int anyFactor, const Level& level, int y, WorkingPicture& to) {
  const int factor = Factor > 0 ? Factor : anyFactor;
  std::array<std::uint8_t*, Channels> rows{};
  for (int c = 0; c < Channels; ++c) rows[static_cast<std::size_t>(c)] = to.row(c, y);
  for (int x = 0; x < to.width; ++x, sums += Channels * factor) {
    std::array<typename Level::Total, Channels> totals{};
    for (int k = 0; k < factor; ++k)
      for (std::size_t c = 0; c < Channels; ++c)
        totals[c] += sums[static_cast<std::size_t>(k) * Channels + c];
    for (std::size_t c = 0; c < Channels; ++c) rows[c][x] = level(totals[c]);
  }
}

// The whole of a reduction by a factor, with loops of known length where that pays.
template <int Channels, int Factor, typename Level>
void reduceBy(const Picture& picture, const PixelWindow& window, int factor, const Level& level,
              WorkingPicture& result) {
  if constexpr (Factor == 1) {
    for (int y = 0; y < result.height; ++y)
      sumsToRow<Channels, 1>(picture.pixel(window.left, window.top + y), 1, level, y, result);
    return;
  }
  std::vector<typename Level::Sum> sums(static_cast<std::size_t>(result.width) *
                                        static_cast<std::size_t>(factor) * Channels);
  const auto stride = static_cast<std::size_t>(picture.width) * Channels;
  for (int y = 0; y < result.height; ++y) {
    addRows<Factor>(picture.pixel(window.left, window.top + y * factor), stride, factor, sums);
    sumsToRow<Channels, Factor>(sums.data(), factor, level, y, result);
  }
}

template <int Channels, typename Level>
auto reductionBy(int factor) {
  switch (factor) {
    case 1:
      return reduceBy<Channels, 1, Level>;
    case 2:
      return reduceBy<Channels, 2, Level>;
    case 3:
      return reduceBy<Channels, 3, Level>;
    case 4:
      return reduceBy<Channels, 4, Level>;
    case 5:
      return reduceBy<Channels, 5, Level>;
    case 6:
      return reduceBy<Channels, 6, Level>;
    case 7:
      return reduceBy<Channels, 7, Level>;
    case 8:
      return reduceBy<Channels, 8, Level>;
    default:
      return reduceBy<Channels, 0, Level>;
  }
}

template <typename Level>
void reduce(const Picture& picture, const PixelWindow& window, int factor, const Level& level,
            WorkingPicture& result) {
  const auto run =
      picture.channels == 3 ? reductionBy<3, Level>(factor) : reductionBy<1, Level>(factor);
  run(picture, window, factor, level, result);
}

// A picture of the same planes and place in another size; its samples are to be filled.
WorkingPicture emptyLike(const WorkingPicture& picture, int width, int height, double factor) {
  WorkingPicture result;
  result.width = width, result.height = height;
  result.planes = picture.planes;
  result.factor = factor;
  result.origin = picture.origin;
  result.gain = picture.gain;
  result.samples.resize(result.planeSize() * static_cast<std::size_t>(result.planes));
  return result;
}

// (a + 4 b + 6 c + 4 d + e) / 16, rounded.
std::uint8_t binomial(int a, int b, int c, int d, int e) {
  return static_cast<std::uint8_t>((a + e + 4 * (b + d) + 6 * c + 8) >> 4);
}

}  // namespace

WorkingPictures::WorkingPictures(const Picture& picture, const PixelWindow& window,
                                 const std::optional<SampleLevels>& levels)
    : picture_(picture), window_(window) {
  const auto known = searchLevels(picture, levels);
  const auto codes = static_cast<std::size_t>(picture.ceiling()) + 1;
  const auto fill = [&](double gain) {
    table_.resize(codes);
    for (std::size_t code = 0; code < codes; ++code)
      table_[code] = static_cast<std::uint8_t>(std::lround(
          std::min(255.0, 255.0 * gain * encodedShare(static_cast<double>(code), known))));
  };
  fill(1.0);
  gain_ = brightening(table_);
  // Plain values need none, unless the picture is so large that their sums need more bits.
  if (holdsEncoded8Bit(picture, known) && std::max(window.width, window.height) <= 65535)
    table_.clear();
  else if (gain_ > 1.0)
    fill(gain_);
}

// The gain that brings the bright parts of a dark picture to where others have them.
double WorkingPictures::brightening(const std::vector<std::uint8_t>& levels) const {
  std::array<int, 256> counts{};
  int probes = 0;
  const int stepX = std::max(1, window_.width / kProbesPerSide);
  const int stepY = std::max(1, window_.height / kProbesPerSide);
  for (int y = window_.top; y < window_.top + window_.height; y += stepY) {
    for (int x = window_.left; x < window_.left + window_.width; x += stepX, ++probes) {
      const auto* pixel = picture_.pixel(x, y);
      const std::size_t brightest = *std::max_element(pixel, pixel + picture_.channels);
      ++counts[levels[std::min(brightest, levels.size() - 1)]];
    }
  }
  std::size_t level = 255;
  for (double above = counts[level]; level > 0 && above <= (1.0 - kBrightShare) * probes;)
    above += counts[--level];
  if (static_cast<double>(level) >= kDarkBelow) return 1.0;
  return std::min(kStrongestGain, kBrightTarget / std::max(1.0, static_cast<double>(level)));
}

WorkingPicture WorkingPictures::reduced(int factor) const {
  WorkingPicture result;
  result.width = window_.width / factor;
  result.height = window_.height / factor;
  result.planes = picture_.channels;
  result.factor = factor;
  result.origin = {static_cast<double>(window_.left), static_cast<double>(window_.top)};
  result.gain = gain_;
  result.samples.resize(result.planeSize() * static_cast<std::size_t>(result.planes));

  const double samples = static_cast<double>(factor) * factor;
  if (table_.empty())
    reduce(picture_, window_, factor,
           MeanLevel{static_cast<std::uint32_t>(std::lround(gain_ * (1 << 20) / samples))}, result);
  else
    reduce(picture_, window_, factor, TableLevel{static_cast<std::uint64_t>(samples), table_},
           result);
  return result;
}

void smooth(WorkingPicture& picture) {
  const auto width = static_cast<std::size_t>(picture.width);
  // Rows as they were: two above, one above, and the one that is being changed.
  std::vector<std::uint8_t> twoAbove, oneAbove, here;
  std::vector<std::uint8_t> down(width + 4);  // smoothed downward, two pixels more at both ends
  for (int plane = 0; plane < picture.planes; ++plane) {
    const auto *first = picture.row(plane, 0), *past = first + picture.planeSize();
    oneAbove.assign(first, first + width);
    twoAbove = oneAbove;
    for (auto* row = picture.row(plane, 0); row != past; row += width) {
      here.assign(row, row + width);
      const auto* below = row + width != past ? row + width : row;
      const auto* twoBelow = below + width < past ? below + width : below;
      for (std::size_t x = 0; x < width; ++x)
        down[x + 2] = binomial(twoAbove[x], oneAbove[x], here[x], below[x], twoBelow[x]);
      down[0] = down[1] = down[2];
      down[width + 2] = down[width + 3] = down[width + 1];
      for (std::size_t x = 0; x < width; ++x)
        row[x] = binomial(down[x], down[x + 1], down[x + 2], down[x + 3], down[x + 4]);
      twoAbove.swap(oneAbove);
      oneAbove.swap(here);
    }
  }
}

WorkingPicture halved(const WorkingPicture& picture) {
  auto result = emptyLike(picture, picture.width / 2, picture.height / 2, 2.0 * picture.factor);
  for (int plane = 0; plane < result.planes; ++plane) {
    for (int y = 0; y < result.height; ++y) {
      const auto *upper = picture.row(plane, 2 * y), *lower = picture.row(plane, 2 * y + 1);
      auto* to = result.row(plane, y);
      for (int x = 0; x < result.width; ++x)
        to[x] = static_cast<std::uint8_t>(
            (upper[2 * x] + upper[2 * x + 1] + lower[2 * x] + lower[2 * x + 1] + 2) >> 2);
    }
  }
  return result;
}

WorkingPicture doubled(const WorkingPicture& picture) {
  auto result = emptyLike(picture, 2 * picture.width, 2 * picture.height, 0.5 * picture.factor);
  const auto width = static_cast<std::size_t>(picture.width);
  std::vector<std::uint16_t> down(width + 2);  // in quarters, one pixel more at both ends
  for (int plane = 0; plane < result.planes; ++plane) {
    for (int y = 0; y < result.height; ++y) {
      // A new row lies a quarter of a pixel from the old one and three quarters from the next.
      const int other = std::clamp(y / 2 + (y % 2 == 0 ? -1 : 1), 0, picture.height - 1);
      const auto *near = picture.row(plane, y / 2), *far = picture.row(plane, other);
      for (std::size_t x = 0; x < width; ++x)
        down[x + 1] = static_cast<std::uint16_t>(3 * near[x] + far[x]);
      down[0] = down[1];
      down[width + 1] = down[width];
      auto* to = result.row(plane, y);
      for (std::size_t x = 0; x < width; ++x) {
        to[2 * x] = static_cast<std::uint8_t>((3 * down[x + 1] + down[x] + 8) >> 4);
        to[2 * x + 1] = static_cast<std::uint8_t>((3 * down[x + 1] + down[x + 2] + 8) >> 4);
      }
    }
  }
  return result;
}

}  // namespace greycard
