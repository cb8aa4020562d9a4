#include "greycard/colour_temperature.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "brent.h"
#include "greycard/types.h"
#include "spectral_tables.h"

namespace greycard {
namespace {

constexpr double kSecondRadiationConstant = 1.4388e7;  // nm K
// In mired, 1e6 / kelvin, in which the locus is walked at an even pace.
constexpr double kCoolest = 40.0, kWarmest = 1000.0, kStep = 5.0;
constexpr double kFarthest = 0.05;

// CIE 1960 u, v.
Point2 uv(const Vector3& xyz) {
  const double sum = xyz[0] + 15.0 * xyz[1] + 3.0 * xyz[2];
  return {4.0 * xyz[0] / sum, 6.0 * xyz[1] / sum};
}

Point2 planckianUv(double mired) {
  const SpectralTable& observer = kObserverTable;
  const auto columns = static_cast<std::size_t>(observer.columns);
  Vector3 xyz{};
  for (std::size_t i = 0; i < observer.wavelengthNm.size(); ++i) {
    const double nm = observer.wavelengthNm[i];
    const double power =
        1.0 / (nm * nm * nm * nm * nm) / std::expm1(kSecondRadiationConstant * mired / (1e6 * nm));
    for (std::size_t c = 0; c < 3; ++c) xyz[c] += power * observer.values[i * columns + c];
  }
  return uv(xyz);
}

}  // namespace

std::optional<ColourTemperature> correlatedColourTemperature(const Vector3& xyz) {
  const Point2 light = uv(xyz);
  // Written so that NaN is refused too: every comparison with it is false.
  if (!(xyz[0] + xyz[1] + xyz[2] > 0.0) || !std::isfinite(light.x + light.y)) return std::nullopt;
  const auto squaredDistance = [&](double mired) {
    const Point2 locus = planckianUv(mired);
    const double du = light.x - locus.x, dv = light.y - locus.y;
    return du * du + dv * dv;
  };
  double nearest = kCoolest, least = squaredDistance(kCoolest);
  double mired = kCoolest;
  while ((mired += kStep) <= kWarmest)
    if (const double here = squaredDistance(mired); here < least) {
      nearest = mired;
      least = here;
    }
  if (nearest == kCoolest || nearest == kWarmest) return std::nullopt;
  const double low = nearest - kStep, high = nearest + kStep;
  const LineMinimum minimum = brent(
      squaredDistance, {low, nearest, high, squaredDistance(low), least, squaredDistance(high)});
  const double distance = std::sqrt(minimum.value);
  if (!(distance <= kFarthest)) return std::nullopt;
  // The locus rises to the right and green lies above it.
  const Point2 locus = planckianUv(minimum.x);
  return ColourTemperature{1e6 / minimum.x, std::copysign(distance, light.y - locus.y)};
}

ColourTemperature lightTemperature(Illum light) {
  const CDoubleMatrix grid{380.0, 5.0, 780.0};
  const CDoubleMatrix power = illuminantSpectrum(light, grid), observer = observerFunctions(grid);
  Vector3 xyz{};
  for (std::int32_t i = 0; i < grid.rows(); ++i)
    for (std::int32_t c = 0; c < 3; ++c)
      xyz[static_cast<std::size_t>(c)] += power[i][0] * observer[i][c];
  return correlatedColourTemperature(xyz).value();
}

}  // namespace greycard
