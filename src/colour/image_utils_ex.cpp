#include "greycard/image_utils_ex.h"

#include "colour_space.h"
#include "pseudo_inverse.h"

namespace greycard {

void ImageUtilsEx::CIELabTosRGB(Vector3& pRGB, const Vector3& pLab) {
  pRGB = greycard::CIELab_to_sRGB(pLab);
}

void ImageUtilsEx::sRGBToCIELab(Vector3& pLab, const Vector3& pRGB) {
  pLab = greycard::sRGB_to_CIELab(pRGB);
}

bool ImageUtilsEx::compute_pseudo_inverse(const Matrix3& inM, Matrix3& outM) {
  return greycard::compute_pseudo_inverse(inM, outM);
}

}  // namespace greycard
