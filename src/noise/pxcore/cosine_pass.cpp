#include "cosine_pass.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <type_traits>
#include <vector>

#include "interleave.h"
#include "plane_view.h"

namespace greycard::pxcore {
namespace {

// Columns that are filtered side by side: so many that a row of them is worth fetching, and so few
// that the rows of a window stay in the cache.
constexpr std::size_t kColumnLanes = 512;
// With 205 taps the errors of so many steps stay below 1e-12 of the largest sum among them.
constexpr std::int64_t kStepsPerSum = 1024;

// Running sums of up to kMost signals side by side.
template <std::size_t kMost>
class RunningSums {
 public:
  explicit RunningSums(const HalfCosine& kernel)
      : m_twoCos(2.0 * std::cos(kernel.step())),
        m_edge(kernel.at(0)),
        m_beyond(static_cast<float>(kernel.at(-1))) {
    for (std::uint64_t i = 0; i < kernel.taps(); ++i)
      m_kernel.push_back(kernel.at(static_cast<std::int64_t>(i)));
  }

  // Emits `count` outputs of each signal; samples(i) points to sample i of every signal, for
  // -n/2 - 1 <= i < count + n/2, and emit(j, sums) takes output j of every signal. Samples before
  // j - n/2 - 1 are not read again after that. Lanes is a number, or a constant where the compiler
  // shall unroll.
  template <typename Lanes, typename Samples, typename Emit>
  void run(std::int64_t count, Lanes lanes, const Samples& samples, const Emit& emit) {
    const auto taps = static_cast<std::int64_t>(m_kernel.size());
    for (std::int64_t j = 0; j < count; ++j) {
      const std::int64_t start = j - taps / 2;
      if (j % kStepsPerSum == 0) {
        sum(start - 1, lanes, samples, m_previous);
        sum(start, lanes, samples, m_current);
      } else {
        step(samples(start - 2), samples(start - 1), samples(start + taps - 2),
             samples(start + taps - 1), lanes);
      }
      emit(j, m_current.data());
    }
  }

 private:
  using State = std::array<double, kMost>;

  template <typename Lanes, typename Samples>
  void sum(std::int64_t start, Lanes lanes, const Samples& samples, State& state) const {
    std::fill_n(state.begin(), lanes, 0.0);
    for (const double tap : m_kernel) {
      const float* const x = samples(start++);
      for (std::size_t l = 0; l < lanes; ++l) state[l] += tap * x[l];
    }
  }

  template <typename Lanes>
  void step(const float* before, const float* first, const float* last, const float* behind,
            Lanes lanes) {
    double* __restrict const current = m_current.data();
    double* __restrict const previous = m_previous.data();
    for (std::size_t l = 0; l < lanes; ++l) {
      const double edges = static_cast<double>(before[l]) + static_cast<double>(behind[l]);
      const double next = m_twoCos * current[l] - previous[l] + m_edge * edges -
                          static_cast<double>(m_beyond * (first[l] + last[l]));
      previous[l] = current[l];
      current[l] = next;
    }
  }

  std::vector<double> m_kernel;
  double m_twoCos, m_edge;
  float m_beyond;  // so small that single precision does
  alignas(64) State m_current{}, m_previous{};
};

// kRowLanes rows side by side, with their mirrored ends.
class RowBlock {
 public:
  RowBlock(std::uint64_t width, std::int64_t before)
      : m_width(width),
        m_before(before),
        m_samples((width + 2 * static_cast<std::size_t>(before)) * kRowLanes) {}

  float* pixel(std::int64_t x) {
    const PlaneView<float> pixels(m_samples, kRowLanes, m_samples.size() / kRowLanes);
    return pixels.row(static_cast<std::size_t>(x + m_before)).data();
  }
  template <typename T>
  void take(const std::array<const T*, kRowLanes>& rows) {
    interleave(rows, m_width, pixel(0));
    const auto end = static_cast<std::int64_t>(m_width);
    for (std::int64_t i = 0; i < m_before; ++i)
      for (const std::int64_t x : {-1 - i, end + i})
        std::copy_n(pixel(static_cast<std::int64_t>(mirrored(x, m_width))), kRowLanes, pixel(x));
  }
  // The block's own first sample on, not that of the rows.
  void give(const std::array<float*, kRowLanes>& rows) const {
    separate(m_samples.data(), m_width, rows);
  }

