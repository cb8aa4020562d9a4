#pragma once

// The sub-commands of greycard gamma, and what they share.

#include <CLI/CLI.hpp>
#include <cstdint>
#include <span>
#include <string>

#include "greycard/gamma_curve.h"

namespace greycard::cli {

void addGammaList(CLI::App& gamma);
void addGammaShow(CLI::App& gamma);
void addGammaLut(CLI::App& gamma);

/// Bits and largest value of the catalogue's tables.
inline constexpr int kCurveBits = 14, kCurveMax = (1 << kCurveBits) - 1;

/// A curve of the catalogue and one of its channels, as options.
struct CurveChoice {
  std::string name, channel = "all";

  void addTo(CLI::App& app);
  /// \throws JobError that lists the names when there is no such curve
  GammaCurvePtr curve() const;
  /// The chosen channel's table of the curve.
  std::span<const std::int32_t> table(const GammaCurve& curve) const;
  ColorChannel colorChannel() const;
};

}  // namespace greycard::cli
