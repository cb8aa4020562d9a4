#pragma once

#include <cstdint>

#include "vector.h"

namespace greycard::pxcore {

/// Holds the kernel of a filter along one dimension.
class IpFilter1D {
 public:
  IpFilter1D() = default;
  explicit IpFilter1D(TVector<float> kernel) : m_fvKernel(std::move(kernel)) {}

  /// Makes the kernel a sampled half-cosine whose nSize taps add up to 1:
  /// k[i] = cos((i - (nSize - 1) / 2) * pi / (nSize + 1)) / sum, with pi of single precision.
  /// \throws ExceptionCheck "nSize > 0"
  void CosineKernel(std::uint64_t nSize);

  /// Full convolution of len values with the kernel: len + kSize - 1 values.
  /// \throws ExceptionCheck "len > 0 && pIn", and "kSize" without a kernel
  TVector<float> ConvSignal(std::uint64_t len, const float* pIn) const;

  const TVector<float>& Kernel() const { return m_fvKernel; }

 private:
  TVector<float> m_fvKernel;
};

}  // namespace greycard::pxcore
