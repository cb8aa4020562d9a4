#include <algorithm>
#include <optional>

#include "gamma_lut_matrix.h"

namespace greycard {
namespace {

using Column = std::span<double, 256>;
using Curve = std::span<const std::int32_t>;

bool everyFourthEntry(Column column, Curve curve, double divisor) {
  if (curve.size() != GammaLUT::kEntries) return false;
  for (std::size_t r = 0; r < column.size(); ++r) column[r] = curve[4 * r] / divisor;
  return true;
}

std::optional<Column> columnOf(CDoubleMatrix& matrix) {
  if (matrix.rows() != 256 || matrix.cols() != 1) return std::nullopt;
  return Column(matrix.data(), 256);
}

}  // namespace

bool GammaLUT::SetTitle(const char* psz) {
  m_szTitle.fill('\0');
  if (psz == nullptr) return false;
  const char* const end = std::find(psz, psz + kLongestTitle, '\0');
  if (*end != '\0') return false;
  std::copy(psz, end, m_szTitle.begin());
  return true;
}

bool GenerateGammaLUT255(Column pLUT, Curve pGammaLUT) {
  return everyFourthEntry(pLUT, pGammaLUT, 1.0);
}

bool GenerateGammaLUT255_14bit(Column pLUT, Curve pGammaLUT) {
  return everyFourthEntry(pLUT, pGammaLUT, 62.4);
}

bool GenerateGammaLUTNorm(Column pLUT, Curve pGammaLUT) {
  return everyFourthEntry(pLUT, pGammaLUT, 255.0);
}

bool GenerateGammaLUT12bit(std::span<std::int16_t, 4096> pLUT, Curve pGammaLUT) {
  constexpr double kCodesPerLevel = 4095.0 / 255.0;
  if (pGammaLUT.size() != GammaLUT::kEntries) return false;
  for (std::size_t k = 0; k + 1 < pGammaLUT.size(); ++k) {
    const double a = pGammaLUT[k], d = pGammaLUT[k + 1] - a;
    for (std::size_t t = 0; t < 4; ++t) {
      const double code = (a + d * static_cast<double>(t) * 0.25) * kCodesPerLevel + 0.5;
      pLUT[4 * k + t] = static_cast<std::int16_t>(static_cast<std::int64_t>(code));
    }
  }
  std::fill(pLUT.begin() + 4092, pLUT.begin() + 4095, pLUT[4091]);
  return true;
}

bool GenerateGammaLUT255(CDoubleMatrix& pLUT, Curve pGammaLUT) {
  const auto column = columnOf(pLUT);
  return column && GenerateGammaLUT255(*column, pGammaLUT);
}

bool GenerateGammaLUT255_14bit(CDoubleMatrix& pLUT, Curve pGammaLUT) {
  const auto column = columnOf(pLUT);
  return column && GenerateGammaLUT255_14bit(*column, pGammaLUT);
}

bool GenerateGammaLUTNorm(CDoubleMatrix& pLUT, Curve pGammaLUT) {
  const auto column = columnOf(pLUT);
  return column && GenerateGammaLUTNorm(*column, pGammaLUT);
}

}  // namespace greycard
