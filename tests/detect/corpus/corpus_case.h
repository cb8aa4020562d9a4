#pragma once

// A picture whose chart, or lack of one, is known.

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "greycard/picture.h"
#include "greycard/types.h"

namespace greycard {

using Centres = std::array<Point2, kPatchCount>;

struct CorpusCase {
  std::string name;   ///< of the picture: a number, or a photograph
  std::string group;  ///< what was done to it
  Picture picture;
  std::vector<Centres> charts;  ///< every whole chart in it; none where nothing may be found
  double pitch = 0.0;           ///< mean distance of neighbouring centres of the first chart
};

/// Largest distance of a place from the nearest chart's own place, in pitches.
double worstError(const CorpusCase& wanted, const Centres& found);
/// Mean distance, likewise.
double meanError(const CorpusCase& wanted, const Centres& found);

double pitchOf(const Centres& centres);

/// Numbers that are the same with every standard library.
class Dice {
 public:
  explicit Dice(std::uint32_t seed) : engine_(seed) {}
  double between(double low, double high) {
    return low + (high - low) * (static_cast<double>(engine_()) / 4294967296.0);
  }
  int below(int count) {
    return static_cast<int>(engine_() % static_cast<std::uint_fast32_t>(count));
  }
  bool chance(double share) { return between(0.0, 1.0) < share; }

 private:
  std::mt19937 engine_;
};

/// Rendered charts in known poses: tilt and yaw up to 60 degrees together, any turn, patches from 8
/// pixels of pitch, blur below 0.12 pitch, noise, distortion of up to +-0.2, clutter and other
/// coloured grids round them, uneven light.
inline constexpr int kRenderedCount = 220;
CorpusCase renderedCase(int number);

/// Pictures without a whole chart that need no photograph.
inline constexpr int kChartlessCount = 160;
CorpusCase chartlessCase(int number);

/// A photograph with its truth, changed; variant 0 is the photograph itself.
inline constexpr int kVariantCount = 15;
CorpusCase photoVariant(const CorpusCase& photo, int variant);

/// Parts of the photograph beside its charts, and its charts cut, covered and mirrored.
inline constexpr int kPhotoChartlessCount = 8;
CorpusCase photoWithoutChart(const CorpusCase& photo, int number);

/// The photographs of the folder that GREYCARD_PHOTOS names, by name; none without it.
std::vector<CorpusCase> corpusPhotos();

}  // namespace greycard
