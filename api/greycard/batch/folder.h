#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <memory>
#include <span>
#include <vector>

#include "greycard/batch/export.h"
#include "greycard/batch/files.h"
#include "greycard/batch/result.h"
#include "greycard/batch/settings.h"
#include "greycard/batch/summary.h"

namespace greycard::batch {

// A folder of results: photographs/NAME.json for each photograph, and results.csv, summary.json and
// index.html for all. Nothing in it depends on how many did the work, in which order, or how often
// it was interrupted.

/// Where the result of a photograph stands.
GREYCARD_BATCH_EXPORT std::filesystem::path resultFile(const std::filesystem::path& folder,
                                                       const File& file);

/// What a finished run comes to.
struct Overview {
  std::vector<Result> results;  ///< in the photographs' order, without `options` and `result`
  Summary summary;
};

/// A folder of results while a run writes into it, which no other run can do then (on file systems
/// that know locks). Those who do the work need it only to be there: isDone, doPhotograph, and
/// writeResult to resultFile.
class GREYCARD_BATCH_EXPORT Folder {
 public:
  enum class Start {
    fresh,   ///< the folder is new or empty
    resume,  ///< or holds what an earlier run left there; half-written files are cleared away
  };
  /// Makes the folder where it isn't there.
  /// \throws JobError for a folder that holds anything, unless it is resumed, and one that another
  ///         run writes into; FileError for one that can't be made or looked into
  Folder(const std::filesystem::path& folder, Start start);
  ~Folder();
  Folder(Folder&&) noexcept;
  Folder& operator=(Folder&&) noexcept;

  /// Reads the results of all photographs and writes results.csv, summary.json and index.html.
  /// Results of other photographs in the folder count for nothing.
  /// \throws FileError and JobError for a photograph whose result isn't there
  Overview finish(std::span<const File> files, const Settings& settings) const;
  /// Likewise from the results as readResult or doneResult gave them, in the photographs' order.
  Overview finish(std::vector<Result> results, const Settings& settings) const;

 private:
  struct Lock;
  std::filesystem::path m_folder;
  std::unique_ptr<Lock> m_lock;
};

}  // namespace greycard::batch
