#pragma once
/// \file
/// \ingroup own

#include <array>
#include <string>
#include <vector>

#include "greycard/export.h"
#include "greycard/gamma_curve.h"

namespace greycard {

/// The perceptual quantiser of SMPTE ST 2084, and the hybrid log-gamma curve of ITU-R BT.2100.
enum class StandardCurveKind { HDR10, HLG };
/// Their names, in that order.
inline constexpr std::array kStandardCurveNames{"HDR10", "HLG"};

struct StandardCurveOptions {
  StandardCurveKind kind = StandardCurveKind::HDR10;
  int nits = 10000;  ///< peak luminance of HDR10 in cd/m2, 1..10000
};

/// A curve of 257 output codes over linear inputs.
struct StandardCurve {
  static constexpr int kInputBits = 12, kOutputBits = 10;

  StandardCurveKind kind = StandardCurveKind::HDR10;
  double peak = 1.0;  ///< light at full-scale input: cd/m2 of HDR10, 1 of HLG (without a unit)
  std::vector<int> inputs;  ///< codes of 12 bits: 0, 16, ... 4080, 4095
  GammaTable table;         ///< codes of 10 bits

  /// Light at an input, from 0 to the peak.
  double light(int input) const { return peak * input / ((1 << kInputBits) - 1); }
};

/// \throws std::invalid_argument for a peak luminance outside 1..10000
GREYCARD_EXPORT StandardCurve standardCurve(const StandardCurveOptions& options = {});

/// The output codes for a file, one a line.
GREYCARD_EXPORT std::string codesText(const StandardCurve& curve);

}  // namespace greycard
