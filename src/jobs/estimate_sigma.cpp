#include "greycard/jobs/estimate_sigma.h"

#include <stdexcept>
#include <utility>

#include "greycard/files.h"
#include "greycard/number_text.h"

namespace greycard {
namespace {

constexpr double kCutOffAbove = 0.01, kUnflatAbove = 0.05;  // doubts
constexpr double kClippedAbove = 0.001, kDarkCorners = 0.3, kFaintNoise = 0.5;

std::string percent(double share, int decimals) {
  return fixed(100.0 * share, decimals) + " %";
}

std::vector<std::string> adviceOn(const SigmaLUT& sigma, const FlatField& field) {
  const SigmaReport& report = sigma.report;
  std::vector<std::string> advice = field.warnings;
  if (!sigma.msg.empty()) advice.push_back(sigma.msg);
  if (field.isJpeg)
    advice.push_back(
        "a JPEG file's compression changes the noise: give a picture that was never one");
  if (report.highByteDropped != 0)
    advice.push_back(std::to_string(report.highByteDropped) + " of " +
                     std::to_string(field.samples.size()) +
                     " samples are above 255 and only their low byte counts: scale the picture to "
                     "8-bit values first");
  if (report.ceilingShare > kClippedAbove)
    advice.push_back(percent(report.ceilingShare, 1) +
                     " of the samples are at 255, where noise is cut off: expose less");
  if (report.floorShare > kClippedAbove)
    advice.push_back(percent(report.floorShare, 1) +
                     " of the samples are at 0, where noise is cut off: expose more, or crop blank "
                     "borders");
  if (report.centreWindowEmpty)
    advice.push_back(
        "the picture is narrower or lower than 600 pixels, so there is no centre sigma; the local "
        "sigma of ring 0 is " +
        fixed(report.centreRingSigma, 3));
  if (report.fallOff() > kDarkCorners)
    advice.push_back("the corners are " + percent(report.fallOff(), 0) +
                     " darker than the centre: part of what changes along the radius is the light");
  if (report.centreRingSigma < kFaintNoise)
    advice.push_back(
        "the noise at the centre is below half a code value: rounding to 8 bits hides "
        "it; raise the gain or the exposure");
  return advice;
}

std::vector<std::string> doubtsAbout(const SigmaReport& report, std::size_t samples) {
  std::vector<std::string> doubts;
  if (report.allEqual) doubts.push_back("all samples are equal, so there is no noise to measure");
  if (report.highByteDropped != 0)
    doubts.push_back(std::to_string(report.highByteDropped) + " of " + std::to_string(samples) +
                     " samples are above 255; tell their bits or their black and white level");
  if (!report.allEqual && report.ceilingShare > kCutOffAbove)
    doubts.push_back(percent(report.ceilingShare, 1) + " of the samples are cut off at white");
  if (!report.allEqual && report.floorShare > kCutOffAbove)
    doubts.push_back(percent(report.floorShare, 1) + " of the samples are cut off at black");
  if (report.unflatness && *report.unflatness > kUnflatAbove)
    doubts.push_back("it is not flat: beside the fall-off towards the corners it is uneven by " +
                     percent(*report.unflatness, 1) + " (root mean square; " +
                     percent(kUnflatAbove, 0) + " at most)");
  return doubts;
}

}  // namespace

void SigmaEstimate::require() const {
  if (doubts.empty()) return;
  std::string text = file.empty() ? "this" : quoted(file);
  text += " is no flat field to make a noise table of: ";
  for (std::size_t i = 0; i < doubts.size(); ++i) text += (i == 0 ? "" : "; ") + doubts[i];
  throw DoubtfulFlatField(text);
}

SigmaEstimate estimateSigma(const FlatField& field, bool keepsLocalSigma) {
  std::vector<float> localSigma(keepsLocalSigma ? field.samples.size() : 0);
  SigmaLUT sigma;
  if (!sigma.CalculateSigmaLUT(field.width, field.height, field.samples, localSigma))
    throw std::invalid_argument("a flat field without pixels has no noise");
  SigmaEstimate estimate;
  estimate.file = field.file;
  estimate.width = field.width;
  estimate.height = field.height;
  estimate.centreNoiseSigma = sigma.center_noise_sigma;
  estimate.lut = *sigma.lut;
  estimate.msg = sigma.msg;
  estimate.fileCodes = field.fileCodes;
  estimate.advice = adviceOn(sigma, field);
  estimate.doubts = doubtsAbout(sigma.report, field.samples.size());
  estimate.report = sigma.report;
  estimate.localSigma = std::move(localSigma);
  return estimate;
}

}  // namespace greycard
