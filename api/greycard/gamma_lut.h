#pragma once
/// \file
/// \ingroup contract

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "greycard/export.h"

namespace greycard {

/// One curve of 1024 entries per channel, with a title. Zero-filled at construction.
struct GREYCARD_EXPORT GammaLUT {
  static constexpr std::size_t kEntries = 1024;
  static constexpr std::size_t kLongestTitle = 7;

  std::array<std::int32_t, kEntries> m_pLUTr{}, m_pLUTg{}, m_pLUTb{};
  std::array<char, 256> m_szTitle{};  ///< ends with a zero character

  /// Copies a title of at most 7 characters (deliberate, whatever the buffer holds).
  /// \return false for a longer or null one; the title is then empty
  bool SetTitle(const char* psz);
};

// The shapes in which a curve is used elsewhere, each made from its 1024 entries. All return false,
// with nothing written, unless the curve has 1024 entries. None checks the values.

/// Every fourth entry, unchanged.
GREYCARD_EXPORT bool GenerateGammaLUT255(std::span<double, 256> pLUT,
                                         std::span<const std::int32_t> pGammaLUT);
/// Every fourth entry of a 14-bit curve divided by 62.4, which gives about 0..262.5 (deliberate).
GREYCARD_EXPORT bool GenerateGammaLUT255_14bit(std::span<double, 256> pLUT,
                                               std::span<const std::int32_t> pGammaLUT);
/// Every fourth entry of an 8-bit curve divided by 255.
GREYCARD_EXPORT bool GenerateGammaLUTNorm(std::span<double, 256> pLUT,
                                          std::span<const std::int32_t> pGammaLUT);
/// An 8-bit curve as 12-bit output codes, linear at quarter steps, rounded half up. The last entry
/// is left as it is and the three before it repeat entry 4091 (deliberate). A code outside 16 bits
/// wraps.
GREYCARD_EXPORT bool GenerateGammaLUT12bit(std::span<std::int16_t, 4096> pLUT,
                                           std::span<const std::int32_t> pGammaLUT);

}  // namespace greycard
