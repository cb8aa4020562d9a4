// ICC matrix/TRC input profile (ICC.1:2022, 8.3.3; version 2 as ICC.1:2001-04), by lcms2.

#include <lcms2.h>

#include <algorithm>
#include <memory>
#include <new>
#include <type_traits>

#include "colour_matrices.h"
#include "greycard/errors.h"
#include "greycard/number_text.h"
#include "writers.h"

namespace greycard::exchange {
namespace {

struct Release {
  void operator()(cmsContext context) const { cmsDeleteContext(context); }
};
struct CloseProfile {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
struct FreeCurve {
  void operator()(cmsToneCurve* curve) const { cmsFreeToneCurve(curve); }
};
struct FreeText {
  void operator()(cmsMLU* text) const { cmsMLUfree(text); }
};

constexpr double kS15Fixed16 = 65536.0;
// ICC.1:2022, 7.2.8: year, month, day, hour, minute and second of creation, at bytes 24 to 35. The
// same material must make the same bytes, so no profile tells when it was made.
constexpr std::size_t kDateAt = 24;
constexpr unsigned char kDate[12] = {0x07, 0xD0, 0, 1, 0, 1};

class Profile {
 public:
  explicit Profile(double version)
      : context_(cmsCreateContext(nullptr, nullptr)),
        profile_(cmsCreateProfilePlaceholder(context_.get())) {
    if (!profile_) throw std::bad_alloc();
    cmsSetProfileVersion(profile_.get(), version);
    cmsSetDeviceClass(profile_.get(), cmsSigInputClass);
    cmsSetColorSpace(profile_.get(), cmsSigRgbData);
    cmsSetPCS(profile_.get(), cmsSigXYZData);
    cmsSetHeaderRenderingIntent(profile_.get(), INTENT_RELATIVE_COLORIMETRIC);
  }

  void text(cmsTagSignature tag, const std::string& ascii) {
    const std::unique_ptr<cmsMLU, FreeText> words(cmsMLUalloc(context_.get(), 1));
    cmsMLUsetASCII(words.get(), "en", "US", ascii.c_str());
    write(tag, words.get());
  }
  void xyz(cmsTagSignature tag, double x, double y, double z) {
    const cmsCIEXYZ value{x, y, z};
    write(tag, &value);
  }
  void matrix(cmsTagSignature tag, const Matrix3& m) {
    std::array<double, 9> entries{};
    for (std::size_t i = 0; i < 9; ++i) entries[i] = m[i / 3][i % 3];
    write(tag, entries.data());
  }
  // One curve for the three channels: linear, or the sRGB transfer. Version 2 knows tables only.
  void curve(bool isLinear, int version) {
    const double srgb[] = {2.4, 1.0 / 1.055, 0.055 / 1.055, 1.0 / 12.92, 0.04045};
    std::unique_ptr<cmsToneCurve, FreeCurve> trc(
        isLinear ? cmsBuildGamma(context_.get(), 1.0)
                 : cmsBuildParametricToneCurve(context_.get(), 4, srgb));
    if (!isLinear && version == 2) {
      std::array<cmsUInt16Number, 4096> table{};
      for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<cmsUInt16Number>(
            0.5 + 65535.0 * static_cast<double>(cmsEvalToneCurveFloat(
                                trc.get(), static_cast<float>(static_cast<double>(i) / 4095.0))));
      trc.reset(cmsBuildTabulatedToneCurve16(context_.get(), table.size(), table.data()));
    }
    write(cmsSigRedTRCTag, trc.get());
    cmsLinkTag(profile_.get(), cmsSigGreenTRCTag, cmsSigRedTRCTag);
    cmsLinkTag(profile_.get(), cmsSigBlueTRCTag, cmsSigRedTRCTag);
  }

  std::string bytes() {
    cmsUInt32Number size = 0;
    std::string result;
    if (cmsSaveProfileToMem(profile_.get(), nullptr, &size)) result.resize(size);
    if (result.empty() || !cmsSaveProfileToMem(profile_.get(), result.data(), &size))
      throw JobError("the profile could not be made");
    std::ranges::copy(kDate, result.begin() + kDateAt);
    return result;
  }

 private:
  void write(cmsTagSignature tag, const void* value) {
    if (value == nullptr || !cmsWriteTag(profile_.get(), tag, value))
      throw JobError("the profile could not be made");
  }

  std::unique_ptr<std::remove_pointer_t<cmsContext>, Release> context_;
  std::unique_ptr<void, CloseProfile> profile_;
};

std::string description(const FittedCamera& camera, const ExportOptions& options) {
  const ChartFit& fit = camera.lights.front().fit;
  return cameraName(camera, options) + ", " + illumName(fit.light) +
         (options.linearInput ? ", linear" : ", sRGB-encoded") + " RGB balanced by R " +
         fixed(fit.whiteBalance[0], 4) + " G " + fixed(fit.whiteBalance[1], 4) + " B " +
         fixed(fit.whiteBalance[2], 4) + " and exposure " + fixed(fit.exposure, 4);
}

}  // namespace

Exported writeIcc(const FittedCamera& camera, const ExportOptions& options, int version) {
  const Matrix3 toD50 =
      adaptation(kD65White, {kD50Fixed16[0] / kS15Fixed16, 1.0, kD50Fixed16[2] / kS15Fixed16});
  const WholeMatrix columns =
      wholeRows(multiply(toD50, multiply(srgbToXyz(), camera.lights.front().fit.matrix)),
                kS15Fixed16, kD50Fixed16);

  Profile profile(version == 2 ? 2.1 : 4.4);
  profile.text(cmsSigProfileDescriptionTag, description(camera, options));
  profile.text(cmsSigCopyrightTag, "No copyright, use freely");
  profile.xyz(cmsSigMediaWhitePointTag, kD50Fixed16[0] / kS15Fixed16, 1.0,
              kD50Fixed16[2] / kS15Fixed16);
  const cmsTagSignature tags[] = {cmsSigRedColorantTag, cmsSigGreenColorantTag,
                                  cmsSigBlueColorantTag};
  bool isUnusual = false;
  for (std::size_t c = 0; c < 3; ++c) {
    profile.xyz(tags[c], columns[0][c] / kS15Fixed16, columns[1][c] / kS15Fixed16,
                columns[2][c] / kS15Fixed16);
    for (std::size_t i = 0; i < 3; ++i)
      isUnusual = isUnusual || columns[i][c] < 0 || columns[i][c] >= 2 * 65536;
  }
  profile.curve(options.linearInput, version);
  if (version == 4) profile.matrix(cmsSigChromaticAdaptationTag, toD50);

  Exported result{profile.bytes(), {}};
  if (isUnusual)
    result.notes.push_back(
        "a colorant lies outside 0 to 2, which is right for a camera, but some readers clip it");
  return result;
}

}  // namespace greycard::exchange
