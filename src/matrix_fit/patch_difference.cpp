#include "patch_difference.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "colour_space.h"

namespace greycard {
namespace {

using Chromatic = Dual<2>;  // derivatives by a* and b*

constexpr double kDegree = std::numbers::pi / 180.0;
constexpr double k25To7 = 6103515625.0;  // 25^7
constexpr double kNoChroma = 1e-12;      // a colour below it counts as grey

/// Two colours of the plane as the formulas of CIE94 and CIEDE2000 take them apart.
struct Polar {
  Chromatic chroma1, chroma2, dC, dH;  // C1, C2, C2 - C1, 2 sqrt(C1 C2) sin(dh / 2)
  Chromatic cosMean, sinMean;          // the mean hue, on the short arc
  Chromatic cosTurn, sinTurn;          // turns (dC, dH) to the straight difference of the colours
};

Chromatic chromaOf(const Chromatic& a, const Chromatic& b) {
  return sqrt(a * a + b * b);
}

// (dC, dH) is as long as the straight difference, but bends with the hue, the more the nearer to
// grey. Turned to it, weighted differences bend little, which is what a search by slopes wants.
void setTurn(Polar& p, const Chromatic& da, const Chromatic& db) {
  const Chromatic square = p.dC * p.dC + p.dH * p.dH;
  if (square.v < kNoChroma) {
    p.cosTurn.v = p.cosMean.v;
    p.sinTurn.v = p.sinMean.v;
    return;
  }
  p.cosTurn = (da * p.dC + db * p.dH) / square;
  p.sinTurn = (db * p.dC - da * p.dH) / square;
}

// Without angles: with the unit vectors u1, u2 of the hues, |u1 + u2| = 2 cos(dh / 2), its
// direction is the mean hue, and sin(dh / 2) = u1 x u2 / |u1 + u2|.
void setMeanAndHue(Polar& p, const Chromatic& a1, const Chromatic& b1, const Chromatic& a2,
                   const Chromatic& b2) {
  const bool grey1 = p.chroma1.v < kNoChroma, grey2 = p.chroma2.v < kNoChroma;
  if (grey1 && grey2) {
    p.cosMean.v = 1.0;
    return;
  }
  if (grey1 || grey2) {  // dH = 0; the mean hue is that of the other colour
    p.cosMean = grey1 ? a2 / p.chroma2 : a1 / p.chroma1;
    p.sinMean = grey1 ? b2 / p.chroma2 : b1 / p.chroma1;
    return;
  }
  const Chromatic x1 = a1 / p.chroma1, y1 = b1 / p.chroma1;
  const Chromatic x2 = a2 / p.chroma2, y2 = b2 / p.chroma2;
  const Chromatic sumX = x1 + x2, sumY = y1 + y2, length = chromaOf(sumX, sumY);
  const Chromatic scale = 2.0 * sqrt(p.chroma1 * p.chroma2);
  if (length.v < 1e-9) {  // opposite hues: either side
    p.dH = scale;
    p.cosMean.v = -y1.v;
    p.sinMean.v = x1.v;
    return;
  }
  p.dH = scale * ((x1 * y2 - y1 * x2) / length);
  p.cosMean = sumX / length;
  p.sinMean = sumY / length;
}

Polar polarOf(const Chromatic& a1, const Chromatic& b1, const Chromatic& a2, const Chromatic& b2) {
  Polar p;
  p.chroma1 = chromaOf(a1, b1);
  p.chroma2 = chromaOf(a2, b2);
  p.dC = p.chroma2 - p.chroma1;
  setMeanAndHue(p, a1, b1, a2, b2);
  setTurn(p, a2 - a1, b2 - b1);
  return p;
}

// sqrt(C^7 / (C^7 + 25^7)), with the limit 1 where C^7 overflows.
Chromatic chromaWeight(const Chromatic& c) {
  const double cube = c.v * c.v * c.v, seventh = cube * cube * c.v;
  if (!(c.v > 0.0)) return {};
  if (std::isinf(seventh)) return {1.0, {}};
  const double weight = std::sqrt(seventh / (seventh + k25To7));
  return chain(c, weight, 3.5 * weight * k25To7 / (c.v * (seventh + k25To7)));
}

// T of the hue weight, from the cosine and sine of the mean hue.
Chromatic hueTerm(const Chromatic& c, const Chromatic& s) {
  constexpr double kCos30 = 0.8660254037844386, kSin30 = 0.5;
  constexpr double kCos6 = 0.9945218953682733, kSin6 = 0.10452846326765347;
  constexpr double kCos63 = 0.45399049973954675, kSin63 = 0.8910065241883679;
  const Chromatic c2 = c * c - s * s, s2 = 2.0 * (c * s);
  const Chromatic c3 = c2 * c - s2 * s, s3 = s2 * c + c2 * s;
  const Chromatic c4 = c2 * c2 - s2 * s2, s4 = 2.0 * (c2 * s2);
  return (-0.17 * kCos30) * c - (0.17 * kSin30) * s + 0.24 * c2 + (0.32 * kCos6) * c3 -
         (0.32 * kSin6) * s3 - (0.20 * kCos63) * c4 - (0.20 * kSin63) * s4 + 1.0;
}

// sin(2 dTheta), dTheta = 30 exp(-((h - 275) / 25)^2) degrees.
Chromatic rotation(const Chromatic& c, const Chromatic& s) {
  const double hue = std::atan2(s.v, c.v) / kDegree;
  const double x = ((hue < 0.0 ? hue + 360.0 : hue) - 275.0) / 25.0;
  if (std::fabs(x) > 6.0) return {};  // below 1e-14
  const double angle = 60.0 * kDegree * std::exp(-x * x);
  const double slope = std::cos(angle) * angle * (-2.0 * x / 25.0) / kDegree;  // per radian of hue
  Chromatic y{std::sin(angle), {}};
  for (std::size_t k = 0; k < 2; ++k) y.d[k] = slope * (c.v * s.d[k] - s.v * c.d[k]);
  return y;
}

/// The difference by L*, a*, b*.
struct LabDifference {
  Vector3 value{};
  Matrix3 slope{};

