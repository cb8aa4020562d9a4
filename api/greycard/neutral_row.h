#pragma once
/// \file
/// \ingroup own

#include <vector>

#include "greycard/export.h"
#include "greycard/patch_sampler.h"
#include "greycard/types.h"

namespace greycard {

/// How well the grey patches, 19 to 24, stand to each other as their references do. They do where
/// the samples mean what they were taken to mean; in a tone-mapped photograph they don't.
struct NeutralRow {
  double largest = 0.0;    ///< largest distance to the reference in L*
  int patch = 18;          ///< where, 0-based
  double otherwise = 0.0;  ///< the largest distance had the samples meant the other encoding
};

/// The L* of a patch is that of the mean of its R, G and B, times the one factor that brings the
/// logarithms of light nearest to the references'.
///
/// \param linearRgb  balanced; patches without light and those that clip don't take part
/// \param encoding   what the samples were taken to mean
/// \param clipped    0-based
/// \return zeros where fewer than three patches take part
GREYCARD_EXPORT NeutralRow neutralRow(const PatchTable& linearRgb, const PatchTable& referenceLab,
                                      SampleEncoding encoding, const std::vector<int>& clipped);

}  // namespace greycard
