#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "color_calc.h"
#include "gamma_stage.h"
#include "greycard/color_fit_report.h"
#include "greycard/illum.h"
#include "greycard/types.h"
#include "matrix_cost.h"
#include "target_preparation.h"

namespace greycard {

/// Light of an optimisation, in its own numbering. Any other value stands for D65.
enum class OptimLight : std::int32_t {
  A = 0,
  D65 = 1,
  TL84 = 2,
  D50 = 3,
  Horizon = 4,
  Default = 5
};

/// The light whose reference set an optimisation uses.
Illum illumOf(OptimLight light);

/// Finds the 3 x 3 matrix that takes a camera's white-balanced RGB of the chart to the chart's
/// reference colours. Filled by the facade, which calls SetGamma, sets the fields, and calls
/// SetRGB, SetNoise, LoadRefLab, Normalize, ColorMatrix_WB and SetOptimLight before
/// M_color_correction_3illum. Two optimisers never meet.
class ColorMatrixOpt {
 public:
  ColorMatrixOpt();

  /// Camera gamma tables; an entry is divided by 62.4, which brings a 14-bit table to about
  /// 0..262.5; more than 256 entries aren't read.
  /// \throws std::invalid_argument naming a channel of fewer than 256 entries
  void SetGamma(std::span<const std::int32_t> tableR, std::span<const std::int32_t> tableG,
                std::span<const std::int32_t> tableB);
  void SetRGB(const PatchTable& rgb) { m_RGB = rgb; }
  void SetNoise(const PatchTable& noise) { m_Noise = noise; }
  /// The light is not used.
  void LoadRefLab(OptimLight light, const PatchTable& lab);
  /// Multiplies the measured RGB by the exposure gain.
  /// \throws std::invalid_argument as exposureGain(), or when SetGamma hasn't run
  void Normalize();
  /// Sets the gains and the balanced RGB. \throws std::out_of_range as M_white_balance()
  void ColorMatrix_WB(const std::vector<std::int32_t>& patches);
  /// After ColorMatrix_WB: puts another exposure gain in the place of Normalize's.
  void SetExposure(double gain);
  /// \return the exposure gain of the last Normalize or SetExposure
  double SetOptimLight(OptimLight light);

  /// The camera's curves with full scale 1.
  std::array<CameraCurve, 3> normalisedGamma() const;

  OptimMode m_mode = OptimMode::Cie76;
  OptimLight m_light = OptimLight::D65;
  PatchTable m_RGB, m_Noise, m_RefLab;  ///< all ones at first
  Matrix3 m_whiteBalance{};             ///< gains on the diagonal
  PatchColumn m_patchWeights;           ///< all ones
  PatchTable m_balancedRGB;
  std::array<CameraCurve, 3> m_gamma{};  ///< about 0..262.5
  bool m_bGammaSet = false;
  Matrix3 m_ccm;                      ///< the result; identity at first
  Matrix3 m_RGB2XYZ{}, m_XYZ2sRGB{};  ///< used by transform type 3
  std::int32_t m_nTransformType = 0;
  double m_fNoiseRate = 0.0;
  double m_fSaturationTarget = -1000.0;  ///< wanted chroma change; below -0.1 there is no search
  TargetAdjustment m_adjustment;
  double m_kL = 1.0, m_kC = 1.0, m_kH = 1.0;  ///< of CIE94; kH ends at the search's last weight
  double m_gain = 1.0;
  ColorFitReport m_fit;  ///< of the last finished optimisation
};

/// What the search's cost is made of, once exposure and white balance are set.
/// \param noiseScale  what a noise of 1 counts beside the colour error
CostSetup costSetup(const ColorMatrixOpt& cm, const ColorCalc& set, const PatchTable& target,
                    double noiseScale);

/// Runs the optimisation: least-squares start matrix, Powell search over six entries, saturation
/// search when a target is set. Leaves the matrix and the report in the optimiser and L*, a*, b* of
/// the corrected patches in pLab_cc, patch by patch.
///
/// \return false when the progress callback cancelled; then, and when an exception leaves, neither
///         the optimiser nor pLab_cc has changed
/// \throws NumericError when a search doesn't come to an end; std::invalid_argument when a
///         saturation search finds a target without chroma, or the patch weights sum to less than 1
bool M_color_correction_3illum(ColorMatrixOpt& cm, std::span<double, 3 * kPatchCount> pLab_cc,
                               const ProgressCallback& progress = {});

}  // namespace greycard
