#pragma once

#include <array>
#include <vector>

#include "raw_curve.h"

namespace greycard::reading {

/// A curve as the catalogue has it: tables of 1024 codes of 14 bits.
struct CatalogueTables {
  std::vector<GammaTable> tables;  ///< one, or red, green and blue
  /// Instead of tables: points of an editor, from which they are to be computed.
  ControlPointList points;
  std::array<GammaImport::Table, 3> inFile;
  std::vector<GammaImportNote> notes;
};

/// Whole codes without inputs, 64, 256, 512 or 1024 of up to 14 bits, as a curve file's
/// (expandTable); anything else by straight lines, full scale to full scale. The depth of codes is
/// the file's, or else that of the largest; values that are all within 0..1 are fractions.
/// \throws Refusal for counts outside 2..65536, values below 0 or above 16 bits, and inputs that
/// don't rise
CatalogueTables tablesOf(const RawCurve& raw);

}  // namespace greycard::reading
