#pragma once
/// \file
/// \ingroup own

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/export.h"
#include "greycard/jobs/measure_chart.h"
#include "greycard/skin_color_helper.h"
#include "greycard/types.h"

namespace greycard {

/// The lights and versions of the synthetic skin colours, in the order of SkinColorHelper's points.
inline constexpr std::array<const char*, SkinColorHelper::kLights> kSkinLights{"D65", "A", "T84"};
inline constexpr std::array<const char*, SkinColorHelper::kVariants> kSkinVariants{"dark", "plain",
                                                                                   "bright"};

/// A chart for each of kSkinLights, and the files that they came from.
using SkinCharts = std::array<MeasuredChart, kSkinLights.size()>;
using SkinChartFiles = std::array<std::filesystem::path, kSkinLights.size()>;

struct SkinOptions {
  /// Colour correction for all three lights; else the one that came with the chart under T84.
  std::optional<Matrix3> matrix;
  std::string matrixFrom;            ///< names that matrix in the result; may be empty
  std::string gamma = "VGammaSRGB";  ///< the camera's tone curve, whose green serves all: see
                                     ///< cameraGamma
};

/// What one filter of SkinColorHelper let through.
struct GREYCARD_EXPORT SkinSet {
  /// As SkinColorHelper gives them, refused ones as (0, 0, 0); empty in a result read from JSON.
  SkinColorHelper::DataArray points;
  int accepted = 0, hueNotFinite = 0;
  std::array<int, kSkinLights.size()> acceptedUnder{};
  /// Least and largest finite value; absent when there is none.
  std::optional<std::array<double, 2>> h, s, y;

  /// Whether the filter let the point through.
  bool holds(std::size_t point) const { return points[point] != SkinColorHelper::DataPt(); }
};

/// Where skin falls in a camera's processed colours.
struct SkinCalibration {
  SkinChartFiles charts;
  std::string gammaName, matrixFrom;
  Matrix3 matrix{};
  SkinSet upper, lower;
  SkinColorHelper::ColourArray colours;  ///< R, G, B, encoded; empty in a result read from JSON
  std::vector<std::string> warnings;     ///< a sentence each
};

/// \param files  name the charts in warnings and in the result; may be empty
/// \throws JobError when there is no matrix, and as cameraGamma; std::invalid_argument for what is
///         not finite
GREYCARD_EXPORT SkinCalibration calibrateSkin(const SkinCharts& charts,
                                              const SkinOptions& options = {},
                                              const SkinChartFiles& files = {});

}  // namespace greycard
