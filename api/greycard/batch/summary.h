#pragma once
/// \file
/// \ingroup own

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "greycard/batch/export.h"
#include "greycard/batch/result.h"

namespace greycard::batch {

/// A fit that lies outside the others of its light, at the entry where it is furthest.
struct OutsideFit {
  std::filesystem::path photo;
  std::size_t row = 0, column = 0;  ///< of the entry, 0-based
  double value = 0.0;
  double distance = 0.0;  ///< from the median, in units of what OutlierRule::factor multiplies
};

/// The fits under one light, three or more.
struct LightSummary {
  Illum light = illum_D65;
  std::size_t fits = 0;
  Matrix3 mean{};
  Matrix3 spread{};  ///< standard deviation of each entry (n - 1)
  Matrix3 median{};
  Matrix3 medianDeviation{};        ///< MAD of each entry, not scaled
  std::vector<OutsideFit> outside;  ///< furthest first
};

struct Failure {
  std::filesystem::path photo;
  std::string reason;
};

/// What many results say together.
struct Summary {
  Job job = Job::ccm;
  std::string version;
  std::size_t photographs = 0;
  std::vector<Failure> failures;  ///< in the order of the results
  OutlierRule outliers;
  std::vector<LightSummary> lights;  ///< by Illum; empty for jobs without a matrix
};

/// Of the results of a job. \throws std::invalid_argument for a rule that can't be
GREYCARD_BATCH_EXPORT Summary summaryOf(std::span<const Result> results, const Settings& settings);

/// As JSON, both ways. \throws std::invalid_argument with a sentence that begins with the field
GREYCARD_BATCH_EXPORT std::string toJson(const Summary& summary);
GREYCARD_BATCH_EXPORT void fromJson(std::string_view text, Summary& summary);

/// One row a result, in their order: see docs/batch.md for the columns.
GREYCARD_BATCH_EXPORT std::string resultsCsv(std::span<const Result> results);

/// The page for people: what failed first, then the photographs, those with the largest mean error
/// first. Self-contained, no script.
GREYCARD_BATCH_EXPORT std::string indexPage(std::span<const Result> results,
                                            const Summary& summary);

}  // namespace greycard::batch
