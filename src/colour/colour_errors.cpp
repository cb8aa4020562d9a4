#include "greycard/colour_errors.h"

#include <cstddef>

#include "greycard/delta_e.h"

namespace greycard {
namespace {

using Formula = double (*)(const Vector3&, const Vector3&);

ErrorColumn column(const PatchTable& referenceLab, const PatchTable& lab, Formula formula) {
  ErrorColumn errors;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    errors.patch[i] = formula(referenceLab[i], lab[i]);
    errors.mean += errors.patch[i] / kPatchCount;
    if (errors.patch[i] > errors.worst) {
      errors.worst = errors.patch[i];
      errors.worstPatch = static_cast<int>(i);
    }
  }
  return errors;
}

}  // namespace

ColourErrors colourErrors(const PatchTable& referenceLab, const PatchTable& lab) {
  ColourErrors errors{column(referenceLab, lab, deltaE76),
                      column(referenceLab, lab, deltaE94),
                      column(referenceLab, lab, deltaE2000),
                      {},
                      {}};
  double brighter = 0.0;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    errors.split[i] = differenceSplit(referenceLab[i], lab[i]);
    brighter += errors.split[i][0] / kPatchCount;
  }
  PatchTable level = lab;
  for (Vector3& colour : level) colour[0] -= brighter;
  errors.levelled2000 = column(referenceLab, level, deltaE2000);
  return errors;
}

}  // namespace greycard
