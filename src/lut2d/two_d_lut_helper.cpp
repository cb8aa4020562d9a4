#include "greycard/two_d_lut_helper.h"

#include <algorithm>
#include <cmath>

#include "channels.h"
#include "lut2d_inverse.h"
#include "lut2d_process.h"
#include "lut2d_record.h"

namespace greycard {
namespace {

constexpr double kAlmostWhite = 0.99999999, kAlmostNothing = 1e-08;

}  // namespace

TwoDLutHelper::TwoDLutHelper() = default;
TwoDLutHelper::~TwoDLutHelper() = default;
TwoDLutHelper::TwoDLutHelper(TwoDLutHelper&&) noexcept = default;
TwoDLutHelper& TwoDLutHelper::operator=(TwoDLutHelper&&) noexcept = default;

void TwoDLutHelper::SetConfig(const Lut2DConfig& cfg) {
  checkConfig(cfg);
  if (!m_cfg) m_cfg = std::make_unique<lut2d_cfg>();
  fillRecord(cfg, *m_cfg);
  m_uncoveredNodes = 0;
}

bool TwoDLutHelper::CalInverseLut2dCfg() {
  return CalInverseLut2dCfg(outputHasListener() ? TextSink(writeOutput) : TextSink());
}

bool TwoDLutHelper::CalInverseLut2dCfg(const TextSink& remarks) {
  if (!m_cfg) return false;
  m_uncoveredNodes = CalInverseDifflut2dCfg(*m_cfg, remarks);
  return true;
}

bool TwoDLutHelper::ProcessImage(std::span<std::uint16_t> r, std::span<std::uint16_t> g,
                                 std::span<std::uint16_t> b, std::int32_t w, std::int32_t h,
                                 std::int32_t /*bpp*/) const {
  if (!m_cfg) return false;
  const auto width = static_cast<std::uint16_t>(w), height = static_cast<std::uint16_t>(h);
  const std::size_t pixels = std::size_t{width} * height;
  if (std::min({r.size(), g.size(), b.size()}) < pixels) return false;
  return processimage(r.data(), g.data(), b.data(), width, height, *m_cfg) == 1;
}

TwoDLutHelper::HueSatLightness TwoDLutHelper::RGBtoHLS(double r, double g, double b) {
  const double max = std::max({r, g, b}), min = std::min({r, g, b}), sum = max + min;
  HueSatLightness hls{0.0, 0.0, sum * 0.5};
  if (hls.l > kAlmostWhite || hls.l < kAlmostNothing) return hls;
  const double delta = max - min;
  hls.s = delta / (hls.l < 0.5 ? sum : 2.0 - sum);
  if (hls.s < kAlmostNothing) return hls;
  if (r == max)
    hls.h = (g - b) / delta;
  else if (g == max)
    hls.h = (b - r) / delta + 2.0;
  else
    hls.h = (r - g) / delta + 4.0;
  hls.h *= 60.0;
  if (hls.h < 0.0) hls.h += 360.0;
  return hls;
}

Vector3 TwoDLutHelper::HLStoRGB(double h, double s, double l) {
  if (s < kAlmostNothing) return {l, l, l};
  const double chroma = (1.0 - std::fabs(2.0 * l - 1.0)) * s, m = l - chroma * 0.5;
  const double sextant = h / 60.0;
  const double x = (1.0 - std::fabs(std::fmod(sextant, 2.0) - 1.0)) * chroma;
  const double high = chroma + m, middle = x + m;
  // Also what is no sextant at all: not-a-number and hues beyond the circle.
  if (!(sextant >= 1.0 && sextant < 6.0)) return {high, middle, m};
  switch (static_cast<int>(sextant)) {
    case 1:
      return {middle, high, m};
    case 2:
      return {m, high, middle};
    case 3:
      return {m, middle, high};
    case 4:
      return {middle, m, high};
    default:
      return {high, m, middle};
  }
}

void TwoDLutHelper::DebugPrint() const {
  if (m_cfg) debugPrintRecord(*m_cfg);
}

}  // namespace greycard
