#include "greycard/color_correction_settings.h"

#include "color_calc.h"

namespace greycard {

ColorCorrectionSettings::ColorCorrectionSettings(std::int32_t /*headerVersion*/, Illum illum,
                                                 std::int32_t transformtype)
    : m_illum(illum),
      m_RGBtoXYZTransform(transformtype),
      m_fSaturation(1.1),
      m_CustRGB2XYZ(kDefaultCustomRgbToXyz),
      m_CustXYZ2sRGB(kDefaultCustomXyzToSRgb) {
  // Three assignments in this order, deliberately: the last one governs, no search by default.
  if (illum == illum_Lowlight || illum == illum_LED) m_fSaturation = -1.0;
  m_fSaturation = -1.0;
  m_macbethData.LoadMCCCIELAB(illum);
}

}  // namespace greycard
