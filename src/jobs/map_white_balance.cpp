#include "greycard/jobs/map_white_balance.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/number_text.h"

namespace greycard {
namespace {

// Of the largest target coordinate: rounding stays far below unless the source points are almost
// on one line.
constexpr double kLargestSoundResidual = 1e-6;

}  // namespace

double WhiteBalanceMapping::largestResidual() const {
  double largest = 0.0;
  for (std::size_t k = 0; k < from.size(); ++k) {
    const WhiteBalancePoint mapped = transform(from[k]);
    for (const double difference : {mapped.rg - to[k].rg, mapped.bg - to[k].bg})
      largest = std::isnan(difference) ? difference : std::max(largest, std::abs(difference));
  }
  return largest;
}

bool WhiteBalanceMapping::meetsTargets() const {
  double scale = 0.0;
  for (const auto& [rg, bg] : to) scale = std::max({scale, std::abs(rg), std::abs(bg)});
  return largestResidual() <= kLargestSoundResidual * scale;
}

WhiteBalanceMapping mapWhiteBalance(const WhiteBalanceOptions& options) {
  WhiteBalanceMapping mapping{options.from, options.to,
                              AWBUtils().GetAffineTransform(options.from, options.to),
                              options.points};
  if (!mapping.spansPlane())
    throw JobError(
        "the three source points do not span a plane, so they leave the mapping open; choose three "
        "that form a triangle");
  if (!mapping.meetsTargets())
    throw JobError(
        "the references are not mapped onto their targets, for the source points are almost on one "
        "line or the figures are too large; choose three points that form a wider triangle");
  return mapping;
}

WhiteBalancePoint whiteBalancePoint(std::string_view text) {
  const auto numbers = finiteNumbers(text);
  if (numbers.size() != 2)
    throw std::invalid_argument("a point is two numbers RG,BG, and here are " +
                                std::to_string(numbers.size()));
  return {numbers[0], numbers[1]};
}

std::vector<WhiteBalancePoint> readWhiteBalancePoints(const std::filesystem::path& file) {
  const std::string text = readWholeFile(file);
  std::vector<WhiteBalancePoint> points;
  std::size_t number = 0;
  for (std::size_t at = 0, end = 0; at < text.size(); at = end + 1) {
    end = std::min(text.find('\n', at), text.size());
    const std::string_view line = std::string_view(text).substr(at, end - at);
    ++number;
    const std::size_t first = line.find_first_not_of(" \t\r");
    if (first == std::string_view::npos || line[first] == '#') continue;
    try {
      points.push_back(whiteBalancePoint(line));
    } catch (const std::invalid_argument& error) {
      throw JobError("line " + std::to_string(number) + " of " + quoted(file) + ": " +
                     error.what());
    }
  }
  if (points.empty())
    throw JobError(quoted(file) + " holds no points; each of its lines should be RG,BG");
  return points;
}

}  // namespace greycard
