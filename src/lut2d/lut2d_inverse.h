#pragma once

#include "greycard/diagnostics.h"
#include "greycard/lut2d_cfg.h"

namespace greycard {

/// Rewrites the delta grid so that the table undoes the mapping that it describes, when
/// inverse_flag is not zero. Reports to `remarks`, unless that is empty.
/// \return how many nodes no triangle of targets contained; they got no change
int CalInverseDifflut2dCfg(lut2d_cfg& cfg, const TextSink& remarks);

}  // namespace greycard
