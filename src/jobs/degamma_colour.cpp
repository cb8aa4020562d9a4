#include "greycard/jobs/degamma_colour.h"

#include <stdexcept>

#include "greycard/de_gamma.h"
#include "greycard/errors.h"
#include "greycard/number_text.h"

namespace greycard {
namespace {

constexpr std::size_t kCurveEntries = 1024;

// Every fourth entry, in 10 bits: what a pipeline of 8-bit colours works with.
std::vector<double> pipelineTable(std::span<const std::int32_t> table) {
  std::vector<double> entries;
  for (std::size_t i = 0; i < table.size(); i += 4) entries.push_back(table[i] / 16.0);
  return entries;
}

}  // namespace

DeGammaResult degammaColour(const GammaCurve& curve, const Vector3& colour) {
  DeGammaResult result;
  result.name = curve.Name();
  result.colour = colour;
  for (std::size_t c = 0; c < colour.size(); ++c) {
    if (!(colour[c] >= 0.0 && colour[c] <= 255.0))
      throw std::invalid_argument("a level of the colour lies in 0 to 255, not " +
                                  exact(colour[c]));
    const auto table = curveTable(curve, static_cast<CurveChannel>(c + 1));
    if (table.size() != kCurveEntries)
      throw JobError("the curve " + curve.Name() + " has not 1024 entries in each table");
    result.tables[c] = pipelineTable(table);
    Vector3 positions{};
    DeGamma().runDeGamma(result.tables[c], colour, positions);
    result.positions[c] = positions[c];
  }
  return result;
}

}  // namespace greycard
