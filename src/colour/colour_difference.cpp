#include <algorithm>
#include <cmath>
#include <numbers>

#include "greycard/delta_e.h"

namespace greycard {
namespace {

constexpr double kDegree = std::numbers::pi / 180.0;
constexpr double k25To7 = 6103515625.0;  // 25^7

// Angle of (a, b) in degrees, 0 <= h < 360; 0 for the origin.
double hueDegrees(double a, double b) {
  const double h = std::atan2(b, a) / kDegree;
  return h < 0.0 ? h + 360.0 : h;
}

double seventhPower(double x) {
  const double cube = x * x * x;
  return cube * cube * x;
}

// sqrt(C^7 / (C^7 + 25^7)), with the limit 1 where C^7 overflows.
double chromaWeight(double chroma) {
  const double power = seventhPower(chroma);
  return std::isinf(power) ? 1.0 : std::sqrt(power / (power + k25To7));
}

double gaussian(double x) {
  return std::exp(-x * x);
}

}  // namespace

double deltaE76(const Vector3& labA, const Vector3& labB) {
  const double dL = labA[0] - labB[0], da = labA[1] - labB[1], db = labA[2] - labB[2];
  return std::sqrt(dL * dL + da * da + db * db);
}

Vector3 differenceSplit(const Vector3& referenceLab, const Vector3& lab) {
  const double chroma = std::hypot(lab[1], lab[2]);
  const double referenceChroma = std::hypot(referenceLab[1], referenceLab[2]);
  const double da = lab[1] - referenceLab[1], db = lab[2] - referenceLab[2];
  const double dC = chroma - referenceChroma;
  const double dH = std::sqrt(std::max(0.0, da * da + db * db - dC * dC));
  const double turn = referenceLab[1] * lab[2] - referenceLab[2] * lab[1];
  return {lab[0] - referenceLab[0], dC, std::copysign(dH, turn)};
}

double deltaE94(const Vector3& referenceLab, const Vector3& sampleLab) {
  const double c1 = std::hypot(referenceLab[1], referenceLab[2]);
  const double c2 = std::hypot(sampleLab[1], sampleLab[2]);
  const double dL = referenceLab[0] - sampleLab[0];
  const double da = referenceLab[1] - sampleLab[1];
  const double db = referenceLab[2] - sampleLab[2];
  const double dC = c1 - c2;
  // Rounding can take dH^2 below 0 for colours of one hue.
  const double dHSquared = std::fmax(da * da + db * db - dC * dC, 0.0);
  const double sC = 1.0 + 0.045 * c1, sH = 1.0 + 0.015 * c1;
  return std::sqrt(dL * dL + dC * dC / (sC * sC) + dHSquared / (sH * sH));
}

// The numbers are those of the equations in the 2005 implementation notes.
DeltaE2000Terms deltaE2000Terms(const Vector3& labA, const Vector3& labB) {
  // (2)-(7): a' stretches the a* axis near grey; C' and h' follow from it.
  const double meanC = 0.5 * (std::hypot(labA[1], labA[2]) + std::hypot(labB[1], labB[2]));
  const double stretch = 1.0 + 0.5 * (1.0 - chromaWeight(meanC));
  const double a1 = stretch * labA[1], a2 = stretch * labB[1];
  const double c1 = std::hypot(a1, labA[2]), c2 = std::hypot(a2, labB[2]);
  const double h1 = hueDegrees(a1, labA[2]), h2 = hueDegrees(a2, labB[2]);

  // (8)-(11): differences; the hue difference goes the short way round, and is 0 beside a grey.
  const double dL = labB[0] - labA[0], dC = c2 - c1;
  const bool grey = c1 * c2 == 0.0;
  double dh = grey ? 0.0 : h2 - h1;
  if (dh > 180.0) dh -= 360.0;
  if (dh < -180.0) dh += 360.0;
  const double dH = 2.0 * std::sqrt(c1 * c2) * std::sin(0.5 * dh * kDegree);

  // (12)-(14): means; the mean hue lies on the short arc.
  const double meanL = 0.5 * (labA[0] + labB[0]), meanCPrime = 0.5 * (c1 + c2);
  double meanH = grey ? h1 + h2 : 0.5 * (h1 + h2);
  if (!grey && std::fabs(h1 - h2) > 180.0) meanH += h1 + h2 < 360.0 ? 180.0 : -180.0;

  // (15)-(22): weights and rotation.
  const double t = 1.0 - 0.17 * std::cos((meanH - 30.0) * kDegree) +
                   0.24 * std::cos(2.0 * meanH * kDegree) +
                   0.32 * std::cos((3.0 * meanH + 6.0) * kDegree) -
                   0.20 * std::cos((4.0 * meanH - 63.0) * kDegree);
  const double dTheta = 30.0 * gaussian((meanH - 275.0) / 25.0);
  const double offL = (meanL - 50.0) * (meanL - 50.0);
  const double sL = 1.0 + 0.015 * offL / std::sqrt(20.0 + offL);
  const double sC = 1.0 + 0.045 * meanCPrime, sH = 1.0 + 0.015 * meanCPrime * t;
  const double rT = -2.0 * chromaWeight(meanCPrime) * std::sin(2.0 * dTheta * kDegree);

  const double l = dL / sL, c = dC / sC, h = dH / sH;
  return {l, c, h, rT * c * h};
}

double deltaE2000(const Vector3& labA, const Vector3& labB) {
  const auto [l, c, h, rotation] = deltaE2000Terms(labA, labB);
  return std::sqrt(l * l + c * c + h * h + rotation);
}

}  // namespace greycard
