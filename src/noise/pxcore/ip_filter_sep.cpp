#include "ip_filter_sep.h"

#include <algorithm>
#include <utility>

#include "cosine_pass.h"
#include "ip_filter_1d.h"

namespace greycard::pxcore {
namespace {

bool isHalfCosine(const TVector<float>& kernel) {
  IpFilter1D cosine;
  cosine.CosineKernel(kernel.Length());
  return cosine.Kernel() == kernel;
}

}  // namespace

IpFilterSep::IpFilterSep(const IpFilterSep& other, bool bTranspose)
    : m_fvHKernel(bTranspose ? other.m_fvVKernel : other.m_fvHKernel),
      m_fvVKernel(bTranspose ? other.m_fvHKernel : other.m_fvVKernel) {}

void IpFilterSep::SetKernel(TVector<float> vHKernel, TVector<float> vVKernel) {
  m_fvHKernel = std::move(vHKernel);
  m_fvVKernel = std::move(vVKernel);
}

void IpFilterSep::FilterImage(const TImageRoi<float>& imgIn, TImageRoi<float>& imgOut) const {
  PXCORE_CHECK(imgIn.IsValid() && imgOut.IsValid());
  PXCORE_CHECK(imgIn.IsSameSize(imgOut));
  PXCORE_CHECK(ValidSize(m_fvHKernel.Length()) && ValidSize(m_fvVKernel.Length()));
  const std::uint64_t pad = std::max(m_fvHKernel.Length(), m_fvVKernel.Length()) / 2;
  requireMemory(imgIn.Width(), imgIn.Height(), pad, sizeof(float));

  if (!isHalfCosine(m_fvHKernel) || !isHalfCosine(m_fvVKernel)) {
    TImage<float> padded;
    const Rect roi = padded.ClonePadded(imgIn, pad);
    return FilterRoi(padded, roi, imgOut);
  }
  // The passes mirror the image as they go, without a padded copy.
  cosineRows(HalfCosine(m_fvHKernel.Length()), imgIn, imgOut);
  cosineColumns(HalfCosine(m_fvVKernel.Length()), imgOut,
                [&](std::uint64_t x, std::uint64_t y, std::span<const float> values) {
                  std::ranges::copy(values, imgOut.View().run(y, x, x + values.size()).begin());
                });
}

void IpFilterSep::FilterRoi(const TImageRoi<float>& padded, const Rect& roi,
                            TImageRoi<float>& imgOut) const {
  TImage<float> rows(roi.width, padded.Height());
  for (std::uint64_t y = 0; y < padded.Height(); ++y)
    for (std::uint64_t x = 0; x < roi.width; ++x) {
      const std::uint64_t begin = roi.x + x - m_fvHKernel.Length() / 2;
      const auto in = padded.View().run(y, begin, begin + m_fvHKernel.Length());
      double sum = 0.0;
      for (std::uint64_t i = 0; i < m_fvHKernel.Length(); ++i)
        sum += static_cast<double>(m_fvHKernel[i]) * static_cast<double>(in[i]);
      rows.View()(x, y) = static_cast<float>(sum);
    }
  std::vector<double> sums(roi.width);
  for (std::uint64_t y = 0; y < roi.height; ++y) {
    std::ranges::fill(sums, 0.0);
    for (std::uint64_t i = 0; i < m_fvVKernel.Length(); ++i) {
      const auto in = std::as_const(rows).View().row(roi.y + y - m_fvVKernel.Length() / 2 + i);
      for (std::uint64_t x = 0; x < roi.width; ++x)
        sums[x] += static_cast<double>(m_fvVKernel[i]) * static_cast<double>(in[x]);
    }
    std::ranges::transform(sums, imgOut.View().row(y).begin(),
                           [](double sum) { return static_cast<float>(sum); });
  }
}

}  // namespace greycard::pxcore
