#include "greycard/jobs/invert_lut2d.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "greycard/ten_bit_planes.h"
#include "greycard/two_d_lut_helper.h"

namespace greycard {
namespace {

// Hues every 5 degrees, saturations 0.1 to 0.9, three lightnesses.
Picture colourChart() {
  Picture chart(72, 27, 3, 16);
  for (int y = 0; y < chart.height; ++y)
    for (int x = 0; x < chart.width; ++x) {
      const auto rgb = TwoDLutHelper::HLStoRGB(5.0 * x, 0.1 * (1 + y % 9), 0.35 + 0.15 * (y / 9));
      for (std::size_t channel = 0; channel < 3; ++channel)
        chart.pixel(x, y)[channel] =
            static_cast<std::uint16_t>(std::lround(double{TenBitPlanes::kWhite} * rgb[channel]));
    }
  return chart;
}

TwoDLutHelper::HueSatLightness colourOf(const TenBitPlanes& planes, std::size_t pixel) {
  constexpr double kWhite = TenBitPlanes::kWhite;
  return TwoDLutHelper::RGBtoHLS(planes.r[pixel] / kWhite, planes.g[pixel] / kWhite,
                                 planes.b[pixel] / kWhite);
}

void add(Lut2dRoundTrip::Error& total, double error, std::size_t count) {
  total.mean += error / static_cast<double>(count);
  total.worst = std::max(total.worst, error);
}

}  // namespace

Lut2dRoundTrip roundTripLut2d(const Lut2DConfig& forward, const Lut2DConfig& inverse) {
  const TenBitPlanes before(colourChart(), TenBitPlanes::kWhite);
  TenBitPlanes after = before;
  TwoDLutHelper helper;
  for (const Lut2DConfig* table : {&forward, &inverse}) {
    helper.SetConfig(*table);
    after.apply(helper);
  }
  Lut2dRoundTrip trip;
  const std::size_t count = before.r.size();
  for (std::size_t i = 0; i < count; ++i) {
    const auto was = colourOf(before, i), is = colourOf(after, i);
    const double turn = std::fabs(is.h - was.h);
    add(trip.hueDeg, std::min(turn, 360.0 - turn), count);
    add(trip.sat, std::fabs(is.s - was.s), count);
  }
  return trip;
}

Lut2dInverse invertLut2d(const Lut2DConfig& table) {
  Lut2dInverse inverse;
  inverse.table = table;
  inverse.table.inverse_flag = 1.0F;
  TwoDLutHelper helper;
  helper.SetConfig(inverse.table);
  helper.CalInverseLut2dCfg(TextSink());
  inverse.report.uncoveredNodes = helper.UncoveredNodes();
  inverse.table.inverse_flag = 0.0F;
  for (std::size_t i = 0; i < kLut2dNodes; ++i) {
    const Lut2dPair& delta = helper.record()->delta[i / kLut2dSatColumns][i % kLut2dSatColumns];
    inverse.table.lut_2d_h[i] = double{delta.h};
    inverse.table.lut_2d_s[i] = double{delta.s} / 256.0;
  }
  inverse.report.roundTrip = roundTripLut2d(table, inverse.table);
  return inverse;
}

}  // namespace greycard
