#include "greycard/chart_simulator.h"

#include <cmath>
#include <utility>
#include <vector>

#include "chart_geometry.h"
#include "picture_encoder.h"
#include "picture_view.h"
#include "row_blur.h"
#include "row_progress.h"
#include "scene_colours.h"
#include "scene_rows.h"
#include "sensor_noise.h"
#include "simulation_settings.h"

namespace greycard {
namespace {

// Light falls by cos^4 of the angle to the axis: (1 + k r^2)^-2 at distance r from the centre, k
// such that a share `loss` is lost in the corners.
class Vignetting {
 public:
  Vignetting(double loss, int width, int height)
      : m_centre{0.5 * (width - 1), 0.5 * (height - 1)},
        m_k((1.0 / std::sqrt(1.0 - loss) - 1.0) /
            (m_centre.x * m_centre.x + m_centre.y * m_centre.y)) {}

  double factor(const Point2& point) const {
    const double dx = point.x - m_centre.x, dy = point.y - m_centre.y;
    const double q = 1.0 + m_k * (dx * dx + dy * dy);
    return 1.0 / (q * q);
  }
  void apply(int y, std::vector<double>& rgb) const {
    if (m_k == 0.0) return;
    for (std::size_t i = 0; i < rgb.size(); i += 3) {
      const double f = factor({static_cast<double>(i / 3), static_cast<double>(y)});
      for (std::size_t c = 0; c < 3; ++c) rgb[i + c] *= f;
    }
  }

 private:
  Point2 m_centre;
  double m_k;
};

}  // namespace

bool ChartSimulator::Simulate(const ProgressCallback& progress) {
  const SimulationSettings& s = m_settings;
  checkSettings(s);
  const SceneColours colours = sceneColours(s);
  const ChartGeometry geometry(s);
  const SceneRows scene(geometry, colours);
  const Vignetting vignetting(s.vignetting, s.width, s.height);
  const PictureEncoder encoder(samplesOf(s));
  SensorNoise noise(s.shotNoise, s.readNoise, s.seed);
  RowBlur optics(s.blurSigma, s.width, s.height,
                 [&scene](int y, std::span<double> rgb) { scene.paint(y, rgb); });

  Picture picture(s.width, s.height, 3, s.bits);
  std::vector<double> rgb(3 * static_cast<std::size_t>(s.width));
  for (int y = 0; y < s.height; ++y) {
    if (!goesOn(progress, y, s.height)) return false;
    optics.next(y, rgb);
    vignetting.apply(y, rgb);
    noise.addTo(rgb);
    encoder.encode(rgb, samplesOf(picture).row(static_cast<std::size_t>(y)));
  }

  SimulationTruth truth;
  geometry.describe(truth);
  truth.rgb = colours.patches;
  truth.whiteRgb = colours.white;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    truth.shading[i] = vignetting.factor(truth.centres[i]);
    for (std::size_t c = 0; c < 3; ++c) truth.noiseSigma[i][c] = noise.sigma(colours.patches[i][c]);
  }
  m_picture = std::move(picture);
  m_truth = truth;
  return true;
}

}  // namespace greycard
