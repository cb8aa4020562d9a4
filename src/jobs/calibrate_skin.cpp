#include "greycard/jobs/calibrate_skin.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "greycard/camera_gamma.h"
#include "greycard/errors.h"
#include "greycard/files.h"

namespace greycard {
namespace {

constexpr std::array kIllums{illum_D65, illum_A, illum_TL84};
constexpr std::size_t kBalancePatch = 19;
constexpr std::size_t kPerLight =
    static_cast<std::size_t>(SkinColorHelper::kVariants) * SkinColorHelper::kSpectra;

std::vector<std::string> chartWarnings(const SkinCharts& charts, const SkinChartFiles& files) {
  std::vector<std::string> warnings;
  for (std::size_t light = 0; light < charts.size(); ++light) {
    const std::string which =
        (files[light].empty() ? std::string("the chart under ") + kSkinLights[light]
                              : quoted(files[light])) +
        ": ";
    for (const std::string& warning : charts[light].warnings) warnings.push_back(which + warning);
    if (const auto told = charts[light].light; told && *told != kIllums[light])
      warnings.push_back(which + "fitted for light " + illumName(*told) + " but given as " +
                         kSkinLights[light]);
    const Vector3& grey = charts[light].rgb[kBalancePatch];
    if (!(grey[0] > 0.0 && grey[1] > 0.0 && grey[2] > 0.0))
      warnings.push_back(which +
                         "patch 20 is not above black in every channel, so white balance "
                         "has nothing to go by");
  }
  return warnings;
}

std::array<std::vector<double>, 3> channelsOf(const PatchTable& rgb) {
  std::array<std::vector<double>, 3> channels;
  for (const Vector3& patch : rgb)
    for (std::size_t c = 0; c < channels.size(); ++c) channels[c].push_back(patch[c]);
  return channels;
}

void widen(std::optional<std::array<double, 2>>& range, double value) {
  if (!std::isfinite(value)) return;
  if (!range) range = {value, value};
  range = {std::min(range->front(), value), std::max(range->back(), value)};
}

SkinSet setOf(const SkinColorHelper::DataArray& points) {
  SkinSet set;
  set.points = points;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (!set.holds(i)) continue;
    ++set.accepted;
    ++set.acceptedUnder[i / kPerLight];
    if (!std::isfinite(points[i].h)) ++set.hueNotFinite;
    widen(set.h, points[i].h);
    widen(set.s, points[i].s);
    widen(set.y, points[i].y);
  }
  return set;
}

}  // namespace

SkinCalibration calibrateSkin(const SkinCharts& charts, const SkinOptions& options,
                              const SkinChartFiles& files) {
  const CameraGamma gamma = cameraGamma(options.gamma);
  if (!options.matrix && !charts.back().matrix)
    throw JobError(
        "a colour-correction matrix is needed: none is given, and none came with the chart under "
        "T84");
  SkinCalibration result;
  result.charts = files;
  result.gammaName = gamma.name;
  result.matrix = options.matrix ? *options.matrix : *charts.back().matrix;
  result.matrixFrom = options.matrix ? options.matrixFrom : files.back().string();

  SkinColorHelper helper;
  const auto d65 = channelsOf(charts[0].rgb), a = channelsOf(charts[1].rgb),
             t84 = channelsOf(charts[2].rgb);
  helper.SetMCCRGBValues_D65(d65[0], d65[1], d65[2]);
  helper.SetMCCRGBValues_A(a[0], a[1], a[2]);
  helper.SetMCCRGBValues_T84(t84[0], t84[1], t84[2]);
  helper.SetCCMValues_T84(result.matrix);
  helper.SetGammaTable(gamma.tables[1], gamma.bits);
  helper.Calibrate();

  result.upper = setOf(*helper.GetUpperData());
  result.lower = setOf(*helper.GetLowerData());
  result.colours = std::move(*helper.GetEncodedColours());
  result.warnings = chartWarnings(charts, files);
  return result;
}

}  // namespace greycard
