#include "target_preparation.h"

#include <cmath>
#include <cstddef>
#include <initializer_list>

namespace greycard {
namespace {

// Neutral up to these; a rotation up to kNoRotation is not made.
constexpr double kNeutralSaturation = 0.0001, kNeutralHue = 0.001, kNoRotation = 0.01;
// Deliberately not exact: pi is 3.14159 here.
constexpr double kDegreesPerRadian = 57.295827908797776, kRadiansPerDegree = 0.017453277777777776;

// Rows of the chart. The groups of hue and saturation differ on purpose: row 5 turns with the blue
// patches but takes its chroma from the green ones.
using Rows = std::initializer_list<std::size_t>;
constexpr Rows kHueRowsR = {8, 14, 16}, kHueRowsG = {3, 10, 13}, kHueRowsB = {2, 5, 7, 12, 17};
constexpr Rows kSaturationRowsR = {8, 14, 16}, kSaturationRowsG = {3, 5, 10, 13},
               kSaturationRowsB = {2, 7, 12, 17};

void rotateHue(PatchTable& lab, Rows rows, double degrees) {
  if (!(std::abs(degrees) > kNoRotation)) return;
  for (const std::size_t row : rows) {
    double& a = lab[row][1];
    double& b = lab[row][2];
    const double hue = (std::atan2(b, a) * kDegreesPerRadian + degrees) * kRadiansPerDegree;
    const double chroma = std::sqrt(a * a + b * b);
    a = chroma * std::cos(hue);
    b = chroma * std::sin(hue);
  }
}

void scaleChroma(Vector3& lab, double factor) {
  lab[1] *= factor;
  lab[2] *= factor;
}

void scaleChroma(PatchTable& lab, Rows rows, double factor) {
  for (const std::size_t row : rows) scaleChroma(lab[row], factor);
}

}  // namespace

bool TargetAdjustment::isNeutral() const {
  for (const double factor : {saturationAll, saturationR, saturationG, saturationB})
    if (!(std::abs(factor - 1.0) <= kNeutralSaturation)) return false;
  for (const double degrees : {hueR, hueG, hueB})
    if (!(std::abs(degrees) <= kNeutralHue)) return false;
  return true;
}

PatchTable prepareTarget(const PatchTable& lightLab, const PatchTable& chartLab,
                         const TargetAdjustment& adjustment) {
  if (adjustment.isNeutral()) return chartLab;

  PatchTable target = lightLab;
  rotateHue(target, kHueRowsR, adjustment.hueR);
  rotateHue(target, kHueRowsG, adjustment.hueG);
  rotateHue(target, kHueRowsB, adjustment.hueB);

  const double all = adjustment.saturationAll;
  if (adjustment.saturationR == all && adjustment.saturationG == all &&
      adjustment.saturationB == all) {
    for (Vector3& lab : target) scaleChroma(lab, all);
  } else {
    scaleChroma(target, kSaturationRowsR, adjustment.saturationR);
    scaleChroma(target, kSaturationRowsG, adjustment.saturationG);
    scaleChroma(target, kSaturationRowsB, adjustment.saturationB);
  }
  return target;
}

}  // namespace greycard
