#pragma once
/// \file
/// \ingroup own

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

#include "greycard/errors.h"
#include "greycard/export.h"
#include "greycard/lut2d_config.h"
#include "greycard/picture.h"
#include "greycard/ten_bit_planes.h"

namespace greycard {

struct Lut2dApplyOptions {
  /// Bits of the samples: 10 in a 16-bit picture whose white is 1023; else those of the picture.
  std::optional<int> bits{};
};

/// The picture's samples can't be of the bits that the options say.
class GREYCARD_EXPORT WrongSampleBits : public JobError {
 public:
  WrongSampleBits(const std::string& fact, const std::string& advice)
      : JobError(fact + "; " + advice), m_fact(fact) {}
  /// What the samples are, without the advice.
  const std::string& fact() const { return m_fact; }

 private:
  std::string m_fact;
};

struct Lut2dApplyReport {
  std::filesystem::path photo, lut;
  int whiteLevel = 0;  ///< sample of full scale
  std::size_t pixels = 0, changedPixels = 0;
};

/// A picture before and after a hue/saturation table.
struct GREYCARD_EXPORT AppliedLut2d {
  Lut2dApplyReport report;
  int bits = 8;  ///< sample size of the picture
  TenBitPlanes before, after;

  /// The picture with the colours moved, of the white level and the sample size that it had.
  Picture picture() const;
  /// Before and after in 8 bits, side by side.
  Picture comparison() const;
};

/// Moves the colours of a picture. The table works on 10 bits: other samples are scaled to that and
/// back.
///
/// \param photo,lut  name picture and table in messages and in the report; may be empty
/// \throws WrongSampleBits; JobError for a picture of more than 65535 pixels a side;
///         std::invalid_argument as TenBitPlanes and TwoDLutHelper::SetConfig, and for bits other
///         than 8, 10 and 16
GREYCARD_EXPORT AppliedLut2d applyLut2d(const Picture& picture, const Lut2DConfig& table,
                                        const Lut2dApplyOptions& options = {},
                                        const std::filesystem::path& photo = {},
                                        const std::filesystem::path& lut = {});

}  // namespace greycard
