// Any text may be refused, with an exception that says so; what is read as one of the library's
// values is written as a text that reads back to the same text. The first byte chooses the value.
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

#include "greycard/present/best_fit.h"
#include "greycard/present/chart.h"
#include "greycard/present/fitting.h"
#include "greycard/present/gamma.h"
#include "greycard/present/lut2d.h"
#include "greycard/present/noise.h"
#include "greycard/present/simulate.h"

namespace {

using namespace greycard;
using Try = void (*)(std::string_view text);

// Regions may lie anywhere.
void draw(const ChartSearch& search) {
  const Picture picture(24, 16, 3, 8);
  present::annotateRegions(picture, search.chart.regions);
  present::annotatePatches(picture, search.chart.patches);
  if (search.chart.detection) present::annotateDetection(picture, *search.chart.detection);
}

template <typename Value>
void readAndWrite(std::string_view text) {
  Value value;
  try {
    present::fromJson(text, value);
  } catch (const std::invalid_argument&) {
    return;
  }
  const std::string written = present::toJson(value);
  Value again;
  present::fromJson(written, again);
  if (present::toJson(again) != written) std::abort();
  if constexpr (std::is_same_v<Value, ChartSearch>) draw(value);
}

constexpr Try kTries[] = {readAndWrite<ChartSearch>,        readAndWrite<ChartFitOptions>,
                          readAndWrite<ChartFit>,           readAndWrite<ChartEvaluation>,
                          readAndWrite<ExposureJob>,        readAndWrite<ExposureFit>,
                          readAndWrite<LumaMatch>,          readAndWrite<WhiteBalanceMapping>,
                          readAndWrite<SkinCalibration>,    readAndWrite<CurveTables>,
                          readAndWrite<CurveImportReport>,  readAndWrite<CurveLut>,
                          readAndWrite<StandardCurve>,      readAndWrite<Lut2DConfig>,
                          readAndWrite<Lut2dDragOptions>,   readAndWrite<Lut2dSummary>,
                          readAndWrite<SigmaEstimate>,      readAndWrite<SimulatedChart>,
                          readAndWrite<SimulationSettings>, readAndWrite<SimulatedFlatField>,
                          readAndWrite<BestFitOptions>,     readAndWrite<MatrixFitResult>,
                          readAndWrite<BestChartFit>};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kLongest = 64 * 1024;
  if (size == 0 || size > kLongest) return 0;
  kTries[data[0] % std::size(kTries)]({reinterpret_cast<const char*>(data) + 1, size - 1});
  return 0;
}
