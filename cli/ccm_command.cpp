// greycard ccm: from a photographed chart to white-balance gains and a colour-correction matrix.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iostream>
#include <memory>

#include "camera_gamma.h"
#include "ccm_options.h"
#include "ccm_result.h"
#include "greycard/files.h"
#include "greycard/picture_correction.h"
#include "progress_bar.h"
#include "sub_commands.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

constexpr double kGreenLiftWorthTelling = 1.01;   // about 0.4 units of L* at the white patch
constexpr double kChromaMissWorthTelling = 0.05;  // what the search itself takes as reached

std::vector<std::string> fitWarnings(const CcmResult& result) {
  std::vector<std::string> warnings = chartWarnings(result.chart);
  if (const auto clipped = result.sampling.clippedPatches(); !clipped.empty())
    warnings.push_back("clipped in the photograph: patches " + patchList(clipped) +
                       "; expose so that no channel reaches the ends of the scale");
  std::vector<int> beyond;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    for (const double value : result.fit.m_balancedRGB[i])
      if (value > 1.0 && (beyond.empty() || beyond.back() != static_cast<int>(i)))
        beyond.push_back(static_cast<int>(i));
  if (!beyond.empty())
    warnings.push_back("the balanced picture exceeds full scale and is clipped there: patches " +
                       patchList(beyond));
  for (std::size_t c = 0; c < 3; ++c)
    if (std::ranges::all_of(result.data.m_RGB, [c](const Vector3& rgb) { return rgb[c] == 0.0; }))
      warnings.push_back(std::string("channel ") + "RGB"[c] +
                         " is 0 in every patch, so this is no photograph in three colours");
  if (result.whiteBalance[1] > kGreenLiftWorthTelling)
    warnings.push_back(
        "white balance raises green by " + fixed(100.0 * (result.whiteBalance[1] - 1.0), 1) +
        " % after the exposure gain was set, so the whole chart comes out lighter than "
        "its reference; an exposure gain of " +
        fixed(result.exposure / result.whiteBalance[1], 4) + " meets it");
  const ColorFitReport& fit = result.fit;
  if (fit.m_chromaChangeWanted && fit.m_chromaChange &&
      std::abs(*fit.m_chromaChange - *fit.m_chromaChangeWanted) > kChromaMissWorthTelling)
    warnings.push_back("the saturation search ended at " + fixed(100.0 * *fit.m_chromaChange, 1) +
                       " % chroma against the target where " +
                       fixed(100.0 * *fit.m_chromaChangeWanted, 1) +
                       " % was wanted; try the other --delta-e");
  return warnings;
}

CcmResult fit(const CcmOptions& options, const CameraGamma& gamma, const Picture& picture) {
  ColorCorrectionSettings settings = options.settings();
  CcmResult result;
  result.photo = options.source.photo;
  result.light = illumName(settings.m_illum);
  result.gammaName = gamma.name;
  result.formula = settings.m_nDeltaEMode == 0 ? "CIE76" : "CIE94";
  result.chart = locateChart(options.source, picture);
  result.sampling = settings.m_macbethData.CollectRGBData(picture, result.chart.regions,
                                                          options.source.levels(picture));
  result.data = settings.m_macbethData;

  ColorCorrectionUtils facade;
  const CameraGamma::Tables curves = gamma.in14Bits();
  facade.SetGammaTable(curves[0], curves[1], curves[2]);
  ProgressBar progress("fitting");
  facade.Optimize(settings, 0, progress.callback());
  result.pipeline = facade.Pipeline();
  result.whiteBalance = facade.m_wbGain;
  result.exposure = facade.m_gain;
  result.correctedLab = facade.m_macbethLab;
  result.fit = facade.m_fit;
  result.before = colourErrors(result.fit.m_targetLab, result.fit.m_uncorrectedLab);
  result.after = colourErrors(result.fit.m_targetLab, result.correctedLab);
  result.warnings = fitWarnings(result);
  return result;
}

Picture correctedPicture(const CcmOptions& options, const CcmResult& result,
                         const Picture& picture) {
  const ColorPipeline& pipeline = result.pipeline;
  return correctPicture(picture, options.source.levels(picture), pipeline.m_gains, pipeline.m_ccm,
                        ToneCurves{pipeline.m_gamma[0], pipeline.m_gamma[1], pipeline.m_gamma[2]});
}

void run(const CcmOptions& options) {
  JobFiles files;
  options.source.nameFiles(files);
  files.input("--reference-lab", options.referenceLab);
  files.input("--reference-srgb", options.referenceSRgb);
  files.output("--report", options.report);
  files.pictureOutput("--corrected", options.corrected);
  files.textOutput("--json", options.json);

  const CameraGamma gamma = cameraGamma(options.gamma);
  const Picture picture = readPicture(options.source.photo);
  if (picture.channels == 1)
    throw JobError(quoted(options.source.photo) +
                   " is a grey picture, which holds no colours to fit; give one in colour");
  const CcmResult result = fit(options, gamma, picture);

  if (!options.corrected.empty())
    writePicture(options.corrected, correctedPicture(options, result, picture));
  if (!options.report.empty()) writeWholeFile(options.report, ccmReport(result, picture));
  writeJson(options.json, ccmJson(result));
  if (options.printsText()) std::cout << ccmText(result);
}

}  // namespace

void addCcm(CLI::App& parent) {
  const auto options = std::make_shared<CcmOptions>();
  CLI::App& app = addSubCommand(
      parent, "ccm",
      "Fit white-balance gains and a colour-correction matrix to a photographed chart",
      "greycard ccm photo.jpg --light D65 --report report.html --corrected corrected.png",
      *options);
  options->addTo(app);
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
