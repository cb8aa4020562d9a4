#pragma once

#include <string>

#include "greycard/lut2d_config.h"

namespace greycard::cli {

/// Changes that the table's shifts can't hold: such nodes move their colours only as far as those
/// reach.
struct CutChanges {
  int nodes = 0;
  std::string warning;  ///< a sentence for the user; empty without any
};
CutChanges cutChanges(const Lut2DConfig& config);

}  // namespace greycard::cli
