#pragma once
/// \file
/// \ingroup own

#include <string>
#include <vector>

#include "greycard/export.h"
#include "greycard/mcc_detector.h"
#include "greycard/picture.h"

namespace greycard {

/// A picture of one stage of the search.
struct StagePicture {
  std::string name;  ///< "1_working", ...: fit for a file name, in the order of the stages
  Picture picture;   ///< 8-bit R, G, B
};

/// What the lattice search saw on its way, in the working picture that decided: that picture
/// ("1_working"), its contrast ("2_contrast", bright where there are edges), the flat regions
/// ("3_regions") and those that make a grid ("4_grids", one colour per grid). For finding out why a
/// chart was not found; the outcome is drawn by present::annotateDetection. None for a picture in
/// which nothing is flat or that is too small to be searched. \throws as MCCDetector::detect
GREYCARD_EXPORT std::vector<StagePicture> chartSearchStages(const Picture& picture,
                                                            const DetectOptions& options = {});

}  // namespace greycard
