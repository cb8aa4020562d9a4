#include "greycard/jobs/build_curve_lut.h"

#include <cstdint>
#include <stdexcept>

#include "greycard/errors.h"
#include "greycard/gamma_lut.h"
#include "greycard/number_text.h"

namespace greycard {
namespace {

// Empty where the builders refuse.
std::vector<double> valuesOf(LutKind kind, std::span<const std::int32_t> curve) {
  if (kind == LutKind::To12Bits) {
    std::array<std::int16_t, 4096> lut{};
    if (!GenerateGammaLUT12bit(lut, curve)) return {};
    lut.back() = lut[lut.size() - 2];  // left to the caller
    return {lut.begin(), lut.end()};
  }
  std::array<double, 256> lut{};
  const bool built = kind == LutKind::Plain  ? GenerateGammaLUT255(lut, curve)
                     : kind == LutKind::Norm ? GenerateGammaLUTNorm(lut, curve)
                                             : GenerateGammaLUT255_14bit(lut, curve);
  if (!built) return {};
  return {lut.begin(), lut.end()};
}

int curveBitsOf(const CurveLutOptions& options) {
  if (!options.bits) return options.kind == LutKind::Of14Bits ? 14 : 8;
  if (*options.bits != 8 && *options.bits != 14)
    throw std::invalid_argument("a look-up table is made of a curve of 8 or 14 bits, not " +
                                std::to_string(*options.bits));
  if (options.kind == LutKind::To12Bits && *options.bits == 14)
    throw std::invalid_argument("a look-up table of 12 bits is made of a curve of 8 bits");
  return *options.bits;
}

}  // namespace

CurveLut buildCurveLut(const GammaCurve& curve, const CurveLutOptions& options) {
  CurveLut lut{curve.Name(), options.channel, options.kind, curveBitsOf(options), {}};
  const auto table = curveTable(curve, options.channel);
  std::vector<std::int32_t> entries(table.begin(), table.end());
  for (std::int32_t& entry : entries) entry >>= kCurveBits - lut.curveBits;
  lut.values = valuesOf(options.kind, entries);
  if (lut.values.empty())
    throw JobError("the curve has not 1024 entries; no such table can be made");
  return lut;
}

std::string lutText(const CurveLut& lut) {
  const int decimals = lut.kind == LutKind::Plain || lut.kind == LutKind::To12Bits ? 0 : 6;
  std::string text;
  for (const double value : lut.values) text += fixed(value, decimals) + '\n';
  return text;
}

}  // namespace greycard