 private:
  std::uint64_t m_width;
  std::int64_t m_before;
  std::vector<float> m_samples;
};

// The rows of a window of columns, since the sink may have replaced those of the image.
class WindowRows {
 public:
  WindowRows(std::int64_t held, std::int64_t before)
      : m_held(held), m_before(before), m_samples(static_cast<std::size_t>(held) * kColumnLanes) {}

  float* row(std::int64_t y) {
    const PlaneView<float> rows(m_samples, kColumnLanes, static_cast<std::size_t>(m_held));
    return rows.row(static_cast<std::size_t>((y + m_before) % m_held)).data();
  }
  void take(std::int64_t y, const float* pixels, std::size_t lanes) {
    std::copy_n(pixels, lanes, row(y));
  }

 private:
  std::int64_t m_held, m_before;
  std::vector<float> m_samples;
};

// How far before output j its step reads: to sample j - n/2 - 2.
std::int64_t reachBefore(const HalfCosine& kernel) {
  return static_cast<std::int64_t>(kernel.taps() / 2 + 2);
}

// Output x takes the place of the sample that has just left the window.
void filterBlock(RunningSums<kRowLanes>& sums, std::int64_t width, std::int64_t before,
                 RowBlock& block) {
  sums.run(
      width, std::integral_constant<std::size_t, kRowLanes>{},
      [&](std::int64_t x) { return block.pixel(x); },
      [&](std::int64_t x, const double* sum) {
        float* const pixel = block.pixel(x - before);
        for (std::size_t r = 0; r < kRowLanes; ++r) pixel[r] = static_cast<float>(sum[r]);
      });
}

}  // namespace

template <typename T>
void cosineRows(const HalfCosine& kernel, const TImageRoi<T>& in, TImageRoi<float>& out) {
  PXCORE_CHECK(in.IsValid() && in.IsSameSize(out));
  const std::int64_t before = reachBefore(kernel);
  RowBlock block(in.Width(), before);
  RunningSums<kRowLanes> sums(kernel);
  for (std::uint64_t y = 0; y < in.Height(); y += kRowLanes) {
    // Of a last block that is not full, the last row fills the rest.
    std::array<const T*, kRowLanes> from;
    std::array<float*, kRowLanes> to;
    for (std::size_t r = 0; r < kRowLanes; ++r) {
      from[r] = in.RowPtr(std::min(y + r, in.Height() - 1));
      to[r] = out.RowPtr(std::min(y + r, in.Height() - 1));
    }
    block.take(from);
    filterBlock(sums, static_cast<std::int64_t>(in.Width()), before, block);
    block.give(to);
  }
}

template void cosineRows(const HalfCosine&, const TImageRoi<float>&, TImageRoi<float>&);
template void cosineRows(const HalfCosine&, const TImageRoi<unsigned char>&, TImageRoi<float>&);

void cosineColumns(const HalfCosine& kernel, TImageRoi<float>& image, const PixelSink& sink) {
  PXCORE_CHECK(image.IsValid());
  const auto taps = static_cast<std::int64_t>(kernel.taps());
  const auto height = static_cast<std::int64_t>(image.Height());
  const std::int64_t before = reachBefore(kernel), ahead = taps - taps / 2;
  WindowRows window(taps + 2, before);
  RunningSums<kColumnLanes> sums(kernel);
  alignas(64) std::array<float, kColumnLanes> values;
  for (std::uint64_t x = 0; x < image.Width(); x += kColumnLanes) {
    const auto lanes = std::min<std::size_t>(kColumnLanes, image.Width() - x);
    const auto pixels = [&](std::uint64_t y) { return image.View().run(y, x, x + lanes).data(); };
    for (std::int64_t y = 1 - before; y < ahead; ++y)
      window.take(y, pixels(mirrored(y, image.Height())), lanes);
    sums.run(
        height, lanes, [&](std::int64_t y) { return window.row(y); },
        [&](std::int64_t y, const double* sum) {
          // Beyond the border the window itself holds the row that is mirrored.
          const std::int64_t next = y + ahead;
          window.take(next,
                      next < height ? pixels(static_cast<std::uint64_t>(next))
                                    : window.row(2 * height - 1 - next),
                      lanes);
          for (std::size_t l = 0; l < lanes; ++l) values[l] = static_cast<float>(sum[l]);
          sink(x, static_cast<std::uint64_t>(y), {values.data(), lanes});
        });
  }
}

}  // namespace greycard::pxcore
