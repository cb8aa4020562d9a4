#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "greycard/colour_errors.h"
#include "greycard/illum.h"
#include "greycard/present/export.h"
#include "greycard/present/provenance.h"
#include "greycard/types.h"

namespace greycard::present {

/// The colours of a chart as a result tells them: corrected ones of a fit, measured ones of an
/// evaluation.
struct JudgedChart {
  std::filesystem::path file;   ///< of the result
  std::filesystem::path photo;  ///< which the result is about
  std::string kind;             ///< "fit", "best fit" or "evaluation"
  Illum light = illum_D65;
  PatchTable lab{}, referenceLab{};
  ColourErrors errors;
  std::optional<Matrix3> matrix;        ///< of a fit
  std::optional<Vector3> whiteBalance;  ///< likewise
};

/// Reads what the toJson of a ChartFit, a BestChartFit (its first photograph) or a ChartEvaluation
/// wrote. \throws FileError; JobError that names the file and what is wrong with it
GREYCARD_PRESENT_EXPORT JudgedChart readJudgedChart(const std::filesystem::path& file);

/// Two results side by side.
struct GREYCARD_PRESENT_EXPORT ChartComparison {
  JudgedChart a, b;
  ColourErrors between;  ///< of the colours of b to those of a

  ChartComparison() = default;
  ChartComparison(JudgedChart a_, JudgedChart b_);
  /// Whether both aim at the same colours, so that one drawing can hold both.
  bool shareReference() const { return a.referenceLab == b.referenceLab; }
};

/// As JSON, both ways (see chart.h for what fromJson refuses).
GREYCARD_PRESENT_EXPORT std::string toJson(const ChartComparison& comparison);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, ChartComparison& comparison);

/// A page for people, as those of chart.h.
GREYCARD_PRESENT_EXPORT std::string comparisonReport(
    const ChartComparison& comparison, const std::optional<Provenance>& provenance = {});

}  // namespace greycard::present
