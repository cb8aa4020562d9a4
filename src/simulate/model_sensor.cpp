#include "model_sensor.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "greycard/names.h"
#include "spectral_tables.h"
#include "white_adaptation.h"

namespace greycard {
namespace {

struct Bells {
  Vector3 peakNm, sigmaNm;
};
constexpr Vector3 kPeaksNm{600.0, 540.0, 460.0};
constexpr Vector3 kEfficiency{0.75, 1.0, 0.80};
constexpr Bells kOrdinary{kPeaksNm, {35.0, 38.0, 28.0}};
constexpr Bells kNarrow{kPeaksNm, {18.0, 18.0, 18.0}};
constexpr Bells kBroad{kPeaksNm, {60.0, 60.0, 50.0}};

constexpr std::array<const char*, 4> kNames{"ordinary", "narrow", "broad", "colorimetric"};

CDoubleMatrix bells(const Bells& sensor, const CDoubleMatrix& gridNm) {
  CDoubleMatrix result(gridNm.rows(), 3);
  for (int i = 0; i < gridNm.rows(); ++i) {
    for (std::size_t c = 0; c < 3; ++c) {
      const double z = (gridNm[i][0] - sensor.peakNm[c]) / sensor.sigmaNm[c];
      result[i][c] = kEfficiency[c] * std::exp(-0.5 * z * z);
    }
  }
  return result;
}

CDoubleMatrix coneResponses(const CDoubleMatrix& gridNm) {
  CDoubleMatrix result = observerFunctions(gridNm);
  for (int i = 0; i < result.rows(); ++i) {
    Vector3 cones{};
    DeltaECWhiteAdapt::XYZ2BFD(cones, {result[i][0], result[i][1], result[i][2]});
    std::copy(cones.begin(), cones.end(), result[i]);
  }
  return result;
}

}  // namespace

std::optional<ModelSensor> modelSensorFromName(TextView name) {
  for (std::size_t i = 0; i < kNames.size(); ++i)
    if (equalIgnoringCase(kNames[i], name)) return static_cast<ModelSensor>(i);
  return std::nullopt;
}

const char* modelSensorName(ModelSensor sensor) {
  const auto index = static_cast<std::size_t>(sensor);  // a negative value becomes a large one
  return index < kNames.size() ? kNames[index] : "unknown";
}

std::span<const ModelSensor> modelSensors() {
  static constexpr std::array kSensors{ModelSensor::Ordinary, ModelSensor::Narrow,
                                       ModelSensor::Broad, ModelSensor::Colorimetric};
  return kSensors;
}

CDoubleMatrix sensitivities(ModelSensor sensor, const CDoubleMatrix& gridNm) {
  switch (sensor) {
    case ModelSensor::Narrow:
      return bells(kNarrow, gridNm);
    case ModelSensor::Broad:
      return bells(kBroad, gridNm);
    case ModelSensor::Colorimetric:
      return coneResponses(gridNm);
    default:
      return bells(kOrdinary, gridNm);
  }
}

}  // namespace greycard
