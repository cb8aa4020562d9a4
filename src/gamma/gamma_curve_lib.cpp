#include "gamma_curve_lib.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <numeric>

#include "integer_conversion.h"

namespace greycard {
namespace {

constexpr double kGamma = 2.2;

// SMPTE ST 2084, equation 4.1.
constexpr double kM1 = 0.1593017578125, kM2 = 78.84375;
constexpr double kC1 = 0.8359375, kC2 = 18.8515625, kC3 = 18.6875;
constexpr double kNitsAtOne = 10000.0;

// ARIB STD-B67: sqrt(3) and the constants a, 12 E - b, c of the logarithmic segment.
constexpr double kSqrt3 = 1.73205081, kA = 0.17883277, kB = 0.28466892, kC = 0.55991073;

bool isScale(unsigned s) {
  return std::has_single_bit(s) && s <= 1u << 30;
}

// value * to / from for two scales, rounded down.
template <typename Integer>
Integer rescaled(Integer value, unsigned from, unsigned to) {
  const int bits = std::countr_zero(to) - std::countr_zero(from);
  return bits >= 0 ? value << bits : value >> -bits;
}

double roundedToCode(double v, double scale) {
  return std::round(std::clamp(v, 0.0, 1.0) * scale);
}

}  // namespace

GammaCurveLib::GammaCurveLib(std::uint32_t size, CurveType type)
    : m_grid(size), m_curve(size), m_type(type) {
  std::iota(m_grid.begin(), m_grid.end(), 0);
  if (lastIsLowered()) --m_grid.back();
  if (type == CurveType::Linear || type == CurveType::Points || type == CurveType::Copy)
    std::copy(m_grid.begin(), m_grid.end(), m_curve.begin());
  if (type == CurveType::Power) generateByPower();
  if (type == CurveType::HLG) generateByHLG();
}

bool GammaCurveLib::lastIsLowered() const {
  return m_grid.size() > 1 && std::has_single_bit(m_grid.size() - 1);
}

bool GammaCurveLib::set_xScale(const unsigned& s) {
  if (!isScale(s)) return false;
  if (lastIsLowered()) ++m_grid.back();
  for (std::int64_t& input : m_grid) input = rescaled(input, m_xScale, s);
  if (lastIsLowered()) --m_grid.back();
  m_xScale = s;
  return true;
}

bool GammaCurveLib::set_yScale(const unsigned& s) {
  if (!isScale(s)) return false;
  for (std::int32_t& output : m_curve) output = rescaled(output, m_yScale, s);
  m_yScale = s;
  return true;
}

bool GammaCurveLib::set_maxNits(const unsigned long& n) {
  if (n == 0 || n > 10000) return false;
  m_maxNits = static_cast<std::uint32_t>(n);
  return true;
}

// codeOf(index, E, scale) for every point, E = input / last.
template <typename Formula>
void GammaCurveLib::generate(const Formula& codeOf) {
  if (m_grid.empty()) return;
  const auto last = static_cast<double>(m_grid.back());
  const auto scale = static_cast<double>(rescaled(m_grid.back(), m_xScale, m_yScale));
  for (std::size_t i = 0; i < m_grid.size(); ++i)
    m_curve[i] = saturatingTruncate(codeOf(i, static_cast<double>(m_grid[i]) / last, scale));
}

bool GammaCurveLib::generateByHDR10() {
  m_type = CurveType::HDR10;
  generate([this](std::size_t, double e, double scale) {
    const double p = std::pow(e * m_maxNits / kNitsAtOne, kM1);
    const double v = std::pow((kC1 + kC2 * p) / (1.0 + kC3 * p), kM2);
    return v * scale + 0.5;
  });
  return true;
}

bool GammaCurveLib::generateByHLG() {
  m_type = CurveType::HLG;
  // By index and not by E <= 1/12, which a grid may miss by a point (deliberate).
  const std::size_t firstLogarithmic = m_grid.size() / 12;
  generate([firstLogarithmic](std::size_t i, double e, double scale) {
    const double v =
        i < firstLogarithmic ? std::sqrt(e) * kSqrt3 : kA * std::log(12.0 * e - kB) + kC;
    return roundedToCode(v, scale);
  });
  return true;
}

void GammaCurveLib::generateByPower() {
  generate([](std::size_t, double e, double scale) {
    return roundedToCode(std::pow(e, 1.0 / kGamma), scale);
  });
}

}  // namespace greycard
