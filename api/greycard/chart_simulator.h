#pragma once
/// \file
/// \ingroup own

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "greycard/export.h"
#include "greycard/illum.h"
#include "greycard/patch_sampler.h"
#include "greycard/picture.h"
#include "greycard/text_view.h"
#include "greycard/types.h"

namespace greycard {

/// Spectral sensitivities of a camera's three channels, made by a formula.
///
/// The first three are bells exp(-(l - peak)^2 / (2 sigma^2)) of wavelength l, in nm, for red,
/// green and blue, times the channel's efficiency:
///
/// | sensor   | peaks         | sigmas     | efficiencies   |
/// |----------|---------------|------------|----------------|
/// | Ordinary | 600, 540, 460 | 35, 38, 28 | 0.75, 1, 0.80  |
/// | Narrow   | 600, 540, 460 | 18, 18, 18 | 0.75, 1, 0.80  |
/// | Broad    | 600, 540, 460 | 60, 60, 50 | 0.75, 1, 0.80  |
enum class ModelSensor : std::int32_t {
  Ordinary,  ///< overlapping channels, as of a usual camera
  Narrow,    ///< hardly overlapping channels: colours that look alike differ for it
  Broad,     ///< strongly overlapping channels: a correction amplifies noise
  /// The CIE 1931 2 degree functions times the CAT02 cone matrix (CIE 159:2004). It meets the
  /// Luther condition: white-balance gains and one matrix give the chart's reference colours
  /// exactly, under every light.
  Colorimetric,
};

/// The sensor of that name, letter case ignored: "ordinary", "narrow", "broad", "colorimetric".
GREYCARD_EXPORT std::optional<ModelSensor> modelSensorFromName(TextView name);
/// The name above; "unknown" for any other value.
GREYCARD_EXPORT const char* modelSensorName(ModelSensor sensor);

/// All model sensors, and the lights that photographs can be simulated under.
GREYCARD_EXPORT std::span<const ModelSensor> modelSensors();
GREYCARD_EXPORT std::span<const Illum> simulatedLights();

/// What a simulated photograph shows and how it is taken. Shares are 0..1.
struct SimulationSettings {
  /// A, D65, TL84 (F11), D50, Horizon or CoolWhite (F2): the lights with a spectrum of their own.
  Illum light = illum_D65;
  ModelSensor sensor = ModelSensor::Ordinary;

  int width = 1600, height = 1200;  ///< pixels, 16..20000 each and 100 million together
  /// Width or height of the chart with its frame, whichever is tighter, as a share of the
  /// picture's; 0.02..2.
  double sizeShare = 0.7;
  /// Shift of the chart from the picture's centre, as shares of its width and height; -1..1.
  double offsetX = 0.0, offsetY = 0.0;
  double rotationDeg = 0.0;  ///< clockwise in the picture, -360..360
  double tiltDeg = 0.0;      ///< the upright chart's top leans away from the camera, -70..70
  double yawDeg = 0.0;       ///< the upright chart's right side turns away, -70..70
  /// What surrounds the chart, per channel, as a share of what a perfect white would give; 0..1.
  Vector3 surround{0.35, 0.35, 0.35};

  /// Linear value of the white patch's strongest channel as a share of full scale; 0.001 to
  /// 4. Values above 1 clip.
  double whiteShare = 0.8;
  double vignetting = 0.0;  ///< share of light lost in the picture's corners, 0..0.95
  double blurSigma = 0.0;   ///< Gaussian blur in pixels, 0..50
  double shotNoise = 0.0;   ///< standard deviation at full scale, as a share of it; 0..1
  double readNoise = 0.0;   ///< standard deviation without light, likewise; 0..1
  std::uint64_t seed = 1;   ///< of the noise

  /// Samples are black + value (white - black), rounded, where the value is encoded if `encoding`
  /// says so. The sensor clips at the white level; noise may reach below the black level.
  int bits = 8;  ///< 8 or 16
  SampleEncoding encoding = SampleEncoding::sRGB;
  double blackLevel = 0.0;  ///< 0 up to whiteLevel - 1
  double whiteLevel = 0.0;  ///< up to what the bits hold; 0 stands for that
};

/// What is known about a simulated photograph.
struct SimulationTruth {
  std::array<Point2, kPatchCount> centres{};
  /// Corners of each patch, in the order upper left, upper right, lower right, lower left of the
  /// upright chart.
  std::array<std::array<Point2, 4>, kPatchCount> corners{};
  double pitch = 0.0;      ///< mean distance of neighbouring centres in pixels
  double patchSide = 0.0;  ///< mean side of a patch in pixels
  double sideRatio = 1.0;  ///< the largest ratio of adjacent sides of a patch
  double turnDeg = 0.0;  ///< direction of the first row, clockwise from the x axis; 0 to below 360

  /// Linear values as shares of full scale, without vignetting, noise and clipping.
  PatchTable rgb{};
  PatchTable noiseSigma{};                    ///< standard deviation of a pixel's noise at rgb
  std::array<double, kPatchCount> shading{};  ///< factor of the vignetting at the centres
  Vector3 whiteRgb{};                         ///< rgb of a perfect reflector
};

/// Renders photographs of the 24-patch chart from reflectances, light and sensor, whose truth is
/// known. Fill m_settings, call Simulate, read m_picture and m_truth.
///
/// A channel's value is the sum over 400 to 700 nm by 5 nm of light, reflectance and sensitivity:
/// the sensor's own linear values, not white-balanced, in which neutral patches are not grey. The
/// chart's patches have sides of 0.87 pitch in a dark frame that shows 0.185 pitch round the outer
/// patches; the camera stands three chart widths away. Then follow blur, vignetting (the light
/// falls by the fourth power of the cosine of the angle to the axis), noise and quantisation.
class GREYCARD_EXPORT ChartSimulator {
 public:
  SimulationSettings m_settings;
  Picture m_picture;
  SimulationTruth m_truth;

  /// Equal settings give equal pictures to the bit, on one build of the library.
  /// \return false when the progress callback cancelled it; picture and truth are left as they were
  /// \throws std::invalid_argument with one sentence about the first setting that is out of range;
  ///         picture and truth are left as they were
  bool Simulate(const ProgressCallback& progress = {});
};

}  // namespace greycard
