#include "greycard/jobs/apply_lut2d.h"

#include <algorithm>
#include <stdexcept>

#include "greycard/files.h"

namespace greycard {
namespace {

int whiteOf(const Picture& picture, const std::optional<int>& bits,
            const std::filesystem::path& photo) {
  if (!bits) return picture.ceiling();
  if (*bits != 8 && *bits != 10 && *bits != 16)
    throw std::invalid_argument("samples have 8, 10 or 16 bits, not " + std::to_string(*bits));
  const std::string it = photo.empty() ? "the picture" : quoted(photo);
  if (*bits > picture.bits)
    throw WrongSampleBits(it + " has " + std::to_string(picture.bits) + "-bit samples",
                          "leave their bits open");
  if (*bits == 8 && picture.bits == 16)
    throw WrongSampleBits(it + " has 16-bit samples", "their bits must be 10 or 16");
  if (*bits != 10) return picture.ceiling();
  if (std::ranges::any_of(picture.samples,
                          [](int sample) { return sample > TenBitPlanes::kWhite; }))
    throw WrongSampleBits(it + " has samples above 1023, which 10 bits can't hold",
                          "leave their bits open");
  return TenBitPlanes::kWhite;
}

}  // namespace

Picture AppliedLut2d::picture() const {
  return after.picture(report.whiteLevel, bits);
}

Picture AppliedLut2d::comparison() const {
  return sideBySide(before.picture(255, 8), after.picture(255, 8));
}

AppliedLut2d applyLut2d(const Picture& picture, const Lut2DConfig& table,
                        const Lut2dApplyOptions& options, const std::filesystem::path& photo,
                        const std::filesystem::path& lut) {
  AppliedLut2d applied;
  applied.bits = picture.bits;
  const int white = whiteOf(picture, options.bits, photo);
  TwoDLutHelper helper;
  helper.SetConfig(table);
  applied.before = TenBitPlanes(picture, white);
  applied.after = applied.before;
  applied.after.apply(helper);
  applied.report = {photo, lut, white, applied.before.r.size(),
                    applied.after.differingPixels(applied.before)};
  return applied;
}

}  // namespace greycard
