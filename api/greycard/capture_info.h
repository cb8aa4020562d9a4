#pragma once
/// \file
/// \ingroup own

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "greycard/export.h"
#include "greycard/types.h"

namespace greycard {

/// What a raw file tells about itself, in the same words whoever made the camera.
struct CaptureInfo {
  std::string format;  ///< "DNG", "raw" for other files with a header, "dump" for those without
  std::string camera;  ///< maker and model, printable ASCII; empty when the file doesn't tell
  std::string mosaic;  ///< colours of a 2x2 cell row by row, as in "RGGB"; "linear" or "grey" else
  int sensorWidth = 0, sensorHeight = 0;  ///< samples side by side and one above another
  int orientation = 1;                    ///< EXIF 2.32, tag Orientation: 1 to 8; already applied
  std::optional<double> iso;              ///< sensitivity, ISO 12232
  std::optional<double> exposureSeconds;
  /// Factors on linear R, G and B that the camera took for white balance, G being 1; not applied.
  std::optional<Vector3> asShotGains;
  Vector3 blackLevel{}, whiteLevel{};  ///< codes of R, G and B that became 0 and 65535
};

/// Name and value of what is known, for people: "Camera", "Sensor", "Exposure", "As shot gains",
/// "Levels".
GREYCARD_EXPORT std::vector<std::pair<std::string, std::string>> captureRows(
    const CaptureInfo& info);

}  // namespace greycard
