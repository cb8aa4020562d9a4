#include "greycard/quad_sampler.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "code_statistics.h"
#include "code_values.h"
#include "convex_quad.h"
#include "quad_cells.h"
#include "text.h"

namespace greycard {
namespace {

class QuadSampler {
 public:
  QuadSampler(const Picture& picture, const SampleLevels& levels, double share)
      : picture_(picture), share_(share), summary_(levels, picture.bits) {}

  void sample(const PatchQuad& quad, std::size_t patch, QuadSampling& result) {
    cellSpans(quad, share_, picture_.width, picture_.height, spans_);
    if (spans_.empty())
      throw std::invalid_argument(
          "patch " + std::to_string(patch + 1) + ": its middle has no pixel in the picture of " +
          std::to_string(picture_.width) + " x " + std::to_string(picture_.height));
    result.report.pixels[patch] = pixelCount();
    const bool bytes = picture_.bits == 8;
    bytes ? countCodes() : gatherCodes();
    CodeStatistics statistics;
    for (std::size_t c = 0; c < 3; ++c) {
      if (c < static_cast<std::size_t>(picture_.channels))
        statistics = bytes ? summary_.ofCounts(cellsOf(c)) : summary_.ofCodes(codes_[c], ends_);
      result.mean[patch][c] = statistics.mean;
      result.deviation[patch][c] = statistics.deviation;
      result.median[patch][c] = statistics.median;
      result.unevenness[patch][c] = statistics.unevenness;
      result.report.clipping[patch][c] = statistics.clipping;
    }
  }

 private:
  std::size_t pixelCount() const {
    std::size_t count = 0;
    for (const auto& span : spans_) count += static_cast<std::size_t>(span.right - span.left);
    return count;
  }

  void countCodes() {
    for (auto& cell : counts_)
      for (auto& turn : cell)
        for (auto& counts : turn) counts.fill(0);
    picture_.channels == 3 ? countIn<3>() : countIn<1>();
  }

  // In turns in two tables: equal neighbours then don't wait for each other.
  template <std::size_t Channels>
  void countIn() {
    for (const auto& span : spans_) {
      auto& turns = counts_[static_cast<std::size_t>(span.cell)];
      const auto* from = picture_.pixel(span.left, span.y);
      for (int x = span.left; x < span.right; ++x, from += Channels)
        for (std::size_t c = 0; c < Channels; ++c)
          ++turns[static_cast<std::size_t>(x & 1)][c][std::min<std::size_t>(from[c], 255)];
    }
  }

  const std::array<CodeCounts, kQuadCells>& cellsOf(std::size_t channel) {
    for (std::size_t cell = 0; cell < counts_.size(); ++cell)
      for (std::size_t code = 0; code < cells_[cell].size(); ++code)
        cells_[cell][code] = counts_[cell][0][channel][code] + counts_[cell][1][channel][code];
    return cells_;
  }

  // Each channel's codes, cell by cell.
  void gatherCodes() {
    std::size_t count = 0;
    ends_.fill(0);
    for (const auto& span : spans_) {
      count += static_cast<std::size_t>(span.right - span.left);
      ends_[static_cast<std::size_t>(span.cell)] = count;
    }
    for (std::size_t cell = 1; cell < ends_.size(); ++cell)
      ends_[cell] = std::max(ends_[cell], ends_[cell - 1]);
    for (int c = 0; c < picture_.channels; ++c) codes_[static_cast<std::size_t>(c)].resize(count);
    picture_.channels == 3 ? copyCodes<3>() : copyCodes<1>();
  }

  template <std::size_t Channels>
  void copyCodes() {
    std::size_t i = 0;
    for (const auto& span : spans_) {
      const auto* from = picture_.pixel(span.left, span.y);
      for (int x = span.left; x < span.right; ++x, from += Channels, ++i)
        for (std::size_t c = 0; c < Channels; ++c) codes_[c][i] = from[c];
    }
  }

  const Picture& picture_;
  double share_;
  CodeSummary summary_;
  std::vector<CellSpan> spans_;
  // Of 8 bits: counts by cell, turn and channel.
  std::array<std::array<std::array<CodeCounts, 3>, 2>, kQuadCells> counts_;
  std::array<CodeCounts, kQuadCells> cells_;
  // Of 16 bits.
  std::array<std::vector<std::uint16_t>, 3> codes_;
  std::array<std::size_t, kQuadCells> ends_{};
};

void checkQuads(const PatchQuads& patches, double share) {
  checkSampledShare(share);
  requireConvex(patches);
}

}  // namespace

void checkSampledShare(double share) {
  // Written so that NaN is refused too: every comparison with it is false.
  if (!(share > 0.0 && share <= 1.0))
    throw std::invalid_argument("the share of a patch's side to sample, " + formatGeneral(share) +
                                ", must be above 0 and at most 1");
}

QuadSampling sampleQuads(const Picture& picture, const PatchQuads& patches,
                         const SampleLevels& levels, double share) {
  checkPicture(picture);
  checkQuads(patches, share);
  QuadSampler sampler(picture, levels, share);
  QuadSampling result;
  for (std::size_t patch = 0; patch < patches.size(); ++patch)
    sampler.sample(patches[patch], patch, result);
  return result;
}

PatchQuads sampledMiddles(const PatchQuads& patches, double share) {
  checkQuads(patches, share);
  PatchQuads middles;
  for (std::size_t i = 0; i < patches.size(); ++i) middles[i] = middleOf(patches[i], share);
  return middles;
}

}  // namespace greycard
