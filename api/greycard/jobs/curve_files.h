#pragma once
/// \file
/// \ingroup own

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "greycard/curve_import.h"
#include "greycard/curve_source.h"
#include "greycard/curve_tables.h"
#include "greycard/export.h"
#include "greycard/gamma_curve_model.h"

namespace greycard {

/// The shape of a curve file.
struct CurveFileForm {
  int values = 1024;      ///< of a table: 64, 256, 512 or 1024
  int bits = kCurveBits;  ///< of a value: 8, 10, 12 or 14
};

/// A curve and the file that it was written to.
struct CurveExport {
  CurveTables curve;
  std::filesystem::path file;
  CurveFileForm form;
};

/// A curve as a curve file's text. \throws JobError when the curve has no table that could be
/// written; std::invalid_argument for a form other than the above
GREYCARD_EXPORT std::string curveFileText(const GammaCurve& curve, const CurveFileForm& form = {});

/// Writes a curve file. \throws JobError when the curve has no table that could be written;
/// std::invalid_argument for a form other than the above; FileError
GREYCARD_EXPORT CurveExport exportCurve(const GammaCurve& curve, const std::filesystem::path& file,
                                        const CurveFileForm& form = {});

/// One table of numbers as it stood in a curve file.
struct CurveFileTable {
  CurveChannel channel = CurveChannel::Red;  ///< Red also of a table for all channels
  std::size_t values = 0;
  std::int32_t bits = 0;  ///< as its last number tells, or the largest where the file is no curve
                          ///< file; 0 for an unusable table and for fractions
};

/// What a curve file held.
struct ImportedCurve {
  CurveTables curve;
  std::filesystem::path file;
  std::vector<CurveFileTable> fileTables;
  std::vector<GammaImportNote> notes;  ///< what was left out or may surprise, in file order
};

/// A file that gives no curve.
struct RefusedCurveFile {
  std::filesystem::path file;
  std::string reason;              ///< one sentence with file, line and column
  std::vector<std::string> notes;  ///< what else there is to say, a line each (noteText)
};

struct CurveImportReport {
  std::vector<ImportedCurve> curves;        ///< one for each file that gives one
  std::vector<RefusedCurveFile> refused{};  ///< the others
};

/// Reads files of curves into the catalogue (importAnyCurveFile), where the curves are found by the
/// names that the report tells.
/// \throws std::invalid_argument as importAnyCurve
GREYCARD_EXPORT CurveImportReport importCurves(GammaCurveModel& catalogue,
                                               std::span<const std::filesystem::path> files,
                                               const CurveImportOptions& options = {});

}  // namespace greycard
