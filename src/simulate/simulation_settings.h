#pragma once

#include "greycard/chart_simulator.h"

namespace greycard {

/// \throws std::invalid_argument with one sentence about the first setting that is out of range
void checkSettings(const SimulationSettings& settings);

/// What the picture's samples mean, with a white level of 0 replaced by what the bits hold.
SampleLevels samplesOf(const SimulationSettings& settings);

}  // namespace greycard
