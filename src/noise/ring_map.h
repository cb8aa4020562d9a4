#pragma once

#include <cstdint>
#include <vector>

namespace greycard {

/// Which ring round the centre (w / 2, h / 2) a pixel belongs to. A ring's number is its distance
/// from the centre, in units of fScalingFactor pixels and single precision, rounded half up:
///
///   r = sqrt((x - cx)^2 + (y - cy)^2) / fScalingFactor, ring = min(trunc(r + 0.5), count - 1)
class RingMap {
 public:
  /// \throws pxcore::ExceptionCheck for a factor that is not above 0 (of an image of one pixel, any
  ///         will do) or that gives 2^24 rings or more, beyond which floats skip whole numbers
  RingMap(std::uint64_t w, std::uint64_t h, float fScalingFactor);

  /// At least kSigmaEntries, more when the factor asks for it.
  std::uint64_t count() const { return m_count; }

  /// Calls run(ring, y, xBegin, xEnd) for pixels side by side in one ring, once for each pixel of
  /// the image: rows at the same distance from the centre's together, nearest first.
  template <typename Run>
  void forEachRun(Run run) const;

 private:
  std::uint64_t ringAt(std::uint64_t dx, std::uint64_t dy) const;
  void moveEdges(std::uint64_t dy, std::vector<std::uint64_t>& edges) const;

  std::uint64_t m_w, m_h, m_cx, m_cy, m_count;
  float m_scale;
};

template <typename Run>
void RingMap::forEachRun(Run run) const {
  // edges[b] is the least dx whose ring is b or more. It falls as dy rises, so that each edge is
  // found by a step or two from the last row's.
  std::vector<std::uint64_t> edges(m_count + 1, m_cx + 1);
  for (std::uint64_t dy = 0; dy <= m_cy; ++dy) {
    moveEdges(dy, edges);
    const std::uint64_t last = ringAt(m_cx, dy);
    for (std::uint64_t b = ringAt(0, dy); b <= last; ++b) {
      const std::uint64_t from = edges[b], to = edges[b + 1];
      if (from == to) continue;
      const auto bothSides = [&](std::uint64_t y) {
        if (to > 1) run(b, y, m_cx + 1 - to, m_cx + 1 - (from == 0 ? 1 : from));
        if (m_cx + from < m_w) run(b, y, m_cx + from, m_cx + to < m_w ? m_cx + to : m_w);
      };
      if (m_cy + dy < m_h) bothSides(m_cy + dy);
      if (dy > 0) bothSides(m_cy - dy);
    }
  }
}

}  // namespace greycard
