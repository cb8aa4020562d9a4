#pragma once

#include "double_matrix.h"
#include "greycard/chart_simulator.h"

namespace greycard {

/// Sensitivities of the sensor's R, G and B on a grid of wavelengths in nm: n x 3.
CDoubleMatrix sensitivities(ModelSensor sensor, const CDoubleMatrix& gridNm);

}  // namespace greycard
