#pragma once

#include "image.h"
#include "vector.h"

namespace greycard::pxcore {

/// A separable image filter: one kernel for rows, one for columns. The image goes on beyond its
/// border as if mirrored there.
class IpFilterSep {
 public:
  IpFilterSep() = default;
  /// The same kernel along rows and columns.
  explicit IpFilterSep(const TVector<float>& kernel) : m_fvHKernel(kernel), m_fvVKernel(kernel) {}
  /// A copy, with the two kernels swapped if bTranspose.
  IpFilterSep(const IpFilterSep& other, bool bTranspose);

  void SetKernel(TVector<float> vHKernel, TVector<float> vVKernel);

  /// imgOut(x, y) = sum of h[i] v[k] imgIn(x + i - h/2, y + k - v/2), sizes halved as integers.
  /// Half-cosine kernels as IpFilter1D makes them cost the same whatever their length. The images
  /// may be the same one. A relative error of 1e-6 at most, but where the sum has fallen below a
  /// millionth of its largest within the last 1000 pixels: 1e-12 of that.
  /// \throws ExceptionCheck when an image is not valid, "imgIn.IsSameSize(imgOut)", or
  ///         "ValidSize(m_fvHKernel.Length()) && ValidSize(m_fvVKernel.Length())";
  ///         ExceptionRuntime when the padded image would exceed memory
  void FilterImage(const TImageRoi<float>& imgIn, TImageRoi<float>& imgOut) const;

 private:
  void FilterRoi(const TImageRoi<float>& padded, const Rect& roi, TImageRoi<float>& imgOut) const;

  TVector<float> m_fvHKernel, m_fvVKernel;
};

}  // namespace greycard::pxcore
