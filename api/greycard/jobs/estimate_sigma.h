#pragma once
/// \file
/// \ingroup own

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "greycard/errors.h"
#include "greycard/export.h"
#include "greycard/jobs/read_flat_field.h"
#include "greycard/sigma_lut.h"

namespace greycard {

/// The radial noise table of a flat field (SigmaLUT), and what to think of it.
struct GREYCARD_EXPORT SigmaEstimate {
  std::filesystem::path file;
  std::uint64_t width = 0, height = 0;  ///< pixels
  float centreNoiseSigma = 0.0F;        ///< SigmaLUT::center_noise_sigma, in code values of 8 bits
  std::array<float, kSigmaEntries> lut{};
  std::string msg;                  ///< of SigmaLUT; mostly empty
  double fileCodes = 1.0;           ///< code values of the file in one of 8 bits
  std::vector<std::string> advice;  ///< a sentence each, `msg` first
  /// Why this is no flat field to make a table of, a sentence each: more than 1 % of the samples
  /// cut off at an end of the scale, all samples equal, samples above 255, or a field that isn't
  /// flat (SigmaReport::unflatness above 5 %).
  std::vector<std::string> doubts;
  SigmaReport report;
  /// Row by row, in code values; empty unless asked for, and in a result read from JSON.
  std::vector<float> localSigma;

  /// \throws DoubtfulFlatField with all doubts, where there are any
  void require() const;
};

/// A picture that is no flat field, or one that hides its noise.
class GREYCARD_EXPORT DoubtfulFlatField : public JobError {
 public:
  using JobError::JobError;
};

/// \param keepsLocalSigma  whether the result has the local sigma of every pixel
/// \throws std::invalid_argument for a field without pixels or with fewer samples than pixels;
///         std::exception when it takes more memory than there is
GREYCARD_EXPORT SigmaEstimate estimateSigma(const FlatField& field, bool keepsLocalSigma = false);

}  // namespace greycard
