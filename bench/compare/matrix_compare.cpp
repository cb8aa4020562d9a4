// MatrixFit beside OpenCV's colour-correction model on the same samples: the tables of
// docs/matrix_fit.md. Usage: matrix_compare [simulated photographs] [seed] [part of the rows'
// names]; real photographs are those of the folder that GREYCARD_PHOTOS names. Errors are CIEDE2000
// over all patches that don't clip, of fits to all of them and of six-fold fits that held the patch
// out.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <numeric>
#include <opencv2/mcc/ccm.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "colour_space.h"
#include "greycard/delta_e.h"
#include "greycard/matrix_fit.h"
#include "rendered_charts.h"
#include "srgb_transfer.h"

namespace {

using namespace greycard;
using compare::ComparedChart;
using Mask = std::array<bool, kPatchCount>;

constexpr std::size_t kFolds = 6;

constexpr std::ptrdiff_t kFirstGrey = 18, kLeastGreys = 3;  // for a tone curve

/// L*a*b* of all patches, by a fit to those that are in the mask.
using Fitter = std::function<PatchTable(const ComparedChart&, const Mask&)>;

Vector3 labOfLinear(const Vector3& rgb) {
  constexpr Matrix3 kToXyz{{{41.24, 35.76, 18.05}, {21.26, 71.52, 7.22}, {1.93, 11.92, 95.05}}};
  return XYZ_to_CIELab(multiply(kToXyz, rgb), {95.05, 100.0, 108.9});
}

// Where too few greys are left for a tone curve, the linear fit counts.
Fitter ours(const FitOptions& wanted) {
  FitOptions options = wanted;
  options.heldOut = options.uncertainty = options.compareStated = false;
  FitOptions linear = options;
  linear.toneCurve = FitToneCurve::none;
  return [options, linear](const ComparedChart& chart, const Mask& used) {
    FitPhotograph photograph = chart.photograph;
    for (std::size_t i = 0; i < kPatchCount; ++i) photograph.clipped[i] = !used[i];
    const std::ptrdiff_t greys = std::count(used.begin() + kFirstGrey, used.end(), true);
    const FitOptions& possible = greys < kLeastGreys ? linear : options;
    return MatrixFit(possible).fit({{photograph}, chart.referenceLab})->photographs[0].lab;
  };
}

struct PeerSetting {
  const char* name;
  cv::ccm::DISTANCE_TYPE distance;
  cv::ccm::LINEAR_TYPE linear = cv::ccm::LINEARIZATION_IDENTITY;
  cv::ccm::INITIAL_METHOD_TYPE start = cv::ccm::INITIAL_METHOD_LEAST_SQUARE;
};

// The linear samples as they are, or encoded when the peer is to find the curve.
PatchTable fitPeer(const PeerSetting& setting, const ComparedChart& chart, const Mask& used) {
  const bool linear = setting.linear == cv::ccm::LINEARIZATION_IDENTITY;
  cv::Mat samples, references, all(kPatchCount, 1, CV_64FC3);
  for (int i = 0; i < kPatchCount; ++i) {
    const auto row = static_cast<std::size_t>(i);
    cv::Vec3d sample;
    for (int c = 0; c < 3; ++c) {
      const double value = chart.photograph.rgb[row][static_cast<std::size_t>(c)];
      sample[c] = linear ? value : sRGBEncode(value);
    }
    all.at<cv::Vec3d>(i, 0) = sample;
    if (!used[row]) continue;
    const Vector3& lab = chart.referenceLab[row];
    samples.push_back(cv::Mat(1, 1, CV_64FC3, cv::Scalar(sample[0], sample[1], sample[2])));
    references.push_back(cv::Mat(1, 1, CV_64FC3, cv::Scalar(lab[0], lab[1], lab[2])));
  }
  cv::ccm::ColorCorrectionModel model(samples, references, cv::ccm::COLOR_SPACE_Lab_D65_2);
  model.setColorSpace(cv::ccm::COLOR_SPACE_sRGB);
  model.setCCM_TYPE(cv::ccm::CCM_3x3);
  model.setDistance(setting.distance);
  model.setLinear(setting.linear);
  model.setInitialMethod(setting.start);
  model.setSaturatedThreshold(-1.0, 2.0);  // what clips has been left out
  model.run();
  const cv::Mat result = model.infer(all, true);  // linear RGB
  PatchTable lab;
  for (int i = 0; i < kPatchCount; ++i) {
    const cv::Vec3d rgb = result.at<cv::Vec3d>(i, 0);
    lab[static_cast<std::size_t>(i)] = labOfLinear({rgb[0], rgb[1], rgb[2]});
  }
  return lab;
}

// The same holds for the curve that the peer is to find.
Fitter peer(const PeerSetting& setting) {
  return [setting](const ComparedChart& chart, const Mask& used) {
    try {
      return fitPeer(setting, chart, used);
    } catch (const cv::Exception&) {
      if (setting.linear == cv::ccm::LINEARIZATION_IDENTITY) throw;
      PeerSetting linear = setting;
      linear.linear = cv::ccm::LINEARIZATION_IDENTITY;
      return fitPeer(linear, chart, used);
    }
  };
}

double mean(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}
double percentile95(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const double at = 0.95 * static_cast<double>(values.size() - 1);
  const auto i = static_cast<std::size_t>(at);
  if (i + 1 == values.size()) return values.back();
  return values[i] + (at - static_cast<double>(i)) * (values[i + 1] - values[i]);
}

/// Mean and 95th percentile, all patches and held out; and the time of a fit.
struct Row {
  std::array<double, 4> errors{};
  double milliseconds = 0.0;
};

Row measure(const std::vector<ComparedChart>& charts, const Fitter& fit) {
  std::vector<double> inSample, heldOut;
  double seconds = 0.0;
  const auto add = [](std::vector<double>& errors, const ComparedChart& chart,
                      const PatchTable& lab, const Mask& which) {
    for (std::size_t i = 0; i < kPatchCount; ++i)
      if (which[i]) errors.push_back(deltaE2000(chart.referenceLab[i], lab[i]));
  };
  for (const ComparedChart& chart : charts) {
    Mask all;
    for (std::size_t i = 0; i < kPatchCount; ++i) all[i] = !chart.photograph.clipped[i];
    const std::clock_t begin = std::clock();  // of the processor, whatever else it does
    const PatchTable lab = fit(chart, all);
    seconds += static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    add(inSample, chart, lab, all);
    for (std::size_t fold = 0; fold < kFolds; ++fold) {
      Mask kept = all, out{};
      for (std::size_t i = 0; i < kPatchCount; ++i)
        if (all[i] && (i % kFolds + i / kFolds) % kFolds == fold) {
          kept[i] = false;
          out[i] = true;
        }
      add(heldOut, chart, fit(chart, kept), out);
    }
  }
  return {{mean(inSample), percentile95(inSample), mean(heldOut), percentile95(heldOut)},
          1e3 * seconds / static_cast<double>(charts.size())};
}

void print(const char* name, const Row& row, const Row* against) {
  std::printf("| %s |", name);
  for (std::size_t k = 0; k < 4; ++k) {
    std::printf(" %.2f", row.errors[k]);
    if (against) std::printf(" (%+.1f %%)", 100.0 * (row.errors[k] / against->errors[k] - 1.0));
    std::printf(" |");
  }
  std::printf(" %.2f |\n", row.milliseconds);
  std::fflush(stdout);
}

struct OurSetting {
  const char* name;
  FitOptions options;
};

std::vector<OurSetting> ourSettings() {
  std::vector<OurSetting> settings;
  const auto add = [&settings](const char* name, auto change) {
    settings.push_back({name, {}});
    change(settings.back().options);
  };
  const auto six = [](double norm) {
    return [norm](FitOptions& options) {
      options.entries = FitEntries::six;
      options.exposure = FitExposure::free;
      options.norm = norm;
    };
  };
  const auto curve = [](FitToneCurve family, double norm = FitOptions::kRootMeanSquare) {
    return [family, norm](FitOptions& options) {
      options.toneCurve = family;
      options.norm = norm;
    };
  };
  add("nine entries", [](FitOptions&) {});
  add("nine entries, norm 1 (mean)", curve(FitToneCurve::none, FitOptions::kMean));
  add("nine entries, norm 3", curve(FitToneCurve::none, 3.0));
  add("nine entries, norm 8 (soft maximum)", curve(FitToneCurve::none, FitOptions::kSoftMaximum));
  add("nine entries, CAM16-UCS",
      [](FitOptions& options) { options.difference = FitDifference::cam16Ucs; });
  add("six entries, free exposure", six(FitOptions::kRootMeanSquare));
  add("six entries, free exposure, norm 2.1", six(2.1));
  add("nine entries, curve: power", curve(FitToneCurve::power));
  add("nine entries, curve: power, norm 3", curve(FitToneCurve::power, 3.0));
  add("nine entries, curve: power with offset", curve(FitToneCurve::powerOffset));
  add("nine entries, curve: power with offset, norm 3", curve(FitToneCurve::powerOffset, 3.0));
  add("nine entries, curve: black and white point", curve(FitToneCurve::blackWhite));
  add("nine entries, curve: monotone", curve(FitToneCurve::monotone));
  add("nine entries, curve: monotone, norm 3", curve(FitToneCurve::monotone, 3.0));
  add("nine entries, curve: power, plane of light", [](FitOptions& options) {
    options.toneCurve = FitToneCurve::power;
    options.light = FitLight::plane;
  });
  return settings;
}

// Only the rows with `part` in their names.
void table(const char* title, const std::vector<ComparedChart>& charts, std::string_view part) {
  const auto wanted = [part](std::string_view name) { return name.find(part) != name.npos; };
  std::printf("\n%s: %zu photographs\n\n", title, charts.size());
  std::puts("| fit | mean | 95 % | held out: mean | 95 % | ms |\n|---|---|---|---|---|---|");
  using namespace cv::ccm;
  const PeerSetting settings[] = {
      {"OpenCV, CIEDE2000", DISTANCE_CIE2000},
      {"OpenCV, CIEDE2000 from white balance", DISTANCE_CIE2000, LINEARIZATION_IDENTITY,
       INITIAL_METHOD_WHITE_BALANCE},
      {"OpenCV, CIE94", DISTANCE_CIE94_GRAPHIC_ARTS},
      {"OpenCV, CIE76", DISTANCE_CIE76},
      {"OpenCV, CMC 2:1", DISTANCE_CMC_2TO1},
      {"OpenCV, linear RGB", DISTANCE_RGBL},
      {"OpenCV, CIEDE2000, its polynomial through the greys", DISTANCE_CIE2000,
       LINEARIZATION_GRAYPOLYFIT},
      {"OpenCV, CIEDE2000, its logarithmic polynomial through the greys", DISTANCE_CIE2000,
       LINEARIZATION_GRAYLOGPOLYFIT},
      {"OpenCV, CIEDE2000, its polynomial through all patches", DISTANCE_CIE2000,
       LINEARIZATION_COLORPOLYFIT},
  };
  Row best;
  for (const PeerSetting& setting : settings) {
    if (!wanted(setting.name)) continue;
    const Row row = measure(charts, peer(setting));
    print(setting.name, row, nullptr);
    if (setting.linear == LINEARIZATION_IDENTITY &&
        (best.milliseconds == 0.0 ||
         row.errors[0] + row.errors[2] < best.errors[0] + best.errors[2]))
      best = row;
  }
  for (const auto& [name, options] : ourSettings())
    if (wanted(name))
      print(name, measure(charts, ours(options)), best.milliseconds > 0.0 ? &best : nullptr);
}

}  // namespace

int main(int argc, char** argv) {
  const int count = argc > 1 ? std::max(1, std::atoi(argv[1])) : 216;
  const std::uint64_t seed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
  const char* part = argc > 3 ? argv[3] : "";
  if (const char* folder = std::getenv("GREYCARD_PHOTOS"); folder && *folder)
    table("Real photographs", compare::photographs(folder), part);
  table("Simulated photographs", compare::simulated(count, seed), part);
  return 0;
}
