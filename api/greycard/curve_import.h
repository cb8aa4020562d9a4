#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <memory>
#include <string>

#include "greycard/export.h"
#include "greycard/gamma_curve_model.h"
#include "greycard/gamma_import.h"
#include "greycard/text_view.h"

namespace greycard {

struct CurveImportOptions {
  /// Tables are computed anew from the file's control points (GammaCurve::CalculateCurve).
  bool fromPoints = false;
};

/// Reads a tone curve as people and programs keep it into a new curve of the catalogue. The form is
/// told by the content:
///
/// - a curve file, read as GammaCurveModel::ImportFromFile does; with control points alone, the
///   curve through them,
/// - .cube of one dimension,
/// - one to four columns of numbers (values; input and value; R, G, B; input, R, G, B) between
///   blanks, tabs, commas or semicolons, under a line of names or not, with # and // for comments,
/// - lists of values, pairs or rows in JSON or YAML, also in maps, as tuning files and our own
///   results have them,
/// - initialised arrays of a C or C++ text, with hexadecimal numbers too,
/// - plain numbers one after the other.
///
/// A curve has 2 to 65536 values: fractions when none is above 1, else codes of 8, 10, 12, 14 or 16
/// bits as the largest tells. 64, 256, 512 or 1024 whole codes of up to 14 bits become a table as
/// those of a curve file do. Anything else is resampled by straight lines, full scale to full
/// scale, which is noted. 257 codes of up to 10 bits are those of HDR10 and HLG curves, over the
/// inputs 0, 16, ... 4080, 4095 of 12 bits. Up to 32 points of whole numbers with a last X of 255
/// are control points.
///
/// \param name  of the curve, with a number behind when it is taken
/// \return as ImportWithReport; a refusal has line and column where there is a place to tell
/// \throws std::invalid_argument for a catalogue of other than 14 bits
GREYCARD_EXPORT GammaImport importAnyCurve(GammaCurveModel& catalogue, TextView name,
                                           std::string text,
                                           const CurveImportOptions& options = {});
/// The same of a file, after which the curve is named, without folder and extension.
/// \throws FileError
GREYCARD_EXPORT GammaImport importAnyCurveFile(GammaCurveModel& catalogue,
                                               const std::filesystem::path& file,
                                               const CurveImportOptions& options = {});

/// What a text says of a tone curve, before there is a catalogue to put it into: the part of an
/// import that may take long.
class GREYCARD_EXPORT CurveReading {
 public:
  /// What is wrong with the text is told by importAnyCurve.
  explicit CurveReading(std::string text);

 private:
  friend GREYCARD_EXPORT GammaImport importAnyCurve(GammaCurveModel& catalogue, TextView name,
                                                    const CurveReading& reading,
                                                    const CurveImportOptions& options);
  struct State;
  std::shared_ptr<const State> m_state;
};
/// The rest of it: what importAnyCurve gives of the text.
GREYCARD_EXPORT GammaImport importAnyCurve(GammaCurveModel& catalogue, TextView name,
                                           const CurveReading& reading,
                                           const CurveImportOptions& options = {});

}  // namespace greycard
