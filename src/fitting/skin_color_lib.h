#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "double_matrix.h"

namespace greycard {

/// The inputs of a skin calibration, zero until filled, and its run.
class SkinColorLib {
 public:
  struct SkinDetectMap {
    std::int32_t width = 1, height = 1, enabled_dump = 0;
    std::vector<float> y, h, s;  ///< count each
    std::int32_t count = 0;
    std::vector<std::array<float, 3>> rgb;  ///< encoded R, G, B behind each point
  };

  // Each is the matrix itself, to be filled in place: 24 x 3, 3 x 3 and 256 x 1.
  CDoubleMatrix& GetMCCRGB_A() { return m_mccA; }
  CDoubleMatrix& GetMCCRGB_D65() { return m_mccD65; }
  CDoubleMatrix& GetMCCRGB_T84() { return m_mccT84; }
  CDoubleMatrix& GetCCM_A() { return m_ccmA; }
  CDoubleMatrix& GetCCM_D65() { return m_ccmD65; }
  CDoubleMatrix& GetCCM_T84() { return m_ccmT84; }
  CDoubleMatrix& GetGammaTable() { return m_gamma; }

  /// \param bUseSingleCCM  the T84 matrix under all three lights
  /// \throws what SkinCalibrate throws
  SkinDetectMap Calibrate(bool bUseSingleCCM);

 private:
  CDoubleMatrix m_mccD65{24, 3}, m_mccA{24, 3}, m_mccT84{24, 3};
  CDoubleMatrix m_ccmD65{3, 3}, m_ccmA{3, 3}, m_ccmT84{3, 3};
  CDoubleMatrix m_gamma{256, 1};
};

}  // namespace greycard
