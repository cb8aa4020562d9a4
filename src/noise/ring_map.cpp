#include "ring_map.h"

#include <algorithm>
#include <cmath>

#include "exception.h"
#include "greycard/sigma_lut.h"

namespace greycard {
namespace {

constexpr float kMostRings = 0x1p24F;

// Coordinates are whole numbers, and so is the sum of their squares: it is exact in doubles, and
// rounded to single precision once.
float distance(std::uint64_t dx, std::uint64_t dy) {
  const auto x = static_cast<double>(dx), y = static_cast<double>(dy);
  return std::sqrt(static_cast<float>(x * x + y * y));
}

}  // namespace

RingMap::RingMap(std::uint64_t w, std::uint64_t h, float fScalingFactor)
    : m_w(w), m_h(h), m_cx(w / 2), m_cy(h / 2), m_count(kSigmaEntries), m_scale(fScalingFactor) {
  if (m_cx == 0 && m_cy == 0) {
    m_scale = 1.0F;  // one pixel: its half-diagonal of 0 can't be split
    return;
  }
  PXCORE_CHECK(fScalingFactor > 0);
  const float R = distance(m_cx, m_cy);
  PXCORE_CHECK(R / fScalingFactor < kMostRings);
  m_count =
      std::max<std::uint64_t>(m_count, static_cast<std::uint64_t>(std::ceil(R / fScalingFactor)));
}

std::uint64_t RingMap::ringAt(std::uint64_t dx, std::uint64_t dy) const {
  const float r = distance(dx, dy) / m_scale;
  return std::min(static_cast<std::uint64_t>(std::floor(r + 0.5F)), m_count - 1);
}

// Every operation of ringAt rounds correctly, so that it never falls when dx or dy rises.
void RingMap::moveEdges(std::uint64_t dy, std::vector<std::uint64_t>& edges) const {
  const std::uint64_t first = ringAt(0, dy);
  for (std::uint64_t b = ringAt(m_cx, dy); b > first; --b) {
    std::uint64_t edge = std::min(edges[b], edges[b + 1]);
    while (edge > 0 && ringAt(edge - 1, dy) >= b) --edge;
    edges[b] = edge;
  }
  std::fill_n(edges.begin(), first + 1, 0);
}

}  // namespace greycard
