#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <optional>
#include <string_view>

#include "greycard/jobs/measure_chart.h"
#include "greycard/present/export.h"
#include "greycard/types.h"

namespace greycard::present {

/// The chart that a file tells of: a photograph, in which it is found and sampled, or what toJson
/// wrote of a ChartFit or a ChartEvaluation.
/// \param dump  how a photograph's samples lie where the file has no header
/// \throws JobError or FileError that names the file and what is wrong with it; as readPhotograph
///         and measureChart
GREYCARD_PRESENT_EXPORT MeasuredChart readMeasuredChart(const std::filesystem::path& file,
                                                        const LocateOptions& options = {},
                                                        const std::optional<DumpLayout>& dump = {});

/// A colour-correction matrix from nine numbers, row by row, with blanks, commas or line ends
/// between them.
/// \throws std::invalid_argument with a part of a sentence
GREYCARD_PRESENT_EXPORT Matrix3 matrixFromNumbers(std::string_view text);

/// A colour-correction matrix from a file of nine numbers, or from what toJson wrote of a ChartFit.
/// \throws JobError or FileError that names the file and what is wrong with it
GREYCARD_PRESENT_EXPORT Matrix3 readMatrix(const std::filesystem::path& file);

}  // namespace greycard::present
