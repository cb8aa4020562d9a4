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
  return {column(referenceLab, lab, deltaE76), column(referenceLab, lab, deltaE94),
          column(referenceLab, lab, deltaE2000)};
}

}  // namespace greycard
