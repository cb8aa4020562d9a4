#include "greycard/flat_field_simulator.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>

#include "normal_source.h"
#include "picture_view.h"
#include "row_progress.h"
#include "setting_check.h"

namespace greycard {
namespace {

constexpr double kRoundingVariance = 1.0 / 12.0, kLeastSigma = 0.6, kMost = 255.0;

void checkSettings(const FlatFieldSettings& s) {
  for (const SettingRange& range : {SettingRange{"width", 1.0 * s.width, 2, 20000},
                                    {"height", 1.0 * s.height, 2, 20000},
                                    {"level", s.level, 0, kMost},
                                    {"fall-off", s.fallOff, 0, 1},
                                    {"gain of the noise in the corners", s.cornerGain, 1, 20}})
    checkSetting(range);
  if (s.centreSigma != 0.0) checkSetting({"noise at the centre", s.centreSigma, kLeastSigma, 60});
  checkPixels(s.width, s.height);
  if (s.bits != 8 && s.bits != 16)
    throw std::invalid_argument("a picture has 8 or 16 bits, not " + std::to_string(s.bits));
}

}  // namespace

bool FlatFieldSimulator::Simulate(const ProgressCallback& progress) {
  const FlatFieldSettings& s = m_settings;
  checkSettings(s);
  const int cx = s.width / 2, cy = s.height / 2;
  const double perCorner = 1.0 / (1.0 * cx * cx + 1.0 * cy * cy);
  NormalSource normal(s.seed);
  Picture picture(s.width, s.height, 1, s.bits);
  for (int y = 0; y < s.height; ++y) {
    if (!goesOn(progress, y, s.height)) return false;
    const auto row = samplesOf(picture).row(static_cast<std::size_t>(y));
    for (int x = 0; x < s.width; ++x) {
      const double dx = x - cx, dy = y - cy, rho = std::sqrt((dx * dx + dy * dy) * perCorner);
      double value = s.level * (1.0 - s.fallOff * rho * rho);
      if (s.centreSigma > 0.0) {
        const double sigma = s.centreSigma * gainAt(rho);
        value += std::sqrt(sigma * sigma - kRoundingVariance) * normal.next();
      }
      row[static_cast<std::size_t>(x)] =
          static_cast<std::uint16_t>(std::lround(std::clamp(value, 0.0, kMost)));
    }
  }
  m_picture = std::move(picture);
  return true;
}

}  // namespace greycard
