#pragma once
/// \file
/// \ingroup own

#include <array>
#include <filesystem>
#include <optional>
#include <string>

#include "greycard/chart_simulator.h"
#include "greycard/export.h"
#include "greycard/flat_field_simulator.h"
#include "greycard/picture.h"
#include "greycard/raw/bayer_pattern.h"
#include "greycard/sigma_lut.h"
#include "greycard/types.h"

namespace greycard {

/// What a DNG of a simulated photograph is like.
struct DngForm {
  std::optional<BayerPattern> bayer;  ///< empty: three linear channels
  int bits = 14;                      ///< of a sample: 10, 12, 14 or 16
};

/// A simulated photograph of the chart, and the truth about it.
struct GREYCARD_EXPORT SimulatedChart {
  std::filesystem::path file;  ///< without its folder
  SimulationSettings settings;
  SimulationTruth truth;
  Picture picture;             ///< empty in a result read from JSON
  std::optional<DngForm> dng;  ///< of simulateDng

  /// Mean area of a patch over the least that MCCDetector takes in a picture of that size.
  double patchAreaOverMinimum() const;
  /// Sample of full scale: the settings' white level, or what the bits hold.
  double whiteLevel() const;
};

/// \param file  where the picture will be; names it in the result, may be empty
/// \return empty when the callback cancelled
/// \throws std::invalid_argument as ChartSimulator::Simulate
GREYCARD_EXPORT std::optional<SimulatedChart> simulateChart(const SimulationSettings& settings,
                                                            const std::filesystem::path& file = {},
                                                            const ProgressCallback& progress = {});

/// A photograph as the sensor's own codes, for a DNG: linear, whatever the settings' encoding and
/// bits; a white level of 0 stands for what the form's bits hold. The picture has three channels
/// still, and the truth its pixels.
/// \throws std::invalid_argument also for other bits and for an odd width or height of a mosaic
GREYCARD_EXPORT std::optional<SimulatedChart> simulateDng(SimulationSettings settings,
                                                          const DngForm& form,
                                                          const std::filesystem::path& file = {},
                                                          const ProgressCallback& progress = {});

/// The file of what simulateDng gave.
/// \throws std::invalid_argument for a photograph that is not for a DNG
GREYCARD_EXPORT std::string dngOf(const SimulatedChart& chart);

/// A simulated flat field, whose settings are the truth about it.
struct GREYCARD_EXPORT SimulatedFlatField {
  std::filesystem::path file;  ///< without its folder
  FlatFieldSettings settings;
  Picture picture;  ///< empty in a result read from JSON

  /// How much stronger the noise is than at the centre, at the radii of a sigma table's entries.
  std::array<double, kSigmaEntries> noiseGains() const;
};

/// Likewise. \throws std::invalid_argument as FlatFieldSimulator::Simulate
GREYCARD_EXPORT std::optional<SimulatedFlatField> simulateFlatField(
    const FlatFieldSettings& settings, const std::filesystem::path& file = {},
    const ProgressCallback& progress = {});

}  // namespace greycard
