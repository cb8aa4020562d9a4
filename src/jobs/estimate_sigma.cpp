#include "greycard/jobs/estimate_sigma.h"

#include <stdexcept>
#include <utility>

#include "greycard/number_text.h"

namespace greycard {
namespace {

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

}  // namespace

SigmaEstimate estimateSigma(const FlatField& field, bool keepsLocalSigma) {
  std::vector<float> localSigma(keepsLocalSigma ? field.samples.size() : 0);
  SigmaLUT sigma;
  if (!sigma.CalculateSigmaLUT(field.width, field.height, field.samples, localSigma))
    throw std::invalid_argument("a flat field without pixels has no noise");
  return {field.file,           field.width, field.height,           sigma.center_noise_sigma,
          *sigma.lut,           sigma.msg,   adviceOn(sigma, field), sigma.report,
          std::move(localSigma)};
}

}  // namespace greycard
