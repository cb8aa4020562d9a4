#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <string>
#include <vector>

#include "greycard/curve_tables.h"
#include "greycard/errors.h"
#include "greycard/export.h"
#include "greycard/gamma_curve.h"
#include "greycard/gamma_import.h"

namespace greycard {

/// The note with its file, line, column and word, as one line.
GREYCARD_EXPORT std::string noteText(const std::filesystem::path& file,
                                     const GammaImportNote& note);

/// A curve file gives no curve. what() is the reason, with the file and the line.
class GREYCARD_EXPORT CurveFileRefused : public JobError {
 public:
  CurveFileRefused(const std::filesystem::path& file, const GammaImport& import);
  /// What else there is to say about the file, a line each (noteText).
  const std::vector<std::string>& notes() const { return m_notes; }

 private:
  std::vector<std::string> m_notes;
};

/// A curve, and what its file held that could not be used or may surprise.
struct SourcedCurve {
  GammaCurvePtr curve;
  std::vector<std::string> notes;  ///< a line each (noteText); none of a curve of the catalogue
};

/// A curve of the catalogue by its name, or "HDR10" (up to 10000 cd/m2) or "HLG", their 257 codes
/// resampled to 1024 entries of 14 bits, or else the curve of a file (importAnyCurve).
/// \throws JobError that lists the names when it is neither; CurveFileRefused; FileError
GREYCARD_EXPORT SourcedCurve curveByNameOrFile(const std::string& nameOrFile);

/// A curve to show beside others.
struct ComparisonCurve {
  CurveTables curve;  ///< called as it was asked for: a file by its name without the folder
  std::vector<std::string> notes;
};

/// "HDR10" or "HLG" as they are, 257 codes of 10 bits, or a curve as
/// curveByNameOrFile has them. \throws as that
GREYCARD_EXPORT ComparisonCurve comparisonCurve(const std::string& nameOrFile);

}  // namespace greycard
