#pragma once

// What the tests of results share: texts settled enough for a file beside them.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>

#include "golden.h"
#include "greycard/diagnostics.h"
#include "greycard/jobs/simulate.h"
#include "greycard/present/best_fit.h"
#include "greycard/present/chart.h"
#include "greycard/present/comparison.h"
#include "greycard/present/fitting.h"
#include "greycard/present/gamma.h"
#include "greycard/present/lut2d.h"
#include "greycard/present/measured_chart.h"
#include "greycard/present/noise.h"
#include "greycard/present/photograph.h"
#include "greycard/present/profile.h"
#include "greycard/present/provenance.h"
#include "greycard/present/simulate.h"
#include "present/round_trip.h"

namespace greycard::present {

/// Numbers of more than nine digits shortened to those that every build agrees on, and the pictures
/// inside a page, which are an encoder's, left out.
inline std::string settled(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size();) {
    if (text.compare(i, 11, "data:image/") == 0) {
      i = text.find('"', i);
      continue;
    }
    const std::size_t end = std::min(text.find_first_not_of("0123456789.e-", i), text.size());
    if (end - i < 12 || text.find('.', i) >= end) {
      out.append(text, i, std::max<std::size_t>(end - i, 1));
      i += std::max<std::size_t>(end - i, 1);
      continue;
    }
    std::ostringstream number;
    number.precision(9);
    number << std::stod(text.substr(i, end - i));
    out += number.str();
    i = end;
  }
  return out;
}

inline void expectResult(const std::string& name, const std::string& text) {
  SCOPED_TRACE(name);
  expectGolden("results/golden/" + name, settled(text) + "\n");
}

inline std::string trace(const Picture& picture) {
  return std::to_string(picture.width) + " x " + std::to_string(picture.height) + ", " +
         std::to_string(picture.bits) + " bits: " + std::to_string(traceOf(picture.samples));
}

/// The value's JSON, which is read back to the same on the way.
template <typename Value>
std::string json(const Value& value) {
  return toJson(roundTrip(value));
}

class GoldenResults : public testing::Test {
 protected:
  GoldenResults() : folder(testing::TempDir() + "golden_results_" + std::to_string(::getpid())) {
    std::filesystem::create_directories(folder);
    setErrorChannel([](std::string_view) {});
  }
  ~GoldenResults() override {
    setErrorChannel({});
    std::filesystem::current_path(std::filesystem::temp_directory_path());
    std::filesystem::remove_all(folder);
  }
  std::filesystem::path folder;
};

inline SimulatedChart photograph(Illum light) {
  SimulationSettings settings;
  settings.light = light;
  settings.width = 480;
  settings.height = 360;
  settings.bits = 16;
  settings.encoding = SampleEncoding::linear;
  settings.blackLevel = 1000;
  settings.rotationDeg = 4;
  settings.whiteShare = 0.85;
  settings.shotNoise = 0.02;
  return *simulateChart(settings, "chart.tif");
}

}  // namespace greycard::present
