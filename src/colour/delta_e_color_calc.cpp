#include "delta_e_color_calc.h"

#include <exception>

#include "color_calc.h"
#include "colour_space.h"
#include "delta_e_color_matrix_opt.h"
#include "greycard/luma.h"
#include "spectral_tables.h"

namespace greycard {
namespace {

constexpr Matrix3 kLumaDifference{{kLumaShares, {0.0, -1.0, 1.0}, {1.0, -1.0, 0.0}}};

}  // namespace

DeltaEColorCalc::DeltaEColorCalc()
    : wavelengthNm(wavelengthGrid()),
      xyzToRgb(kXyzToRgb),
      rgbToXyz(kRgbToXyz),
      rgbToYCbCr(kRgbToYCbCr),
      lumaDifference(kLumaDifference),
      white(rgbToXyz100(rgbToXyz, {1.0, 1.0, 1.0})) {
  wavelengthCount = wavelengthNm.rows();
  colordatabase();
  Macbeth_XYZ_Lab();
}

void DeltaEColorCalc::colordatabase() {
  observer = observerFunctions(wavelengthNm);
  reflectances = chartReflectances(wavelengthNm);
  illuminants.Init(wavelengthCount, static_cast<std::int32_t>(kLights.size()));
  for (std::size_t light = 0; light < kLights.size(); ++light) {
    const auto spectrum = illuminantSpectrum(kLights[light], wavelengthNm);
    for (std::int32_t i = 0; i < wavelengthCount; ++i) illuminants[i][light] = spectrum[i][0];
  }
}

void DeltaEColorCalc::Macbeth_XYZ_Lab() {
  for (std::size_t light = 0; light < kLights.size(); ++light)
    referenceLab[light] = ColorCalc(kLights[light], 0).targetLab();
}

PatchTable evaluateMeasuredChart(const MacbethChartData& chart) {
  try {
    DeltaEColorMatrixOpt setUp;
    SetColorMatrixOpt(setUp, chart);
  } catch (const std::exception&) {
    // Deliberate: the set-up is a pass whose only effect is work, so a chart that it can't be made
    // for is evaluated all the same.
  }
  const DeltaEColorCalc reference;
  PatchTable lab;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    lab[i] = XYZ_to_CIELab(rgbToXyz100(reference.rgbToXyz, chart.m_RGB[i]), reference.white);
  return lab;
}

}  // namespace greycard
