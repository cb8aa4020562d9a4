#pragma once
/// \file
/// \ingroup own

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "greycard/colour_errors.h"
#include "greycard/export.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/photograph.h"

namespace greycard {

// A camera under several lights: a fit for each, and what to do between them.

/// A photograph of the chart under one light.
struct LightPhotograph {
  Photograph photograph;
  Illum light = illum_D65;
  std::optional<double> kelvin{};  ///< colour temperature, where it is known better than by name
};

/// A fit under one light, as fitChart made it.
struct LightFit {
  ChartFit fit;
  std::optional<double> kelvin{};  ///< as LightPhotograph::kelvin
};

/// Where a light's colour temperature comes from: the caller, the light's own spectrum
/// (lightTemperature), the publication of D75, CoolWhite (F2) and Lowlight (F11), whose spectrum is
/// another light's here, the ratio of its gains among those of the lights above, or, where these
/// are fewer than two, the spectrum of the light that stands for it.
enum class KelvinSource { given, spectrum, published, gains, stand_in };
inline constexpr std::array kKelvinSourceNames{"given", "spectrum", "published", "gains",
                                               "stand_in"};

struct ProfiledLight {
  ChartFit fit;
  double kelvin = 0.0;
  KelvinSource source = KelvinSource::given;

  /// 1e6 / kelvin, the scale on which lights lie evenly.
  double mired() const { return 1e6 / kelvin; }
};

/// What happens to the chart's colours when one matrix takes over from its neighbour: CIEDE2000
/// between both on the balanced charts of both lights.
struct MatrixStep {
  double mired = 0.0;  ///< between the lights
  double mean = 0.0, worst = 0.0;
  int worstPatch = 0;  ///< 0-based
  /// The mean for 100 mired, about as far as from a cloudy to a sunny evening sky.
  double per100Mired() const { return mean * 100.0 / mired; }
};

struct GREYCARD_EXPORT CameraProfile {
  std::vector<ProfiledLight> lights;  ///< from the warmest to the coolest
  /// CIEDE2000 to the reference, [matrix][light]: a light's chart with its own gains under each
  /// light's matrix; a light under its own has the error of its fit.
  std::vector<std::vector<ErrorColumn>> errors;
  std::vector<MatrixStep> steps;      ///< from each light to the next
  std::vector<std::string> warnings;  ///< a sentence each; those of the fits are theirs
};

/// Above this, in units of MatrixStep::per100Mired, colours visibly jump when a camera changes
/// matrices.
inline constexpr double kJumpPer100Mired = 3.0;

/// Sets the fits side by side. Their matrices must be to linear sRGB: those of fits with
/// ChartFitOptions::transform 0.
/// \throws std::invalid_argument for no fits, and a temperature outside 1000..25000 K; JobError for
///         two lights of the same temperature
GREYCARD_EXPORT CameraProfile profileOf(std::vector<LightFit> fits);

/// Fits each photograph and sets the fits side by side.
/// \param options  for all of them; its light is not looked at
/// \return empty when the callback cancelled
/// \throws JobError for another transform than 0; as fitChart and profileOf
GREYCARD_EXPORT std::optional<CameraProfile> fitProfile(
    std::span<const LightPhotograph> photographs, const ChartFitOptions& options = {},
    const ProgressCallback& progress = {});

/// Gains and matrix for a light between those of a profile.
struct ProfilePoint {
  double kelvin = 0.0;
  Matrix3 matrix{};        ///< rows sum to 1 as those that it is made of
  Vector3 whiteBalance{};  ///< R, G, B
  double exposure = 1.0;
  std::size_t warmer = 0, cooler = 0;  ///< the lights it lies between; the same at or beyond an end
  double warmerShare = 1.0;            ///< of the warmer one
};

/// Matrix entries by straight lines over 1 / kelvin, as readers of two-light profiles do it, gains
/// by straight lines of their logarithms. Beyond the ends the last light's are kept.
/// \throws std::invalid_argument for a temperature outside 1000..25000 K or an empty profile
GREYCARD_EXPORT ProfilePoint profileAt(const CameraProfile& profile, double kelvin);

}  // namespace greycard
