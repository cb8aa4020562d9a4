// Fits a colour-correction matrix to a photographed chart: fit_chart PHOTO
#include <greycard/color_correction_utils.h>
#include <greycard/mcc_detector.h>

#include <cstdint>
#include <cstdio>
#include <exception>
#include <vector>

using namespace greycard;

int main(int argc, char** argv) try {
  if (argc != 2) {
    std::fputs("usage: fit_chart PHOTO\n", stderr);
    return 2;
  }
  const Picture photo = readPicture(argv[1]);
  const ChartDetection chart = MCCDetector().detect(photo);
  if (!chart.trustworthy()) {
    std::fprintf(stderr, "no chart: %s\n",
                 chart.found() ? chart.doubts.front().c_str() : chart.reason.c_str());
    return 1;
  }

  ColorCorrectionSettings settings(0, illum_D65, 0);
  settings.m_macbethData.CollectRGBData(photo, chart.regions,
                                        SampleLevels::eightBit(SampleEncoding::sRGB));

  ColorCorrectionUtils facade;
  const auto curve = facade.m_gammaModel.GetGammaCurveByName("VGammaSRGB");
  std::vector<std::int32_t> gamma;
  for (std::size_t i = 0; i < 1024; i += 4) gamma.push_back((*curve->Data())[i]);
  facade.SetGammaTable(gamma, gamma, gamma);
  facade.Optimize(settings, 0);

  for (const Vector3& row : facade.m_ccm)
    std::printf("%9.5f %9.5f %9.5f\n", row[0], row[1], row[2]);
  std::printf("gains %.4f %.4f %.4f, exposure %.4f\n", facade.m_wbGain[0], facade.m_wbGain[1],
              facade.m_wbGain[2], facade.m_gain);
} catch (const std::exception& error) {
  std::fprintf(stderr, "fit_chart: %s\n", error.what());
  return 1;
}
