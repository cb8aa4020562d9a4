#pragma once
/// \file
/// \ingroup contract own

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "greycard/color_correction_settings.h"
#include "greycard/color_fit_report.h"
#include "greycard/export.h"
#include "greycard/gamma_curve_model.h"
#include "greycard/macbeth_chart_data.h"
#include "greycard/types.h"

namespace greycard {

class ColorMatrixOpt;

/// \ingroup own
/// All that takes a camera's linear RGB (0..1) to corrected colours, in this order:
/// multiply by m_gains, multiply by m_ccm (m_ccm * column), clip to 0..1, look up in m_gamma.
struct ColorPipeline {
  Vector3 m_gains{};  ///< exposure gain times white-balance gains
  Matrix3 m_ccm{};
  /// 256 values each at equal steps over 0..1: encoded output with full scale 1, which the upper
  /// end of a 14-bit table exceeds by 3 %.
  std::array<std::vector<double>, 3> m_gamma;
};

/// \ingroup contract
/// Colour correction of a camera from one photographed 24-patch chart: set the camera's gamma
/// tables, call Optimize with the settings, read the results from the fields.
///
/// An object works for one thread at a time; two objects may work in two threads, and each gives
/// the bits that it gives alone.
class GREYCARD_EXPORT ColorCorrectionUtils {
 public:
  ColorCorrectionUtils();
  ~ColorCorrectionUtils();
  ColorCorrectionUtils(const ColorCorrectionUtils&) = delete;
  ColorCorrectionUtils& operator=(const ColorCorrectionUtils&) = delete;

  /// Copies the camera's gamma tables: 14-bit values at 256 equal steps of linear input. Other
  /// lengths are kept too; Optimize refuses fewer entries and doesn't read more.
  void SetGammaTable(std::span<const std::int32_t> GammaTableR,
                     std::span<const std::int32_t> GammaTableG,
                     std::span<const std::int32_t> GammaTableB);
  /// Hands the stored tables to an optimiser.
  /// \throws std::invalid_argument naming a channel of fewer than 256 entries
  void SetCMGamma(ColorMatrixOpt& cm) const;
  /// The curve "VOutdoor" of m_gammaModel, whatever the id.
  GammaCurvePtr GetGammaCurveForID(std::int32_t headerID) const;

  /// Fills an optimiser from the settings and sets m_gain. ID is not used.
  /// \throws as Optimize; the optimiser may then be half filled
  void SetColorMatrixOptPravite(ColorMatrixOpt& cm, const ColorCorrectionSettings& params,
                                std::int32_t ID);
  /// The same for opEx's own optimiser. \throws std::invalid_argument also after Dispose
  static void SetColorMatrixOpt(ColorCorrectionUtils& opEx, const ColorCorrectionSettings& params,
                                std::int32_t ID);
  /// Runs opEx's own optimiser as it is filled; writes L*, a*, b* patch by patch to pLab_cc.
  /// \throws std::invalid_argument after Dispose; NumericError as Optimize
  static void Color_correction_3illum(ColorCorrectionUtils& opEx,
                                      std::span<double, 3 * kPatchCount> pLab_cc);

  /// Fits matrix and gains to the measured chart and leaves them in the fields below. Takes some
  /// milliseconds, or around a second with the saturation search. headerID is not used.
  ///
  /// \param progress  called before every minimisation and at the end
  /// \return false when the callback cancelled; the fields are as before then and after an
  ///         exception
  /// \throws std::invalid_argument naming what can't be fitted, with patch and channel: gamma
  ///         tables that are missing, short or don't rise; a value that isn't finite; grey patches
  ///         whose sum is no base for a gain; a setting out of its range
  /// \throws NumericError when the search doesn't come to an end
  bool Optimize(const ColorCorrectionSettings& params, std::int32_t headerID,
                const ProgressCallback& progress = {});

  /// The measured chart, taken as linear sRGB, in L*a*b* in m_macbethLab: no correction at all.
  void CalculateDeltaE(const MacbethChartData& pMacbethData);

  /// Copies a table.
  static void loadRefLab(PatchTable& data, const PatchTable& def) { data = def; }

  /// \ingroup own
  /// The results of the last Optimize, with the gamma tables as they are now, for rendering.
  /// \throws std::invalid_argument naming a gamma table that is missing, short or doesn't rise
  ColorPipeline Pipeline() const;
  /// \ingroup own
  /// L*a*b* of balanced RGB (m_balancedRGB of the report) through any matrix, as Optimize judges
  /// transform type 0: clipped to 0..1, by the gamma tables as they are now, decoded as sRGB.
  /// \throws as Pipeline
  PatchTable ShownLab(const PatchTable& balancedRgb, const Matrix3& ccm) const;

  /// Releases the optimiser of the step-by-step calls. Optimize goes on working.
  void Dispose();

  /// L*a*b* after correction, or of the measured chart (CalculateDeltaE).
  PatchTable m_macbethLab{};
  Matrix3 m_ccm{};      ///< takes balanced RGB to corrected RGB: m_ccm * column
  Vector3 m_wbGain{};   ///< R, G, B
  double m_gain = 0.0;  ///< exposure gain
  /// \ingroup own
  ColorFitReport m_fit;  ///< of the last Optimize
  std::vector<std::int32_t> m_nGammaTableR, m_nGammaTableG, m_nGammaTableB;
  GammaCurveModel m_gammaModel{true};
  std::unique_ptr<ColorMatrixOpt> m_pMatrixOp;
};

}  // namespace greycard
