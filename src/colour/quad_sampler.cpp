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
    gather();
    result.report.pixels[patch] = codes_[0].size();
    CodeStatistics statistics;
    for (std::size_t c = 0; c < 3; ++c) {
      if (c < static_cast<std::size_t>(picture_.channels))
        statistics = summary_.of(codes_[c], ends_);
      result.mean[patch][c] = statistics.mean;
      result.deviation[patch][c] = statistics.deviation;
      result.median[patch][c] = statistics.median;
      result.unevenness[patch][c] = statistics.unevenness;
      result.report.clipping[patch][c] = statistics.clipping;
    }
  }

 private:
  // Each channel's codes, cell by cell.
  void gather() {
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
    const auto largest = static_cast<std::uint16_t>(picture_.ceiling());
    std::size_t i = 0;
    for (const auto& span : spans_) {
      const auto* from = picture_.pixel(span.left, span.y);
      for (int x = span.left; x < span.right; ++x, from += Channels, ++i)
        for (std::size_t c = 0; c < Channels; ++c) codes_[c][i] = std::min(from[c], largest);
    }
  }

  const Picture& picture_;
  double share_;
  CodeSummary summary_;
  std::vector<CellSpan> spans_;
  std::array<std::vector<std::uint16_t>, 3> codes_;
  std::array<std::size_t, kQuadCells> ends_{};
};

void checkQuads(const PatchQuads& patches, double share) {
  // Written so that NaN is refused too: every comparison with it is false.
  if (!(share > 0.0 && share <= 1.0))
    throw std::invalid_argument("the share of a patch's side to sample, " + formatGeneral(share) +
                                ", must be above 0 and at most 1");
  requireConvex(patches);
}

}  // namespace

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
