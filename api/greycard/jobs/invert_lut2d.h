#pragma once
/// \file
/// \ingroup own

#include "greycard/export.h"
#include "greycard/lut2d_config.h"

namespace greycard {

/// How far colours are from where they were, after a table and its inverse in 10 bits: over hues
/// every 5 degrees, saturations 0.1 to 0.9 and lightnesses 0.35, 0.5 and 0.65.
struct Lut2dRoundTrip {
  struct Error {
    double mean = 0.0, worst = 0.0;
  };
  Error hueDeg, sat;
};

/// \throws std::invalid_argument as TwoDLutHelper::SetConfig
GREYCARD_EXPORT Lut2dRoundTrip roundTripLut2d(const Lut2DConfig& forward,
                                              const Lut2DConfig& inverse);

struct Lut2dInverseReport {
  int uncoveredNodes = 0;  ///< in no triangle of the table's targets; they change nothing
  Lut2dRoundTrip roundTrip;
};

/// The table that undoes a table, and how well it does.
struct Lut2dInverse {
  Lut2DConfig table;
  Lut2dInverseReport report;
};

/// By TwoDLutHelper::CalInverseLut2dCfg, whatever the table's inverse_flag, which is 0 afterwards.
/// \throws std::invalid_argument as TwoDLutHelper::SetConfig
GREYCARD_EXPORT Lut2dInverse invertLut2d(const Lut2DConfig& table);

}  // namespace greycard
