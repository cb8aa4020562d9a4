#pragma once

#include <optional>
#include <string>

#include "fit_context.h"
#include "greycard/matrix_fit.h"

namespace greycard {

/// What ColorCorrectionUtils makes of one photograph, judged on the patches that took part. Empty,
/// with the reason, when it refuses the photograph.
struct StatedFit {
  std::optional<FitFigures> figures;
  std::string refusal;
};
StatedFit statedFit(const FitContext& context, std::size_t photograph);

}  // namespace greycard