  void setLightness(double v, double byL) {
    value[0] = v;
    slope[0][0] = byL;
  }
  void setChromatic(const Polar& p, const Chromatic& c, const Chromatic& h) {
    const Chromatic first = p.cosTurn * c - p.sinTurn * h;
    const Chromatic second = p.sinTurn * c + p.cosTurn * h;
    value[1] = first.v;
    value[2] = second.v;
    for (std::size_t k = 0; k < 2; ++k) {
      slope[1][k + 1] = first.d[k];
      slope[2][k + 1] = second.d[k];
    }
  }
};

// CIE 116-1995, graphic-arts weights.
LabDifference cie94(const Vector3& reference, const Vector3& lab) {
  const Polar p = polarOf({reference[1], {}}, {reference[2], {}}, Chromatic::variable(lab[1], 0),
                          Chromatic::variable(lab[2], 1));
  LabDifference d;
  d.setLightness(lab[0] - reference[0], 1.0);
  d.setChromatic(p, (1.0 / (1.0 + 0.045 * p.chroma1.v)) * p.dC,
                 (1.0 / (1.0 + 0.015 * p.chroma1.v)) * p.dH);
  return d;
}

// ISO/CIE 11664-6. Its square l^2 + c^2 + h^2 + RT c h is that of the vector
// (l, c + RT h / 2, sqrt(1 - RT^2 / 4) h); |RT| stays below 1.74.
LabDifference ciede2000(const Vector3& reference, double referenceChroma, const Vector3& lab) {
  LabDifference d;
  const double dL = lab[0] - reference[0], off = 0.5 * (lab[0] + reference[0]) - 50.0;
  const double root = std::sqrt(20.0 + off * off), sL = 1.0 + 0.015 * off * off / root;
  const double sLSlope = 0.5 * 0.015 * off * (40.0 + off * off) / (root * root * root);
  d.setLightness(dL / sL, (1.0 - dL / sL * sLSlope) / sL);

  const Chromatic a = Chromatic::variable(lab[1], 0), b = Chromatic::variable(lab[2], 1);
  const Chromatic meanC = 0.5 * (chromaOf(a, b) + referenceChroma);
  const Chromatic stretch = -0.5 * chromaWeight(meanC) + 1.5;
  const Polar p = polarOf(reference[1] * stretch, {reference[2], {}}, a * stretch, b);
  const Chromatic mean = 0.5 * (p.chroma1 + p.chroma2);
  const Chromatic c = p.dC / (0.045 * mean + 1.0);
  const Chromatic h = p.dH / (0.015 * (mean * hueTerm(p.cosMean, p.sinMean)) + 1.0);
  const Chromatic halfRt = -1.0 * (chromaWeight(mean) * rotation(p.cosMean, p.sinMean));
  d.setChromatic(p, c + halfRt * h, sqrt(-1.0 * (halfRt * halfRt) + 1.0) * h);
  return d;
}

LabDifference cie76(const Vector3& reference, const Vector3& lab) {
  return {{lab[0] - reference[0], lab[1] - reference[1], lab[2] - reference[2]},
          {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}};
}

}  // namespace

PatchDifference::PatchDifference(FitDifference measure, const PatchTable& referenceLab,
                                 const Matrix3& rgbToXyz)
    : measure_(measure) {
  Vector3 white{};
  for (std::size_t c = 0; c < 3; ++c) {
    white[c] = 100.0 * (rgbToXyz[c][0] + rgbToXyz[c][1] + rgbToXyz[c][2]);
    for (std::size_t k = 0; k < 3; ++k) {
      rgbToXyz100_[c][k] = 100.0 * rgbToXyz[c][k];
      rgbToRelativeXyz_[c][k] = rgbToXyz100_[c][k] / white[c];
    }
  }
  if (measure == FitDifference::cam16Ucs) cam16_.emplace(white);
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    Reference& reference = reference_[i];
    reference.lab = referenceLab[i];
    reference.chroma = std::hypot(referenceLab[i][1], referenceLab[i][2]);
    if (cam16_) reference.ucs = cam16_->ucs(CIELab_to_XYZ(referenceLab[i], white));
  }
}

