#pragma once

// What `greycard skin` found, and the forms in which it is told.

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "greycard/skin_color_helper.h"
#include "greycard/types.h"
#include "transition.h"

namespace greycard::cli {

inline constexpr std::array kSkinLights{"D65", "A", "T84"};
inline constexpr std::array kSkinVariants{"dark", "plain", "bright"};

/// Lowest and highest finite value; low > high when there is none.
struct ValueRange {
  double low = 1.0, high = -1.0;

  bool empty() const { return low > high; }
  void take(double value);
};

/// The accepted points of one filter.
struct SkinSet {
  const SkinColorHelper::DataArray* points = nullptr;
  int accepted = 0, hueNotFinite = 0;
  std::array<int, kSkinLights.size()> acceptedUnder{};
  ValueRange h, s, y;

  explicit SkinSet(const SkinColorHelper::DataArray& all);
  /// Whether the filter let the point through; refused ones are default points.
  bool holds(std::size_t i) const { return (*points)[i] != SkinColorHelper::DataPt(); }
};

struct SkinResult {
  std::array<std::filesystem::path, kSkinLights.size()> charts;
  std::string gammaName, matrixFrom;
  Matrix3 matrix{};
  SkinSet upper, lower;
  const SkinColorHelper::ColourArray* colours = nullptr;
  std::vector<std::string> warnings;
};

/// Aligned text for standard output.
std::string skinText(const SkinResult& result);
Json skinJson(const SkinResult& result);
/// A line per synthetic colour.
std::string skinCsv(const SkinResult& result);
/// Saturation over hue ratio, as SVG: each accepted point in its own colour.
std::string skinPlot(const SkinResult& result);

}  // namespace greycard::cli
