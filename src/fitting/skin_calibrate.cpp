#include "skin_calibrate.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "greycard/errors.h"
#include "greycard/types.h"
#include "matrix_functions.h"
#include "skin_defaults.h"
#include "skin_weights.h"
#include "table_conversion.h"

// With chart C [24 x 3] under one light and the weights W [357 x 24]:
//   1. balanced B = C diag(g / r, 1, g / b), (r, g, b) being row 19 of C
//   2. skin S = W B [357 x 3], clipped to 0..1
//   3. S times a factor that brings its smallest entry down to 0.01, S, and S times a factor that
//      brings its largest up to 0.85, stacked [1071 x 3]
//   4. times the transposed colour-correction matrix, clipped to 0..1
// and the three lights stacked [3213 x 3]:
//   5. tone curve, YCbCr, features.
namespace greycard {
namespace {

constexpr std::int32_t kBalancePatch = 19;  // second patch of the grey row
constexpr double kDarkest = 0.01, kBrightest = 0.85;
constexpr double kLeastExtreme = 1e-05;

bool is3x3(const CDoubleMatrix& m) {
  return m.rows() == 3 && m.cols() == 3;
}

double fullScale(int bits) {
  return std::exp2(bits) - 1.0;
}

void requireChart(const CDoubleMatrix& chart, const char* light) {
  if (chart.rows() == kPatchCount && chart.cols() == 3) return;
  throw ShapeError(std::string("the chart under ") + light + " is " + std::to_string(chart.rows()) +
                   " x " + std::to_string(chart.cols()) + "; it must be 24 x 3");
}

CDoubleMatrix whiteBalanced(const CDoubleMatrix& chart) {
  const double* const grey = chart[kBalancePatch];
  CDoubleMatrix gains = meye(3);
  gains[0][0] = grey[1] / grey[0];
  gains[2][2] = grey[1] / grey[2];
  return MatrixMultiply(chart, gains);
}

// Comparisons, not std::min and std::max, so that an entry that is not a number is passed over.
CDoubleMatrix brightnessVariants(const CDoubleMatrix& skin) {
  double largest = 0.0, smallest = 1.0;
  for (std::size_t i = 0; i < skin.size(); ++i) {
    const double value = skin.data()[i];
    if (value > largest) largest = value;
    if (value < smallest) smallest = value;
  }
  const double bright = std::max(kBrightest / std::max(largest, kLeastExtreme), 1.0);
  const double dark = std::min(kDarkest / std::max(smallest, kLeastExtreme), 1.0);
  return MatrixAppendRows(MatrixAppendRows(MatrixMultiply(skin, dark), skin),
                          MatrixMultiply(skin, bright));
}

CDoubleMatrix correctedSkin(const CDoubleMatrix& chart, const CDoubleMatrix& ccm) {
  const CDoubleMatrix skin = mclip(MatrixMultiply(skinWeights(), whiteBalanced(chart)), 0.0, 1.0);
  return mclip(mmABt(brightnessVariants(skin), ccm), 0.0, 1.0);
}

CDoubleMatrix equalSteps(std::int32_t count) {
  CDoubleMatrix ramp(count, 1);
  for (std::int32_t i = 0; i < count; ++i) ramp[i][0] = i / (count - 1.0);
  return ramp;
}

CDoubleMatrix features(const CDoubleMatrix& ycbcr) {
  CDoubleMatrix hsy(ycbcr.rows(), 3);
  for (std::int32_t i = 0; i < ycbcr.rows(); ++i) {
    const double y = ycbcr[i][0], cb = ycbcr[i][1], cr = ycbcr[i][2];
    hsy[i][0] = cb / cr;
    hsy[i][1] = (std::abs(cr) + std::abs(cb)) * 0.5 / y;
    hsy[i][2] = y;
  }
  return hsy;
}

}  // namespace

void SkinCalibrate::init_parameters() {
  m_ccmD65 = m_ccmT84 = m_ccmA = toMatrix(kDefaultSkinCcm);
  m_rgbToYCbCr = toMatrix(kDefaultRgbToYCbCr);
  m_gamma.Init(static_cast<std::int32_t>(kDefaultSkinGamma.size()), 1);
  std::transform(kDefaultSkinGamma.begin(), kDefaultSkinGamma.end(), m_gamma.data(),
                 [](std::uint8_t code) { return code / 255.0; });
}

void SkinCalibrate::updateColorCorrectionMatrix(const CDoubleMatrix& cm_f,
                                                const CDoubleMatrix* cm_a,
                                                const CDoubleMatrix* cm_d65) {
  if (!is3x3(cm_f)) throw CalibrationError("Error: Wrong Matrix!");
  m_ccmT84 = cm_f;
  m_ccmA = cm_a != nullptr && is3x3(*cm_a) ? *cm_a : m_ccmT84;
  m_ccmD65 = cm_d65 != nullptr && is3x3(*cm_d65) ? *cm_d65 : m_ccmT84;
}

void SkinCalibrate::updateRGB2YCbCrMatrix(const CDoubleMatrix& cm) {
  if (!is3x3(cm)) throw CalibrationError("Error: Wrong RGB2YCbCr Matrix!");
  m_rgbToYCbCr = cm;
}

void SkinCalibrate::updateGammaMatrix(const CDoubleMatrix& gamma, int bits) {
  if (gamma.cols() != 1) throw CalibrationError("Error: Input should be a column vector!");
  if (bits < 0) throw CalibrationError("Error: Input gamma bits should be positive!");
  m_gamma = gamma;
  if (bits > 0) m_gamma *= 1.0 / fullScale(bits);
}

CDoubleMatrix SkinCalibrate::calibrate_skin_color(CDoubleMatrix& rgb_mcc_d65,
                                                  CDoubleMatrix& rgb_mcc_a,
                                                  CDoubleMatrix& rgb_mcc_f, int bits,
                                                  CDoubleMatrix* encoded) const {
  if (bits < 0) throw CalibrationError("Error: Input RGB data bits should be positive!");
  requireChart(rgb_mcc_d65, "D65");
  requireChart(rgb_mcc_a, "A");
  requireChart(rgb_mcc_f, "T84");
  if (bits > 0)
    for (CDoubleMatrix* chart : {&rgb_mcc_d65, &rgb_mcc_a, &rgb_mcc_f})
      *chart *= 1.0 / fullScale(bits);

  const CDoubleMatrix linear = MatrixAppendRows(
      MatrixAppendRows(correctedSkin(rgb_mcc_d65, m_ccmD65), correctedSkin(rgb_mcc_a, m_ccmA)),
      correctedSkin(rgb_mcc_f, m_ccmT84));
  // One table for R, G and B (deliberate).
  CDoubleMatrix rgb = interp1_gamma(equalSteps(m_gamma.rows()), m_gamma, linear);
  CDoubleMatrix hsy = features(MatrixMultiply(rgb, m_rgbToYCbCr));
  if (encoded != nullptr) *encoded = std::move(rgb);
  return hsy;
}

}  // namespace greycard