DifferenceVector PatchDifference::evaluate(std::size_t patch, const Vector3& linearRgb) const {
  const Reference& reference = reference_[patch];
  if (cam16_) return inCam16(reference, linearRgb);

  Vector3 f, slope;  // f(X/Xn), ... and its derivative
  const Vector3 relative = multiply(rgbToRelativeXyz_, linearRgb);
  for (std::size_t c = 0; c < 3; ++c) {
    f[c] = labF(relative[c]);
    slope[c] = relative[c] > kLabRootAboveT ? 1.0 / (3.0 * f[c] * f[c]) : kLabLinearSlope;
  }
  const Vector3 lab{116.0 * f[1] - 16.0, 500.0 * (f[0] - f[1]), 200.0 * (f[1] - f[2])};
  const LabDifference d = measure_ == FitDifference::cie76 ? cie76(reference.lab, lab)
                          : measure_ == FitDifference::cie94
                              ? cie94(reference.lab, lab)
                              : ciede2000(reference.lab, reference.chroma, lab);

  DifferenceVector out{d.value, {}};
  for (std::size_t k = 0; k < 3; ++k) {
    const double x = slope[0] * rgbToRelativeXyz_[0][k], y = slope[1] * rgbToRelativeXyz_[1][k],
                 z = slope[2] * rgbToRelativeXyz_[2][k];
    for (std::size_t i = 0; i < 3; ++i)
      out.slope[i][k] = d.slope[i][0] * 116.0 * y + d.slope[i][1] * 500.0 * (x - y) +
                        d.slope[i][2] * 200.0 * (y - z);
  }
  return out;
}

DifferenceVector PatchDifference::inCam16(const Reference& reference,
                                          const Vector3& linearRgb) const {
  std::array<Dual<3>, 3> xyz;
  const Vector3 value = multiply(rgbToXyz100_, linearRgb);
  for (std::size_t c = 0; c < 3; ++c) xyz[c] = {value[c], rgbToXyz100_[c]};
  const std::array<Dual<3>, 3> ucs = cam16_->ucs(xyz);
  DifferenceVector out;
  for (std::size_t i = 0; i < 3; ++i) {
    out.value[i] = ucs[i].v - reference.ucs[i];
    out.slope[i] = ucs[i].d;
  }
  return out;
}

}  // namespace greycard
