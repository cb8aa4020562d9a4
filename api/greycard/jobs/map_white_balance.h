#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "greycard/awb_utils.h"
#include "greycard/export.h"

namespace greycard {

struct WhiteBalanceOptions {
  AWBUtils::ReferencePoints from{}, to{};  ///< of the source sensor, and their counterparts
  std::vector<WhiteBalancePoint> points;   ///< of the source sensor, to be mapped
};

/// White-balance points of one sensor in another sensor's plane.
struct GREYCARD_EXPORT WhiteBalanceMapping {
  AWBUtils::ReferencePoints from{}, to{};
  AffineTransform transform;  ///< carries `from` onto `to`, and the points to where they belong
  std::vector<WhiteBalancePoint> points;

  /// False when the references in `from` lie on one line, so that the transform means nothing.
  bool spansPlane() const { return AWBUtils::SpansPlane(from); }
  /// Largest difference of a coordinate of a mapped reference from its target; may be NaN.
  double largestResidual() const;
  /// Whether the references are mapped onto their targets but for rounding: false for almost all
  /// that lie almost on one line, and for figures that are too large.
  bool meetsTargets() const;
};

/// \throws JobError when the references in `from` lie on one line, or almost, so that no mapping
///         carries them onto their targets
GREYCARD_EXPORT WhiteBalanceMapping mapWhiteBalance(const WhiteBalanceOptions& options);

/// The point of a text of two numbers, R/G and B/G, with blanks or a comma between them.
/// \throws std::invalid_argument with a part of a sentence
GREYCARD_EXPORT WhiteBalancePoint whiteBalancePoint(std::string_view text);

/// The points of a file, one a line; blank lines and lines that begin with # are passed over.
/// \throws FileError; JobError that names the file and the line
GREYCARD_EXPORT std::vector<WhiteBalancePoint> readWhiteBalancePoints(
    const std::filesystem::path& file);

}  // namespace greycard
