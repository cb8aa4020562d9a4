#pragma once
/// \file
/// \ingroup own

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "greycard/export.h"

namespace greycard {

/// A camera's tone curve as three tables of 256 codes at equal steps of linear input: R, G, B.
struct GREYCARD_EXPORT CameraGamma {
  using Tables = std::array<std::vector<std::int32_t>, 3>;

  std::string name;  ///< of the catalogue, or of the file
  int bits = 14;     ///< 8, 10, 12 or 14, of the codes: full scale is 2^bits - 1
  Tables tables;

  /// The codes shifted to 14 bits, as curve tables are; full scale ends below 16383 then.
  Tables in14Bits() const;
};

/// A curve of the catalogue by its name (every fourth entry of its tables), or else a file of 256
/// whole numbers separated by blanks, commas or line ends, of 8, 10, 12 or 14 bits as its largest
/// number tells (below 256, 1024, 4096).
/// \throws JobError when it is neither; FileError
GREYCARD_EXPORT CameraGamma cameraGamma(const std::string& nameOrFile);

}  // namespace greycard
