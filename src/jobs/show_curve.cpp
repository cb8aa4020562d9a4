#include "greycard/jobs/show_curve.h"

#include <stdexcept>

namespace greycard {
namespace {

constexpr int kFewestSamples = 2, kMostSamples = 256;

ColorChannel colorChannel(CurveChannel channel) {
  if (channel == CurveChannel::Green) return ColorChannel::Green;
  return channel == CurveChannel::Blue ? ColorChannel::Blue : ColorChannel::All;
}

// None of a table with fewer entries than that.
ControlPointList samples(const GammaCurve& curve, const ShowCurveOptions& options) {
  std::vector<std::int32_t> x(static_cast<std::size_t>(options.points)), y(x.size());
  ControlPointList points;
  if (!curve.GetDataDownsampled(colorChannel(options.channel), x, y)) return points;
  for (std::size_t i = 0; i < x.size(); ++i) points.push_back({x[i], y[i]});
  return points;
}

}  // namespace

GammaCatalogueListing listCurves(const GammaCurveModel& catalogue) {
  GammaCatalogueListing listing;
  for (const std::string& name : catalogue.GetNames()) {
    const GammaCurvePtr curve = catalogue.GetGammaCurveByName(name);
    listing.curves.push_back(
        {name, curveTable(*curve).size(), curve->IsUnified(), curve->IsImmutable()});
  }
  return listing;
}

ShownCurve showCurve(const GammaCurve& curve, const ShowCurveOptions& options) {
  if (options.points < kFewestSamples || options.points > kMostSamples)
    throw std::invalid_argument("a curve is shown with 2 to 256 samples, not " +
                                std::to_string(options.points));
  const auto table = wantedTable(curve, options.channel);
  const auto own = curvePoints(curve, options.channel);
  ShownCurve shown;
  shown.name = curve.Name();
  shown.channel = options.channel;
  shown.unified = curve.IsUnified();
  shown.immutable = curve.IsImmutable();
  shown.table.assign(table.begin(), table.end());
  shown.pointsAreSamples = own.empty();
  shown.points = own.empty() ? samples(curve, options) : ControlPointList(own.begin(), own.end());
  return shown;
}

}  // namespace greycard
