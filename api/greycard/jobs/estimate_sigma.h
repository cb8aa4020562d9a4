#pragma once
/// \file
/// \ingroup own

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "greycard/export.h"
#include "greycard/jobs/read_flat_field.h"
#include "greycard/sigma_lut.h"

namespace greycard {

/// The radial noise table of a flat field (SigmaLUT), and what to think of it.
struct SigmaEstimate {
  std::filesystem::path file;
  std::uint64_t width = 0, height = 0;  ///< pixels
  float centreNoiseSigma = 0.0F;        ///< SigmaLUT::center_noise_sigma, in code values of 8 bits
  std::array<float, kSigmaEntries> lut{};
  std::string msg;                  ///< of SigmaLUT; mostly empty
  std::vector<std::string> advice;  ///< a sentence each, `msg` first
  SigmaReport report;
  /// Row by row, in code values; empty unless asked for, and in a result read from JSON.
  std::vector<float> localSigma;
};

/// \param keepsLocalSigma  whether the result has the local sigma of every pixel
/// \throws std::invalid_argument for a field without pixels or with fewer samples than pixels;
///         std::exception when it takes more memory than there is
GREYCARD_EXPORT SigmaEstimate estimateSigma(const FlatField& field, bool keepsLocalSigma = false);

}  // namespace greycard
