#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/export.h"
#include "greycard/illum.h"
#include "greycard/jobs/locate_chart.h"
#include "greycard/types.h"

namespace greycard {

/// A camera's answers to the 24 patches, and what came with them.
struct MeasuredChart {
  PatchTable rgb{};               ///< linear, 0..1, as the camera gave them
  std::optional<Matrix3> matrix;  ///< fitted to this chart, where a file of a fit tells it
  std::optional<Illum> light;     ///< likewise
  std::vector<std::string> warnings;
};

/// Finds and samples the chart in a photograph.
/// \param photo  names the picture in messages; may be empty
/// \throws as locateChart
GREYCARD_EXPORT MeasuredChart measureChart(const Picture& picture,
                                           const LocateOptions& options = {},
                                           const std::filesystem::path& photo = {});

/// Likewise; the photograph tells what its samples mean.
GREYCARD_EXPORT MeasuredChart measureChart(const Photograph& photograph,
                                           LocateOptions options = {});

}  // namespace greycard
