#pragma once
/// \file
/// \ingroup own

#include <optional>

#include "greycard/export.h"
#include "greycard/patch_sampler.h"
#include "greycard/picture.h"

namespace greycard {

/// What a photograph's samples mean, as far as somebody says so; the rest follows from its bits.
struct SampleMeaning {
  std::optional<SampleEncoding> encoding;  ///< else sRGB for 8 bits and linear for 16
  std::optional<double> blackLevel;        ///< else 0
  std::optional<double> whiteLevel;        ///< else 255 or 65535
};

/// sRGB for 8 bits and linear for 16: what samples are where nobody says otherwise.
GREYCARD_EXPORT SampleEncoding defaultEncoding(int bits);

/// \throws std::invalid_argument unless the white level is above the black level
GREYCARD_EXPORT SampleLevels sampleLevels(const Picture& picture,
                                          const SampleMeaning& meaning = {});

}  // namespace greycard
