#include "ip_filter_1d.h"

#include "exception.h"
#include "half_cosine.h"
#include "sizes.h"

namespace greycard::pxcore {

void IpFilter1D::CosineKernel(std::uint64_t nSize) {
  PXCORE_CHECK(nSize > 0);
  requireMemory(nSize, 1, 0, sizeof(float));
  const HalfCosine cosine(nSize);
  m_fvKernel.Resize(nSize);
  for (std::uint64_t i = 0; i < nSize; ++i)
    m_fvKernel[i] = static_cast<float>(cosine.at(static_cast<std::int64_t>(i)));
}

TVector<float> IpFilter1D::ConvSignal(std::uint64_t len, const float* pIn) const {
  PXCORE_CHECK(len > 0 && pIn);
  const std::uint64_t kSize = m_fvKernel.Length();
  PXCORE_CHECK(kSize);
  TVector<float> out(len + kSize - 1, 0.0F);
  for (std::uint64_t i = 0; i < len; ++i)
    for (std::uint64_t k = 0; k < kSize; ++k) out[i + k] += pIn[i] * m_fvKernel[k];
  return out;
}

}  // namespace greycard::pxcore
