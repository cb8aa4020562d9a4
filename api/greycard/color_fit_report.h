#pragma once
/// \file
/// \ingroup own

#include <cstdint>
#include <optional>
#include <string>

#include "greycard/export.h"
#include "greycard/types.h"

namespace greycard {

/// What a colour-matrix fit worked on and how it went: the material of a report. All costs are
/// those of the fit's deltaE mode and noise rate, without saturation pressure and with a hue weight
/// of 1, so that the first and the last can be compared.
struct GREYCARD_EXPORT ColorFitReport {
  PatchTable m_balancedRGB{};  ///< measured RGB times exposure and white-balance gains, not clipped
  PatchTable m_uncorrectedLab{};  ///< L*a*b* of the balanced chart with the identity for a matrix
  PatchTable m_targetLab{};       ///< what the fit aimed at

  double m_startError = 0.0;  ///< mean CIE76 error of the linear least-squares start matrix
  double m_firstCost = 0.0;   ///< of the start matrix
  double m_lastCost = 0.0;    ///< of the result
  std::int32_t m_powellRuns = 0;
  std::int64_t m_evaluations = 0;  ///< of the cost, in all runs
  std::string m_stopReason;        ///< why the run that gave the result stopped

  /// Chroma of patches 1 to 18 against the target's: 0.1 is 10 % more. Empty when the target has no
  /// chroma.
  std::optional<double> m_chromaChange;
  std::optional<double> m_chromaChangeWanted;  ///< empty without a saturation search
  double m_hueWeight = 1.0;                    ///< kH of CIE94 that the result was found with
  double m_saturationPressure = 0.0;           ///< g that the result was found with
};

}  // namespace greycard
