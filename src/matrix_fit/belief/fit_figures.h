#pragma once

#include <span>
#include <vector>

#include "fit_context.h"
#include "greycard/matrix_fit.h"

namespace greycard {

/// L*a*b* of a photograph's patches, and which of them took part.
struct ShownPhotograph {
  std::size_t number = 0;  ///< of the photograph
  PatchTable lab{};
  PatchMask counts{};
};

/// What the state makes of the setup's samples, photograph by photograph.
std::vector<ShownPhotograph> shownPhotographs(const FitContext& context, const FitSetup& setup,
                                              const FitState& state);

/// The figures over all patches that count.
FitFigures figuresOf(const FitContext& context, std::span<const ShownPhotograph> photographs);

/// The light at the patches of a photograph: light field times flat field (of G).
std::array<double, kPatchCount> lightOver(const FitSetup& setup, const FitState& state,
                                          std::size_t photograph);
/// 100 (largest - smallest) / largest.
double lightRange(const std::array<double, kPatchCount>& light);

/// dL*, dC*, dH* of a colour from its reference; dH* is positive where the hue angle grew.
Vector3 differenceSplit(const Vector3& referenceLab, const Vector3& lab);

/// The value below which a share (0..1) of the values lies, straight lines between the sorted ones;
/// 0 for none.
double percentile(std::vector<double> values, double share);

}  // namespace greycard
