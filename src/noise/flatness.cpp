#include "flatness.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace greycard {
namespace {

constexpr std::uint64_t kMostAcross = 12, kMostDown = 9, kFewestAcross = 4, kFewestDown = 3;
constexpr std::uint64_t kSmallestBlock = 24;  // its mean's noise is a 24th of a pixel's
constexpr std::size_t kTerms = 3;

struct Block {
  double mean = 0.0, r2 = 0.0;  ///< r is 1 in the corners
};

std::vector<Block> blocksOf(const pxcore::TImage<unsigned char>& image) {
  const std::uint64_t w = image.Width(), h = image.Height();
  const std::uint64_t across = std::min(kMostAcross, w / kSmallestBlock);
  const std::uint64_t down = std::min(kMostDown, h / kSmallestBlock);
  std::vector<Block> blocks;
  if (across < kFewestAcross || down < kFewestDown) return blocks;
  const double cx = 0.5 * static_cast<double>(w), cy = 0.5 * static_cast<double>(h);
  for (std::uint64_t j = 0; j < down; ++j)
    for (std::uint64_t i = 0; i < across; ++i) {
      const std::uint64_t left = i * w / across, right = (i + 1) * w / across;
      const std::uint64_t top = j * h / down, bottom = (j + 1) * h / down;
      std::uint64_t sum = 0;
      for (std::uint64_t y = top; y < bottom; ++y)
        for (const unsigned char pixel : image.View().row(y).subspan(left, right - left))
          sum += pixel;
      const double x = 0.5 * static_cast<double>(left + right) - cx;
      const double y = 0.5 * static_cast<double>(top + bottom) - cy;
      blocks.push_back(
          {static_cast<double>(sum) / static_cast<double>((right - left) * (bottom - top)),
           (x * x + y * y) / (cx * cx + cy * cy)});
    }
  return blocks;
}

// Gram-Schmidt over the blocks: what 1, r^2 and r^4 leave of the means.
std::vector<double> residualOf(const std::vector<Block>& blocks) {
  std::vector<double> residual;
  for (const Block& block : blocks) residual.push_back(block.mean);
  const auto product = [](const std::vector<double>& a, const std::vector<double>& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += a[i] * b[i];
    return sum;
  };
  std::array<std::vector<double>, kTerms> basis;
  const auto removeFrom = [&](std::vector<double>& values, std::size_t terms) {
    for (std::size_t k = 0; k < terms; ++k) {
      const double share = product(values, basis[k]);
      for (std::size_t i = 0; i < values.size(); ++i) values[i] -= share * basis[k][i];
    }
  };
  for (std::size_t k = 0; k < kTerms; ++k) {
    for (const Block& block : blocks)
      basis[k].push_back(std::pow(block.r2, static_cast<double>(k)));
    removeFrom(basis[k], k);
    const double length = std::sqrt(product(basis[k], basis[k]));
    for (double& value : basis[k]) value /= length;
  }
  removeFrom(residual, kTerms);
  return residual;
}

}  // namespace

std::optional<double> unflatness(const pxcore::TImage<unsigned char>& image) {
  const std::vector<Block> blocks = blocksOf(image);
  double sum = 0.0, squares = 0.0;
  for (const Block& block : blocks) sum += block.mean;
  if (!(sum > 0.0)) return std::nullopt;
  for (const double value : residualOf(blocks)) squares += value * value;
  const auto count = static_cast<double>(blocks.size());
  return std::sqrt(squares / count) / (sum / count);
}

}  // namespace greycard
