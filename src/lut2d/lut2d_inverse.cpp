#include "lut2d_inverse.h"

#include <cmath>
#include <optional>
#include <string>

#include "text.h"

namespace greycard {
namespace {

std::string number(float value) {
  return formatFixed(double{value}, 6);
}

// Builds the text only when somebody reads it.
template <typename MakeText>
void report(const TextSink& remarks, MakeText makeText) {
  if (remarks) remarks(makeText());
}

// Twice the area of the triangle; negative when it runs clockwise.
float crossProduct(const Lut2dPair& from, const Lut2dPair& to, const Lut2dPair& point) {
  return (to.h - from.h) * (point.s - from.s) - (to.s - from.s) * (point.h - from.h);
}

// Corners by row and column of the grids.
struct Corner {
  std::size_t row, column;
};
using Triangle = std::array<Corner, 3>;
using Corners = std::array<Lut2dPair, 3>;

Corners cornersOf(const Lut2dGrid& grid, const Triangle& triangle) {
  const auto at = [&](std::size_t k) { return grid[triangle[k].row][triangle[k].column]; };
  return {at(0), at(1), at(2)};
}

// An edge counts as inside: zero is not negative.
bool contains(const Corners& c, const Lut2dPair& point) {
  const bool first = crossProduct(c[0], c[1], point) >= 0.0F;
  return first == (crossProduct(c[1], c[2], point) >= 0.0F) &&
         first == (crossProduct(c[2], c[0], point) >= 0.0F);
}

std::optional<Triangle> triangleAround(const Lut2dGrid& target, const Lut2dPair& point) {
  for (std::size_t a = 0; a < kLut2dHueRows; ++a)
    for (std::size_t b = 0; b + 1 < kLut2dSatColumns; ++b) {
      const Triangle lower{Corner{a, b}, Corner{a + 1, b}, Corner{a + 1, b + 1}};
      if (contains(cornersOf(target, lower), point)) return lower;
      const Triangle upper{Corner{a, b}, Corner{a + 1, b + 1}, Corner{a, b + 1}};
      if (contains(cornersOf(target, upper), point)) return upper;
    }
  return std::nullopt;
}

// Barycentric interpolation of the negated changes at the triangle's corners.
Lut2dPair invertedDelta(const Corners& targets, const Corners& deltas, const Lut2dPair& point) {
  const auto area = [&](std::size_t from, std::size_t to) {
    return 0.5F * std::fabs(crossProduct(targets[from], targets[to], point));
  };
  const std::array weight{area(1, 2), area(2, 0), area(0, 1)};
  const float sum = weight[0] + weight[1] + weight[2];
  // Deliberate: a degenerate triangle gives the node's hue, for both.
  if (sum == 0.0F) return {point.h, point.h};
  Lut2dPair mean{0.0F, 0.0F};
  for (std::size_t k = 0; k < 3; ++k) {
    mean.h += weight[k] * -deltas[k].h;
    mean.s += weight[k] * -deltas[k].s;
  }
  return {mean.h / sum, mean.s / sum};
}

std::string tableText(const char* title, const Lut2dGrid& grid, float Lut2dPair::*component) {
  std::string text = title;
  for (const auto& row : grid) {
    for (const Lut2dPair& pair : row) text += " " + number(pair.*component) + ", ";
    text += "\n";
  }
  return text;
}

// The new change of one node, read from the changes as they stand by now.
bool invertNode(lut2d_cfg& cfg, std::size_t i, std::size_t j, const TextSink& remarks) {
  const Lut2dPair point = cfg.node[i][j];
  const auto triangle = triangleAround(cfg.target, point);
  if (!triangle) {
    report(remarks, [&] {
      return "\n ---------- error: can't find triangle ret=0 H:" + number(point.h) +
             ",S:" + number(point.s) + ", h_idx:" + std::to_string(i) +
             ", s_idx:" + std::to_string(j) + " ---------\n";
    });
    cfg.delta[i][j] = {0.0F, 0.0F};
    return false;
  }
  const Lut2dPair delta =
      invertedDelta(cornersOf(cfg.target, *triangle), cornersOf(cfg.delta, *triangle), point);
  report(remarks, [&] {
    return "find triangle- new_h_delta=" + number(delta.h) + ", new_s_delta=" + number(delta.s) +
           "\n";
  });
  cfg.delta[i][j] = delta;
  return true;
}

}  // namespace

int CalInverseDifflut2dCfg(lut2d_cfg& cfg, const TextSink& remarks) {
  report(remarks, [&] { return "start inverse_flag " + number(cfg.inverse_flag) + "\n"; });
  if (cfg.inverse_flag == 0.0F) {
    report(remarks, [] { return " normal 2D_LUT processing...\n"; });
    return 0;
  }
  report(remarks,
         [] { return " inverse 2D_LUT processing, will calculate new delta H and deltaS...\n"; });
  report(remarks, [] { return "\n start calculate new delta H, delta S...\n"; });

  // Deliberate: a node sees the changes of earlier nodes already replaced.
  int uncovered = 0;
  for (std::size_t i = 0; i < kLut2dHueRows; ++i)
    for (std::size_t j = 0; j + 1 < kLut2dSatColumns; ++j)
      if (!invertNode(cfg, i, j, remarks)) ++uncovered;
  cfg.delta[kLut2dHueRows] = cfg.delta[0];
  for (auto& row : cfg.delta) row[kLut2dSatColumns - 1] = row[kLut2dSatColumns - 2];

  report(remarks, [&] {
    return tableText("\n new diff map calculate delta H \n", cfg.delta, &Lut2dPair::h) +
           tableText("\n new diff map calculate delta S \n", cfg.delta, &Lut2dPair::s);
  });
  return uncovered;
}

}  // namespace greycard
