#include "greycard/jobs/fit_profile.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "greycard/colour_temperature.h"
#include "greycard/errors.h"
#include "greycard/number_text.h"

namespace greycard {
namespace {

constexpr double kLeastKelvin = 1000.0, kMostKelvin = 25000.0;

void checkKelvin(double kelvin) {
  if (!(kelvin >= kLeastKelvin && kelvin <= kMostKelvin))
    throw std::invalid_argument("a colour temperature lies in 1000 to 25000 K, not at " +
                                general(kelvin, 6));
}

// What the gains tell of a light: blue light needs little blue.
double warmth(const ChartFit& fit) {
  return std::log(fit.whiteBalance[2] / fit.whiteBalance[0]);
}

// By the straight line of mired over warmth through the lights that have a spectrum.
std::optional<double> kelvinByGains(const ChartFit& fit, const std::vector<ProfiledLight>& known) {
  constexpr double kLeastSpread = 0.05;
  double n = 0.0, x = 0.0, y = 0.0, xx = 0.0, xy = 0.0;
  for (const ProfiledLight& light : known) {
    const double at = warmth(light.fit);
    n += 1.0, x += at, y += light.mired(), xx += at * at, xy += at * light.mired();
  }
  const double spread = xx - x * x / std::max(n, 1.0);
  if (n < 2.0 || !(spread > kLeastSpread * kLeastSpread)) return std::nullopt;
  const double slope = (xy - x * y / n) / spread;
  const double mired = y / n + slope * (warmth(fit) - x / n);
  return std::clamp(1e6 / std::max(mired, 1e6 / kMostKelvin), kLeastKelvin, kMostKelvin);
}

// CIE 15:2004 of lights that are here without a spectrum of their own.
std::optional<double> publishedKelvin(Illum light) {
  if (light == illum_D75) return 7504.0;
  if (light == illum_CoolWhite) return 4230.0;
  return light == illum_Lowlight ? std::optional(4000.0) : std::nullopt;
}

std::vector<ProfiledLight> withTemperatures(std::vector<LightFit> fits, CameraProfile& profile) {
  std::vector<ProfiledLight> lights;
  std::vector<ChartFit> unknown;
  for (LightFit& light : fits) {
    if (light.kelvin) checkKelvin(*light.kelvin);
    const Illum name = light.fit.light;
    if (light.kelvin)
      lights.push_back({std::move(light.fit), *light.kelvin, KelvinSource::given});
    else if (referenceLight(name) == name)
      lights.push_back(
          {std::move(light.fit), lightTemperature(name).kelvin, KelvinSource::spectrum});
    else if (const auto kelvin = publishedKelvin(name))
      lights.push_back({std::move(light.fit), *kelvin, KelvinSource::published});
    else
      unknown.push_back(std::move(light.fit));
  }
  const std::vector<ProfiledLight> known = lights;
  for (ChartFit& fit : unknown) {
    const Illum name = fit.light;
    if (const auto kelvin = kelvinByGains(fit, known)) {
      lights.push_back({std::move(fit), *kelvin, KelvinSource::gains});
      continue;
    }
    lights.push_back({std::move(fit), lightTemperature(name).kelvin, KelvinSource::stand_in});
    profile.warnings.push_back(std::string("the light ") + illumName(name) +
                               " has no spectrum of its own and too few others tell by their "
                               "gains how warm it is; the temperature of " +
                               illumName(referenceLight(name)) + " is taken, so give its own");
  }
  std::ranges::stable_sort(lights, {}, &ProfiledLight::kelvin);
  return lights;
}

// The chart under one light by the matrix of another.
PatchTable labUnder(const ChartFit& under, const ChartFit& by) {
  return under.shownLab(under.fit.m_balancedRGB, by.matrix);
}

MatrixStep stepBetween(const ProfiledLight& warmer, const ProfiledLight& cooler) {
  MatrixStep step;
  step.mired = warmer.mired() - cooler.mired();
  for (const ProfiledLight* light : {&warmer, &cooler}) {
    const ErrorColumn jump =
        colourErrors(labUnder(light->fit, warmer.fit), labUnder(light->fit, cooler.fit)).ciede2000;
    step.mean += jump.mean / 2.0;
    if (jump.worst > step.worst) step.worst = jump.worst, step.worstPatch = jump.worstPatch;
  }
  return step;
}

void compare(CameraProfile& profile) {
  for (const ProfiledLight& by : profile.lights) {
    std::vector<ErrorColumn>& row = profile.errors.emplace_back();
    for (const ProfiledLight& under : profile.lights)
      row.push_back(colourErrors(under.fit.fit.m_targetLab, labUnder(under.fit, by.fit)).ciede2000);
  }
  for (std::size_t i = 0; i + 1 < profile.lights.size(); ++i) {
    const ProfiledLight &warmer = profile.lights[i], &cooler = profile.lights[i + 1];
    profile.steps.push_back(stepBetween(warmer, cooler));
    if (const double jump = profile.steps.back().per100Mired(); jump > kJumpPer100Mired)
      profile.warnings.push_back(
          "from " + std::string(illumName(warmer.fit.light)) + " to " +
          illumName(cooler.fit.light) + " the matrices change colours by " + fixed(jump, 1) +
          " dE00 for each 100 mired, so that they jump when the light changes; a light between "
          "these two, or one of the same kind, would even it out");
  }
}

}  // namespace

CameraProfile profileOf(std::vector<LightFit> fits) {
  if (fits.empty()) throw std::invalid_argument("a profile takes at least one light");
  CameraProfile profile;
  profile.lights = withTemperatures(std::move(fits), profile);
  const auto twin = std::ranges::adjacent_find(profile.lights, {}, &ProfiledLight::kelvin);
  if (twin != profile.lights.end())
    throw JobError(std::string("the lights ") + illumName(twin->fit.light) + " and " +
                   illumName((twin + 1)->fit.light) + " have the same colour temperature, " +
                   general(twin->kelvin, 6) + " K; give one fit of each light");
  compare(profile);
  return profile;
}

std::optional<CameraProfile> fitProfile(std::span<const LightPhotograph> photographs,
                                        const ChartFitOptions& options,
                                        const ProgressCallback& progress) {
  if (options.transform != 0)
    throw JobError("lights are set side by side in linear sRGB; leave out another transform");
  std::vector<LightFit> fits;
  for (const LightPhotograph& photograph : photographs) {
    ChartFitOptions own = options;
    own.light = photograph.light;
    auto fit = fitChart(photograph.photograph, own, progress);
    if (!fit) return std::nullopt;
    fits.push_back({std::move(*fit), photograph.kelvin});
  }
  return profileOf(std::move(fits));
}

ProfilePoint profileAt(const CameraProfile& profile, double kelvin) {
  checkKelvin(kelvin);
  if (profile.lights.empty()) throw std::invalid_argument("the profile holds no lights");
  const auto& lights = profile.lights;
  const auto above = static_cast<std::size_t>(
      std::ranges::upper_bound(lights, kelvin, {}, &ProfiledLight::kelvin) - lights.begin());
  ProfilePoint point;
  point.kelvin = kelvin;
  point.cooler = std::min(above, lights.size() - 1);
  point.warmer = above == 0 || above == lights.size() ? point.cooler : above - 1;
  const ProfiledLight &warm = lights[point.warmer], &cool = lights[point.cooler];
  if (point.warmer != point.cooler)
    point.warmerShare = (1e6 / kelvin - cool.mired()) / (warm.mired() - cool.mired());
  const double w = point.warmerShare;
  const auto between = [w](double a, double b) { return w * a + (1.0 - w) * b; };
  const auto gain = [&](double a, double b) {
    return a == b ? a : std::exp(between(std::log(a), std::log(b)));
  };
  for (std::size_t r = 0; r < 3; ++r) {
    for (std::size_t c = 0; c < 3; ++c)
      point.matrix[r][c] = between(warm.fit.matrix[r][c], cool.fit.matrix[r][c]);
    point.whiteBalance[r] = gain(warm.fit.whiteBalance[r], cool.fit.whiteBalance[r]);
  }
  point.exposure = gain(warm.fit.exposure, cool.fit.exposure);
  return point;
}

}  // namespace greycard
