#pragma once

#include "greycard/types.h"

namespace greycard {

/// Reports now and then how many rows of a picture are done. \return false to stop
inline bool goesOn(const ProgressCallback& progress, int row, int rows) {
  constexpr int kRowsPerReport = 64;
  return !progress || row % kRowsPerReport != 0 || progress(static_cast<double>(row) / rows);
}

}  // namespace greycard
