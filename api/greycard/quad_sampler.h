#pragma once
/// \file
/// \ingroup own

#include "greycard/export.h"
#include "greycard/patch_quads.h"
#include "greycard/patch_sampler.h"
#include "greycard/picture.h"
#include "greycard/types.h"

namespace greycard {

/// What is seen inside 24 patches given by their corners. Values are linear, as SampleLevels says;
/// the three columns of a grey picture are equal.
struct QuadSampling {
  PatchTable mean{};
  PatchTable deviation{};  ///< standard deviation of a pixel
  PatchTable median{};     ///< of an even number of pixels, the mean of the two in the middle
  /// Standard deviation of the means of 3 x 3 cells: a gradient, a shadow's edge or a place off the
  /// patch raise it; noise hardly does.
  PatchTable unevenness{};
  SamplingReport report;  ///< clipped shares and numbers of pixels
};

/// Samples the middle of each patch: its side times `share`, seen as the patch is seen, so that no
/// gap or neighbour is touched at any turn and tilt. A pixel counts when its centre lies inside.
/// What lies outside the picture is left out.
///
/// \param share  0..1, above 0; 0.5 is the middle half of each side.
/// \throws std::invalid_argument that names the patch whose corners are not finite, not a convex
///         quadrilateral, or hold no pixel of the picture; for a share, levels or a picture that
///         can't be.
GREYCARD_EXPORT QuadSampling sampleQuads(const Picture& picture, const PatchQuads& patches,
                                         const SampleLevels& levels, double share = 0.5);

/// \throws std::invalid_argument for a share that isn't above 0 and at most 1
GREYCARD_EXPORT void checkSampledShare(double share);

/// The corners of what sampleQuads looks at in each patch. \throws as it, for patches and share
GREYCARD_EXPORT PatchQuads sampledMiddles(const PatchQuads& patches, double share = 0.5);

}  // namespace greycard
