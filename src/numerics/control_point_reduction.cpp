#include "control_point_reduction.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "channels.h"

namespace greycard {
namespace {

constexpr std::size_t kKeptWhole = 5;  // a set of so few points is left alone
constexpr int kPasses = 7;
constexpr std::int64_t kTolerance = 4;  // output units

using Samples = std::span<const std::int32_t>;
using Removals = std::bitset<Interpolator::kCapacity>;

// Index k + 1 may go where the first differences around it are nearly equal.
Removals straightPlaces(Samples reference) {
  Removals removed;
  for (std::size_t k = 0; k + 2 < reference.size(); ++k) {
    const auto at = [&](std::size_t i) { return static_cast<std::int64_t>(reference[i]); };
    const std::int64_t bend = (at(k + 1) - at(k)) - (at(k + 2) - at(k + 1));
    removed[k + 1] = std::abs(bend) < kTolerance;
  }
  return removed;
}

// The first sample where the two differ by more than the tolerance, or the number of samples.
std::size_t firstFailure(Samples reference, Samples trial) {
  const auto near = [](std::int64_t a, std::int64_t b) { return std::abs(a - b) <= kTolerance; };
  return static_cast<std::size_t>(
      std::mismatch(reference.begin(), reference.end(), trial.begin(), near).first -
      reference.begin());
}

void traceFailure(std::size_t k, std::int32_t reference) {
  if (!debugLogHasListener()) return;
  writeDebug(0, "DebugPrint",
             "::" + std::to_string(k * 8) + "," + std::to_string(reference) + "\n");
}

// Work copies of the points; what a pass does not write is left over from the one before.
struct WorkPoints {
  std::array<double, Interpolator::kCapacity> x, y;

  // Gathers the points that stay to the front and returns their count. When the count falls to two
  // the gathering stops early and the points counted may lie in the left-over tail (deliberate).
  std::size_t gather(std::span<const double> pinx, std::span<const double> piny,
                     std::size_t samples, const Removals& removed) {
    std::size_t count = pinx.size();
    for (std::size_t i = 0, j = 0; i < samples && count > 2; ++i) {
      if (removed[i]) {
        --count;
      } else {
        x[j] = pinx[i];
        y[j] = piny[i];
        ++j;
      }
    }
    return count;
  }
};

}  // namespace

void findMinimumControlPoints(Interpolator& interpolator, int ninterp, std::span<const double> pinx,
                              std::span<const double> piny, std::span<double> poutx,
                              std::span<double> pouty, int& nout) {
  const std::size_t nin = pinx.size();
  if (nin <= kKeptWhole) return;
  if (nin > Interpolator::kCapacity || piny.size() != nin || poutx.size() < nin ||
      pouty.size() < nin)
    throw std::invalid_argument("control points: at most 512, each with an x and a y, in and out");
  if (ninterp < 0 || static_cast<std::size_t>(ninterp) > nin)
    throw std::invalid_argument("control points: " + std::to_string(ninterp) +
                                " samples asked of " + std::to_string(nin) +
                                " points; at most one each");
  const auto samples = static_cast<std::size_t>(ninterp);

  WorkPoints work;
  std::copy(pinx.begin(), pinx.end(), work.x.begin());
  std::copy(piny.begin(), piny.end(), work.y.begin());
  std::array<std::int32_t, Interpolator::kCapacity> referenceBuffer, trialBuffer;
  const auto reference = std::span(referenceBuffer).first(samples);
  const auto trial = std::span(trialBuffer).first(samples);
  interpolator.Interpolate(pinx, piny, reference);

  Removals removed = straightPlaces(reference);
  std::size_t count = nin;
  for (int pass = 0; pass < kPasses; ++pass) {
    count = work.gather(pinx, piny, samples, removed);
    interpolator.Interpolate(std::span(work.x).first(count), std::span(work.y).first(count), trial);
    const std::size_t k = firstFailure(reference, trial);
    if (k == samples) break;
    traceFailure(k, reference[k]);
    removed[k] = false;  // a sample's index taken as a point's index (deliberate)
  }
  nout = static_cast<int>(count);
  for (std::size_t i = 0; i < count; ++i) {
    poutx[i] = std::nearbyint(work.x[i]);
    pouty[i] = std::nearbyint(work.y[i]);
  }
}

}  // namespace greycard
