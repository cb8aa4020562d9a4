#include "skin_color_lib.h"

#include <cmath>
#include <limits>

#include "skin_calibrate.h"
#include "skin_defaults.h"
#include "table_conversion.h"

namespace greycard {
namespace {

// What is beyond a float becomes infinite; the conversion alone would leave that open.
float toFloat(double value) {
  constexpr double kLargest = std::numeric_limits<float>::max();
  if (std::abs(value) > kLargest)
    return std::copysign(std::numeric_limits<float>::infinity(), value < 0.0 ? -1.0F : 1.0F);
  return static_cast<float>(value);
}

}  // namespace

SkinColorLib::SkinDetectMap SkinColorLib::Calibrate(bool bUseSingleCCM) {
  SkinCalibrate engine;
  engine.init_parameters();
  engine.updateRGB2YCbCrMatrix(toMatrix(kFullRangeBt601));
  engine.updateColorCorrectionMatrix(m_ccmT84, bUseSingleCCM ? nullptr : &m_ccmA,
                                     bUseSingleCCM ? nullptr : &m_ccmD65);
  engine.updateGammaMatrix(m_gamma, 0);
  CDoubleMatrix encoded;
  const CDoubleMatrix hsy = engine.calibrate_skin_color(m_mccD65, m_mccA, m_mccT84, 0, &encoded);

  SkinDetectMap map;
  map.count = hsy.rows();
  const auto count = static_cast<std::size_t>(map.count);
  for (auto* values : {&map.h, &map.s, &map.y}) values->reserve(count);
  map.rgb.reserve(count);
  for (std::int32_t i = 0; i < map.count; ++i) {
    map.h.push_back(toFloat(hsy[i][0]));
    map.s.push_back(toFloat(hsy[i][1]));
    map.y.push_back(toFloat(hsy[i][2]));
    map.rgb.push_back({toFloat(encoded[i][0]), toFloat(encoded[i][1]), toFloat(encoded[i][2])});
  }
  return map;
}

}  // namespace greycard
