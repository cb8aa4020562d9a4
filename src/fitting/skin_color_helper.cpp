#include "greycard/skin_color_helper.h"

#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>

#include "skin_color_lib.h"
#include "skin_filter.h"

namespace greycard {
namespace {

constexpr std::array kChannelNames{"R", "G", "B"};

void requireFinite(double value, const std::string& where) {
  if (!std::isfinite(value)) throw std::invalid_argument(where + " is not a finite number");
}

void setChart(CDoubleMatrix& chart, const char* light,
              const std::array<std::span<const double>, 3>& channels) {
  const std::string ofLight = std::string(" of the chart under ") + light;
  for (std::size_t c = 0; c < channels.size(); ++c) {
    const std::string name = std::string("avg") + kChannelNames[c];
    if (channels[c].size() != kPatchCount)
      throw std::invalid_argument(name + ofLight + " holds " + std::to_string(channels[c].size()) +
                                  " values; 24 are wanted");
    for (std::size_t i = 0; i < kPatchCount; ++i)
      requireFinite(channels[c][i],
                    std::string(name).append("[" + std::to_string(i) + "]").append(ofLight));
  }
  for (std::int32_t i = 0; i < kPatchCount; ++i)
    for (std::size_t c = 0; c < channels.size(); ++c)
      chart[i][c] = channels[c][static_cast<std::size_t>(i)];
}

void setMatrix(CDoubleMatrix& matrix, const char* light, const Matrix3& entries) {
  for (std::size_t r = 0; r < 3; ++r)
    for (std::size_t c = 0; c < 3; ++c)
      requireFinite(entries[r][c], "entry [" + std::to_string(r) + ", " + std::to_string(c) +
                                       "] of the matrix for " + light);
  for (std::int32_t r = 0; r < 3; ++r)
    for (std::size_t c = 0; c < 3; ++c) matrix[r][c] = entries[static_cast<std::size_t>(r)][c];
}

}  // namespace

SkinColorHelper::SkinColorHelper() : m_SkinLib(std::make_unique<SkinColorLib>()) {}
SkinColorHelper::~SkinColorHelper() = default;
SkinColorHelper::SkinColorHelper(SkinColorHelper&&) noexcept = default;
SkinColorHelper& SkinColorHelper::operator=(SkinColorHelper&&) noexcept = default;

SkinColorLib& SkinColorHelper::lib() {
  if (!m_SkinLib) throw std::logic_error("this SkinColorHelper was disposed of or moved from");
  return *m_SkinLib;
}

void SkinColorHelper::Dispose() {
  m_SkinLib.reset();
}

void SkinColorHelper::SetMCCRGBValues_A(std::span<const double> avgR, std::span<const double> avgG,
                                        std::span<const double> avgB) {
  setChart(lib().GetMCCRGB_A(), "A", {avgR, avgG, avgB});
}
void SkinColorHelper::SetMCCRGBValues_D65(std::span<const double> avgR,
                                          std::span<const double> avgG,
                                          std::span<const double> avgB) {
  setChart(lib().GetMCCRGB_D65(), "D65", {avgR, avgG, avgB});
}
void SkinColorHelper::SetMCCRGBValues_T84(std::span<const double> avgR,
                                          std::span<const double> avgG,
                                          std::span<const double> avgB) {
  setChart(lib().GetMCCRGB_T84(), "T84", {avgR, avgG, avgB});
}

void SkinColorHelper::SetCCMValues_A(const Matrix3& pCCM) {
  setMatrix(lib().GetCCM_A(), "A", pCCM);
}
void SkinColorHelper::SetCCMValues_D65(const Matrix3& pCCM) {
  setMatrix(lib().GetCCM_D65(), "D65", pCCM);
}
void SkinColorHelper::SetCCMValues_T84(const Matrix3& pCCM) {
  setMatrix(lib().GetCCM_T84(), "T84", pCCM);
}

void SkinColorHelper::SetGammaTable(std::span<const std::int32_t> pGammaTable_G, std::int32_t Bpp) {
  if (pGammaTable_G.size() != kGammaEntries)
    throw std::invalid_argument("pGammaTable_G holds " + std::to_string(pGammaTable_G.size()) +
                                " codes; 256 are wanted");
  if (Bpp < kMinBpp || Bpp > kMaxBpp)
    throw std::invalid_argument("Bpp is " + std::to_string(Bpp) + "; 1 to 31 bits are possible");
  const double fullScale = static_cast<double>((std::int64_t{1} << Bpp) - 1);
  CDoubleMatrix& table = lib().GetGammaTable();
  for (std::int32_t i = 0; i < kGammaEntries; ++i)
    table[i][0] = pGammaTable_G[static_cast<std::size_t>(i)] / fullScale;
}

void SkinColorHelper::Calibrate() {
  SkinColorLib::SkinDetectMap map = lib().Calibrate(true);
  const auto count = static_cast<std::size_t>(map.count);
  auto upper = std::make_shared<DataArray>(count), lower = std::make_shared<DataArray>(count);
  for (std::size_t i = 0; i < count; ++i) {
    const DataPt point(map.h[i], map.s[i], map.y[i]);
    if (isUpperSkin(point.h, point.s)) (*upper)[i] = point;
    if (isLowerSkin(point.s, point.y)) (*lower)[i] = point;
  }
  m_encoded = std::make_shared<ColourArray>(std::move(map.rgb));
  m_upperdata = std::move(upper);
  m_lowerdata = std::move(lower);
}

}  // namespace greycard
