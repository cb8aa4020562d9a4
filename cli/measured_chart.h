#pragma once

#include <optional>
#include <string>
#include <vector>

#include "chart_source.h"
#include "greycard/types.h"

namespace greycard::cli {

/// A camera's answers to the 24 patches, and what came with them.
struct MeasuredChart {
  PatchTable rgb{};               ///< linear, 0..1, as sampled
  std::optional<Matrix3> matrix;  ///< fitted to this chart, when ccm's JSON tells
  std::string light;              ///< as the JSON names it, or empty
  std::vector<std::string> warnings;
};

/// Finds and samples the chart in a photograph, or reads what `ccm --json` or `evaluate --json`
/// wrote about one, whichever the file is.
/// \throws JobError that names the file and what is wrong with it
MeasuredChart measuredChart(const ChartSource& source);

/// A colour-correction matrix: nine numbers row by row, or a file of them, or what `ccm --json`
/// wrote.
/// \throws UsageError or JobError about what is neither
Matrix3 matrixOption(const std::string& option, const std::string& numbersOrFile);

}  // namespace greycard::cli
