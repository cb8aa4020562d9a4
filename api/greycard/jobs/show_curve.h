#pragma once
/// \file
/// \ingroup own

#include <cstddef>
#include <string>
#include <vector>

#include "greycard/curve_tables.h"
#include "greycard/export.h"
#include "greycard/gamma_curve_model.h"

namespace greycard {

/// What a catalogue says of one curve.
struct CatalogueCurve {
  std::string name;
  std::size_t entries = 0;  ///< of its (red) table
  bool unified = true;      ///< one table serves all channels
  bool immutable = false;
};

struct GammaCatalogueListing {
  std::vector<CatalogueCurve> curves;  ///< in the catalogue's order
};

GREYCARD_EXPORT GammaCatalogueListing listCurves(const GammaCurveModel& catalogue);

struct ShowCurveOptions {
  CurveChannel channel = CurveChannel::All;
  int points = 17;  ///< samples of a curve without control points, 2..256
};

/// One channel of a curve.
struct ShownCurve {
  std::string name;
  CurveChannel channel = CurveChannel::All;
  bool unified = true, immutable = false;
  GammaTable table;
  bool pointsAreSamples = false;  ///< of the table, as the curve has no control points of its own
  ControlPointList points;
};

/// \throws JobError for a curve without a table; std::invalid_argument for points outside 2..256
GREYCARD_EXPORT ShownCurve showCurve(const GammaCurve& curve, const ShowCurveOptions& options = {});

}  // namespace greycard
