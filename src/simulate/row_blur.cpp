#include "row_blur.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "plane_view.h"

namespace greycard {
namespace {

// Beyond four sigmas lies less than 1e-4 of the weight.
int radiusOf(double sigma) {
  return static_cast<int>(std::ceil(4.0 * sigma));
}

std::vector<double> halfKernel(double sigma) {
  std::vector<double> weights{1.0};
  double sum = 1.0;
  for (int k = 1; k <= radiusOf(sigma); ++k) {
    weights.push_back(std::exp(-0.5 * k * k / (sigma * sigma)));
    sum += 2.0 * weights.back();
  }
  for (double& weight : weights) weight /= sum;
  return weights;
}

}  // namespace

RowBlur::RowBlur(double sigma, int width, int height, Source source)
    : m_radius(radiusOf(sigma)),
      m_width(width),
      m_height(height),
      m_source(std::move(source)),
      m_weights(halfKernel(sigma)),
      m_padded(3 * static_cast<std::size_t>(width + 2 * m_radius)),
      m_kept(3 * static_cast<std::size_t>(width) * (2 * m_weights.size() - 1)) {}

std::span<double> RowBlur::kept(int y) {
  const auto slots = static_cast<std::size_t>(2 * m_radius + 1);
  const PlaneView<double> rows(m_kept, static_cast<std::size_t>(3 * m_width), slots);
  return rows.row(static_cast<std::size_t>(y) % slots);
}

void RowBlur::load(int y) {
  const auto sharp = std::span(m_padded).subspan(3 * static_cast<std::size_t>(m_radius),
                                                 3 * static_cast<std::size_t>(m_width));
  m_source(y, sharp);
  const auto ends = 3 * static_cast<std::size_t>(m_radius);
  for (std::size_t i = 0; i < ends; ++i) {
    m_padded[i] = sharp[i % 3];
    m_padded[ends + sharp.size() + i] = sharp[sharp.size() - 3 + i % 3];
  }
  const auto blurred = kept(y);
  for (std::size_t i = 0; i < blurred.size(); ++i) blurred[i] = m_weights[0] * sharp[i];
  for (std::size_t k = 1; k < m_weights.size(); ++k) {
    const auto left = std::span(m_padded).subspan(ends - 3 * k, blurred.size());
    const auto right = std::span(m_padded).subspan(ends + 3 * k, blurred.size());
    for (std::size_t i = 0; i < blurred.size(); ++i)
      blurred[i] += m_weights[k] * (left[i] + right[i]);
  }
}

void RowBlur::next(int y, std::span<double> rgb) {
  if (m_radius == 0) return m_source(y, rgb);
  for (; m_loaded <= std::min(y + m_radius, m_height - 1); ++m_loaded) load(m_loaded);
  const auto middle = kept(y);
  for (std::size_t i = 0; i < rgb.size(); ++i) rgb[i] = m_weights[0] * middle[i];
  for (int k = 1; k <= m_radius; ++k) {
    const auto above = kept(std::max(y - k, 0)), below = kept(std::min(y + k, m_height - 1));
    const double weight = m_weights[static_cast<std::size_t>(k)];
    for (std::size_t i = 0; i < rgb.size(); ++i) rgb[i] += weight * (above[i] + below[i]);
  }
}

}  // namespace greycard
