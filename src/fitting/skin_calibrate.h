#pragma once

#include "double_matrix.h"

namespace greycard {

/// One calibration: from the chart as a camera sees it to the features of synthetic skin colours.
/// Matrices hold one colour per row.
class SkinCalibrate {
 public:
  /// Matrices and tone curve as in skin_defaults.h.
  void init_parameters();

  /// The matrix for T84; those for A and D65 are the given ones where they are there and 3 x 3, and
  /// otherwise that for T84 too.
  /// \throws CalibrationError("Error: Wrong Matrix!") unless cm_f is 3 x 3
  void updateColorCorrectionMatrix(const CDoubleMatrix& cm_f, const CDoubleMatrix* cm_a,
                                   const CDoubleMatrix* cm_d65);
  /// \throws CalibrationError("Error: Wrong RGB2YCbCr Matrix!") unless cm is 3 x 3
  void updateRGB2YCbCrMatrix(const CDoubleMatrix& cm);
  /// The tone curve over equal steps of 0..1, one column; codes of that many bits, or values as
  /// they stand for 0.
  /// \throws CalibrationError("Error: Input should be a column vector!"),
  ///         ("Error: Input gamma bits should be positive!") for a negative count
  void updateGammaMatrix(const CDoubleMatrix& gamma, int bits);

  /// One row (h, s, y) per colour: lights D65, A, T84; in each dark, plain, bright; in each the
  /// spectra. h = Cb / Cr, s = (|Cr| + |Cb|) / (2 Y), y = Y; infinite or not a number where that
  /// divides by zero.
  /// \param rgb_mcc_d65,rgb_mcc_a,rgb_mcc_f  chart colours, 24 x 3; codes of that many bits, which
  ///        are scaled to 0..1 in place, or values as they stand for 0
  /// \param encoded  receives the R, G, B behind each row, unless null
  /// \throws CalibrationError("Error: Input RGB data bits should be positive!") for a negative
  ///         count; ShapeError for a chart of another shape
  CDoubleMatrix calibrate_skin_color(CDoubleMatrix& rgb_mcc_d65, CDoubleMatrix& rgb_mcc_a,
                                     CDoubleMatrix& rgb_mcc_f, int bits,
                                     CDoubleMatrix* encoded = nullptr) const;

 private:
  CDoubleMatrix m_rgbToYCbCr, m_ccmA, m_ccmT84, m_ccmD65, m_gamma;
};

}  // namespace greycard
