#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "greycard/batch/export.h"
#include "greycard/batch/files.h"
#include "greycard/batch/settings.h"
#include "greycard/illum.h"
#include "greycard/types.h"

namespace greycard::batch {

/// What tables and pages tell of a job's result, as far as the job has it.
struct Figures {
  std::optional<Illum> light;
  std::optional<double> meanError, worstError;  ///< CIEDE2000: after a fit, or of an evaluation
  std::optional<int> worstPatch;                ///< 0-based
  std::optional<Vector3> whiteBalance;
  std::optional<double> exposure;
  std::optional<Matrix3> matrix;
  std::vector<std::string> warnings;
};

/// What became of one photograph.
struct GREYCARD_BATCH_EXPORT Result {
  std::filesystem::path photo;
  Job job = Job::ccm;
  std::string version;       ///< of the library
  std::string contentHash;   ///< of the file, 32 hexadecimal digits (XXH3, 128 bits); empty when it
                             ///< could not be read, or to have it tried again
  std::string settingsHash;  ///< see batch::settingsHash
  std::string options;       ///< see resolved
  std::string reason;        ///< why the job could not be done; empty when it was
  /// Of the job as present::toJson writes it. A failed job may have one: the search for a chart
  /// that was refused.
  std::string result;
  Figures figures;        ///< those of the result
  std::string thumbnail;  ///< with the patches drawn: an address data:image/jpeg;... for pages

  bool failed() const { return !reason.empty(); }
};

/// Does the job. The same photograph and settings give the same result to the last byte: there is
/// no time of day in it. Holds the photograph and what the job needs, and nothing when it returns;
/// starts no thread.
///
/// \param progress  asked and told now and then
/// \return empty when that cancelled
/// \throws std::invalid_argument for settings that can't be (resolved). What the photograph, its
///         file or its job is guilty of is the result's reason.
GREYCARD_BATCH_EXPORT std::optional<Result> doPhotograph(const File& file, const Settings& settings,
                                                         const ProgressCallback& progress = {});

/// The reason's result for a photograph whose job ended in another way, as by the death of the
/// process that did it. It is tried again where a run is resumed. \throws as resolved
GREYCARD_BATCH_EXPORT Result failedResult(const File& file, const Settings& settings,
                                          const std::string& reason);

/// As JSON, both ways. \throws std::invalid_argument with a sentence that begins with the field
GREYCARD_BATCH_EXPORT std::string toJson(const Result& result);
GREYCARD_BATCH_EXPORT void fromJson(std::string_view text, Result& result);

/// Likewise as a file, written whole or not at all (writeWholeFile). \throws FileError
GREYCARD_BATCH_EXPORT void writeResult(const std::filesystem::path& file, const Result& result);
/// \throws FileError; JobError that names the file and what is wrong with it
GREYCARD_BATCH_EXPORT Result readResult(const std::filesystem::path& file);

/// What the file holds, where that is the result that doPhotograph would give: of the same
/// photograph with the same content, with the same settings, by this version. Empty for whatever
/// else stands there, and for a photograph that can't be read. \throws as resolved
GREYCARD_BATCH_EXPORT std::optional<Result> doneResult(const std::filesystem::path& resultFile,
                                                       const File& file, const Settings& settings);
/// Whether it is there.
GREYCARD_BATCH_EXPORT bool isDone(const std::filesystem::path& resultFile, const File& file,
                                  const Settings& settings);

}  // namespace greycard::batch
