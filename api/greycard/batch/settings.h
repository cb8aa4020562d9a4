#pragma once
/// \file
/// \ingroup own

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "greycard/batch/export.h"
#include "greycard/batch/files.h"

namespace greycard::batch {

/// What is done with every photograph.
enum class Job : std::int32_t {
  chart,     ///< searchChart
  ccm,       ///< fitChart
  evaluate,  ///< evaluateChart
};
inline constexpr std::array kJobNames{"chart", "ccm", "evaluate"};
/// The job of that name; empty for any other text.
GREYCARD_BATCH_EXPORT std::optional<Job> jobFromName(std::string_view name);

/// Options of the photographs whose name a pattern fits.
struct Override {
  /// Against the file's name without its folders: `*` any characters, `?` any one, `[a-z]` one of a
  /// set, `[!a-z]` one that is not; letter case counts. Bytes are compared, whatever the locale.
  std::string pattern;
  std::string options;  ///< a JSON object as Settings::options
};

/// Which fits count as outside the others of their light: those with an entry of their matrix
/// further than `factor` times the larger of 1.4826 MAD and `floor` from the entry's median, MAD
/// being the median absolute deviation. 3.5 is what Iglewicz and Hoaglin (How to Detect and Handle
/// Outliers, 1993) advise; without a floor, a few fits that nearly agree would leave no room.
struct OutlierRule {
  double factor = 3.5;  ///< above 0
  double floor = 0.01;  ///< 0 or more, in units of the matrix
  bool operator==(const OutlierRule&) const = default;
};

/// What is to be done with many photographs.
struct Settings {
  Job job = Job::ccm;
  /// Of the job, a JSON object: the fields of LocateOptions, ChartFitOptions or EvaluationOptions
  /// as present::fromJson reads them, and "dump", the layout of samples without a header as
  /// dumpLayoutFromText reads it. What is left out has its default. Files that are named are
  /// looked for from the working folder.
  std::string options = "{}";
  /// In their order: each one that fits is merged into the options (RFC 7396: field by field, null
  /// takes a field back to its default), so that later ones win.
  std::vector<Override> overrides;
  OutlierRule outliers;
};

/// As JSON, both ways: "job", "options", "overrides" (a list of "pattern" and "options") and
/// "outliers" ("factor", "floor"); all may be left out. fromJson reads what stands there over what
/// the value holds, but for overrides, which are added behind its own.
///
/// \throws std::invalid_argument with a sentence that begins with the field, as in
///         overrides[1].options: light ...; the value stays as it was then
GREYCARD_BATCH_EXPORT std::string toJson(const Settings& settings);
GREYCARD_BATCH_EXPORT void fromJson(std::string_view text, Settings& settings);

/// The settings of a file over those given. \throws FileError; JobError that names the file and
/// what is wrong with it
GREYCARD_BATCH_EXPORT Settings readSettings(const std::filesystem::path& file,
                                            Settings settings = {});

/// The options of one photograph, all fields, as JSON that is the same for the same options.
/// \throws std::invalid_argument as fromJson
GREYCARD_BATCH_EXPORT std::string resolved(const Settings& settings,
                                           const std::filesystem::path& photo);

/// Refuses options that no photograph could be done with, whatever is in it, before any is: values
/// out of range, files that can't be read. \throws JobError that names the first of the photographs
/// that they are for; std::invalid_argument as resolved
GREYCARD_BATCH_EXPORT void checkSettings(const Settings& settings, std::span<const File> files);

/// 32 hexadecimal digits (XXH3, 128 bits) of all that bears on the photograph's result but its
/// content: its path as it is named, the job, its resolved options, and what is in the files that
/// these name. \throws as resolved
GREYCARD_BATCH_EXPORT std::string settingsHash(const Settings& settings,
                                               const std::filesystem::path& photo);

}  // namespace greycard::batch
