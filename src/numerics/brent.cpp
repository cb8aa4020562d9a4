#include "brent.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numeric_error.h"
#include "text.h"

namespace greycard {
namespace {

constexpr double kGolden = 1.618033988749895;           // next step / this step while bracketing
constexpr double kGoldenSection = 0.38196601125010515;  // smaller part of a section, 2 - kGolden
constexpr double kMaxLengthening = 100.0;               // of one bracketing step by a parabola
constexpr double kApart = 0.1;  // two bracketing points are at least this share of a step apart

double checked(LineFunction f, double x) {
  const double value = f(x);
  if (std::isnan(value)) nrerror("the function is not a number at x = " + formatGeneral(x, 17));
  if (value == -std::numeric_limits<double>::infinity())
    nrerror("the function is minus infinity at x = " + formatGeneral(x, 17));
  return value;
}

// Vertex of the parabola through three points, relative to b; NaN or infinite when there is none.
double vertexFrom(const Bracket& p) {
  const double r = (p.b - p.a) * (p.fb - p.fc);
  const double q = (p.b - p.c) * (p.fb - p.fa);
  return -((p.b - p.c) * q - (p.b - p.a) * r) / (2.0 * (q - r));
}

// Where to look next while a, b, c still fall: the vertex when it lies clearly ahead of b and apart
// from c, else a golden step.
double nextBracketPoint(const Bracket& p) {
  const double ahead = p.c - p.b;
  const double vertex = vertexFrom(p) / ahead;  // in steps from b; c is at 1
  if (!(vertex > kApart && std::abs(vertex - 1.0) > kApart)) return p.c + kGolden * ahead;
  return p.b + std::min(vertex, 1.0 + kMaxLengthening) * ahead;
}

struct Sample {
  double x, value;
};

bool isBetween(double x, double a, double b) {
  return (a < x && x < b) || (b < x && x < a);
}

}  // namespace

Bracket bracketMinimum(LineFunction f, double x0, double f0, double step) {
  Bracket p{x0, x0 + step, 0.0, f0, checked(f, x0 + step), 0.0};
  if (p.fb > p.fa) {
    std::swap(p.a, p.b);
    std::swap(p.fa, p.fb);
  }
  p.c = p.b + kGolden * (p.b - p.a);
  p.fc = checked(f, p.c);
  for (int n = 0; p.fc < p.fb; ++n) {
    if (n == kMaxBracketSteps)
      nrerror("the function has no minimum to bracket: it still falls at x = " +
              formatGeneral(p.c));
    double x = nextBracketPoint(p);
    double value = checked(f, x);
    if (isBetween(x, p.b, p.c)) {
      if (value <= p.fc) return {p.b, x, p.c, p.fb, value, p.fc};
      if (value > p.fb) return {p.a, p.b, x, p.fa, p.fb, value};
      x = p.c + kGolden * (p.c - p.b);  // the parabola was no help
      value = checked(f, x);
    }
    p = {p.b, p.c, x, p.fb, p.fc, value};
  }
  return p;
}

LineMinimum brent(LineFunction f, const Bracket& bracket, const BrentTolerance& tolerance) {
  double lo = std::min(bracket.a, bracket.c), hi = std::max(bracket.a, bracket.c);
  // The lowest point, the second lowest and the one before that.
  Sample best{bracket.b, bracket.fb}, second{bracket.a, bracket.fa}, third{bracket.c, bracket.fc};
  if (third.value < second.value) std::swap(second, third);
  // The last step and the one before it: a parabola must at least halve the latter.
  double last = hi - lo, beforeLast = hi - lo;

  for (int n = 0; n < tolerance.maxIterations; ++n) {
    const double middle = 0.5 * (lo + hi);
    const double closest = tolerance.relative * std::abs(best.x) + tolerance.absolute;
    if (std::abs(best.x - middle) <= 2.0 * closest - 0.5 * (hi - lo))
      return {best.x, best.value, bracket.fb, n};

    const double step =
        vertexFrom({second.x, best.x, third.x, second.value, best.value, third.value});
    const double target = best.x + step;
    // Written so that a vertex that is not a number is turned down.
    if (std::abs(beforeLast) > closest && std::abs(step) < 0.5 * std::abs(beforeLast) &&
        target > lo && target < hi) {
      beforeLast = last;
      last = target - lo < 2.0 * closest || hi - target < 2.0 * closest
                 ? std::copysign(closest, middle - best.x)
                 : step;
    } else {
      beforeLast = best.x >= middle ? lo - best.x : hi - best.x;
      last = kGoldenSection * beforeLast;
    }
    const double x = best.x + (std::abs(last) >= closest ? last : std::copysign(closest, last));
    const Sample here{x, checked(f, x)};

    if (here.value <= best.value) {
      (here.x >= best.x ? lo : hi) = best.x;
      third = second;
      second = best;
      best = here;
    } else {
      (here.x < best.x ? lo : hi) = here.x;
      if (here.value <= second.value || second.x == best.x) {
        third = second;
        second = here;
      } else if (here.value <= third.value || third.x == best.x || third.x == second.x) {
        third = here;
      }
    }
  }
  nrerror("Too many iterations in brent");
}

}  // namespace greycard
