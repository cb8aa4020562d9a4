#pragma once
/// \file
/// \ingroup contract

#include <span>

#include "greycard/export.h"

namespace greycard {

/// Undoes a camera's tone curve for one colour.
class GREYCARD_EXPORT DeGamma {
 public:
  /// Where on the input axis of the table each channel's value is reached, by straight lines
  /// between the entries and beyond its ends.
  ///
  /// \param gamma    the tone curve: 256 non-decreasing entries in a scale four times that of the
  ///                 colour (full scale 1020); what follows them is not looked at
  /// \param OrigRGB  the encoded colour, R, G, B from 0 to 255
  /// \param sRGB     receives R, G, B as entry numbers from 1.0 (equal to gamma[0]) to 256.0 (equal
  ///                 to gamma[255]), neither normalised nor counted from zero; not-a-number where
  ///                 the nearest entry begins or ends a segment without width, as just below a flat
  ///                 stretch, and for a value that is itself not a number
  /// \return true
  /// \throws std::invalid_argument for fewer than 256 entries or 3 channels
  bool runDeGamma(std::span<const double> gamma, std::span<const double> OrigRGB,
                  std::span<double> sRGB) const;
};

}  // namespace greycard
