#pragma once
/// \file
/// \ingroup contract own

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "greycard/export.h"
#include "greycard/types.h"

namespace greycard {

class SkinColorLib;

/// \ingroup contract
/// Predicts where human skin falls in a camera's processed colours, for tuning a skin detector.
///
/// 357 measured skin reflectances are written as least-squares combinations of the chart's 24
/// patches, so that the camera's answers to the patches under D65, A and a fluorescent light (T84)
/// give its answers to skin. Those go through white balance (from patch 20), a dark, a plain and a
/// bright version, the colour-correction matrix and the tone curve, and end as full-range BT.601
/// YCbCr.
///
/// Set the inputs in any order, then Calibrate. What is not set is zero. An object works for one
/// thread at a time; two objects may work in two threads.
///
/// The spectra (data/README.md has their full origins): C. C. Cooksey, D. W. Allen, B. K. Tsai,
/// J. Res. NIST 122 (2017) 26; International Skin Spectra Archive, Y. Lu and others, 2025, CC BY
/// 4.0, 57 records selected.
class GREYCARD_EXPORT SkinColorHelper {
 public:
  /// One synthetic skin colour.
  struct DataPt {
    float y = 0.0F;  ///< luma, 0..1
    float h = 0.0F;  ///< hue ratio Cb / Cr
    float s = 0.0F;  ///< saturation (|Cr| + |Cb|) / (2 Y)

    DataPt() = default;
    DataPt(float fh, float fs, float fy) : y(fy), h(fh), s(fs) {}
    bool operator==(const DataPt&) const = default;
  };
  using DataArray = std::vector<DataPt>;
  /// \ingroup own
  using ColourArray = std::vector<std::array<float, 3>>;

  /// For the host; the library neither fills nor reads it.
  struct SkinDetMapDumpStruct {
    std::int32_t width = 0, height = 0, enabled_dump = 0;
    std::vector<float> y, h, s;
  };
  SkinDetMapDumpStruct m_pSessionParams;

  static constexpr int kSpectra = 357;             ///< measured skin reflectances
  static constexpr int kLights = 3;                ///< D65, A, T84
  static constexpr int kVariants = 3;              ///< dark, plain, bright
  static constexpr int kGammaEntries = 256;        ///< of the tone curve
  static constexpr int kMinBpp = 1, kMaxBpp = 31;  ///< bits of its codes
  static constexpr int kPoints = kLights * kVariants * kSpectra;

  SkinColorHelper();
  ~SkinColorHelper();
  SkinColorHelper(SkinColorHelper&&) noexcept;
  SkinColorHelper& operator=(SkinColorHelper&&) noexcept;

  /// The camera's mean R, G and B of the 24 patches in chart order under the light: linear, as
  /// sampled (not white-balanced), 0..1.
  /// \throws std::invalid_argument, nothing taken over, unless each holds 24 finite values
  void SetMCCRGBValues_A(std::span<const double> avgR, std::span<const double> avgG,
                         std::span<const double> avgB);
  void SetMCCRGBValues_D65(std::span<const double> avgR, std::span<const double> avgG,
                           std::span<const double> avgB);
  void SetMCCRGBValues_T84(std::span<const double> avgR, std::span<const double> avgG,
                           std::span<const double> avgB);

  /// The colour-correction matrix for the light. Only that for T84 has an effect: it is applied
  /// under all three lights (deliberate).
  /// \throws std::invalid_argument, nothing taken over, for an entry that is not finite
  void SetCCMValues_A(const Matrix3& pCCM);
  void SetCCMValues_D65(const Matrix3& pCCM);
  void SetCCMValues_T84(const Matrix3& pCCM);

  /// The camera's tone curve: codes at 256 equal steps of linear input, divided by 2^Bpp - 1. The
  /// green table serves all three channels.
  /// \throws std::invalid_argument, nothing taken over, unless there are 256 codes and Bpp is 1..31
  void SetGammaTable(std::span<const std::int32_t> pGammaTable_G, std::int32_t Bpp);

  /// Makes new arrays of points; the earlier ones stay with whoever holds them.
  void Calibrate();

  /// kPoints points: the lights D65, A, T84; in each the dark, plain and bright version; in each
  /// the 357 spectra. Those that a filter doesn't accept are (0, 0, 0), as are all of them when the
  /// white balance or the luma divides by zero. Null before the first Calibrate.
  ///
  /// Upper: accepted for -2 <= h <= 0 and 0 <= s <= 1.
  /// Lower: accepted for 0 <= s <= 1 and 0 <= y <= 1. It doesn't look at h, so that a point with a
  /// Cr of zero may be among them with an **infinite h**, and a grey one with an h that is **not a
  /// number**: check h before computing with it.
  std::shared_ptr<DataArray> GetUpperData() const { return m_upperdata; }
  std::shared_ptr<DataArray> GetLowerData() const { return m_lowerdata; }
  /// \ingroup own
  /// R, G, B behind the points, encoded by the tone curve, whether accepted or not; same order.
  std::shared_ptr<ColourArray> GetEncodedColours() const { return m_encoded; }

  /// Releases the inputs; setting one or calibrating is a std::logic_error from then on.
  void Dispose();

 private:
  SkinColorLib& lib();

  std::unique_ptr<SkinColorLib> m_SkinLib;
  std::shared_ptr<DataArray> m_upperdata, m_lowerdata;
  std::shared_ptr<ColourArray> m_encoded;
};

}  // namespace greycard
