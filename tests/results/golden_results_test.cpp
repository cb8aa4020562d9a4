// What the jobs give, as the JSON, tables and plots that are written of it. Compiled into the tests
// of the jobs and of what presents them: a fault of either shows in the texts beside this file.

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "golden_results.h"
#include "greycard/chart_regions.h"
#include "greycard/files.h"
#include "greycard/number_text.h"

namespace greycard::present {
namespace {

ChartFitOptions otherOptions() {
  ChartFitOptions options;
  options.locate.samples.blackLevel = 1000;
  options.light = illum_A;
  options.formula = FitFormula::CIE76;
  options.gamma = "VOutdoor";
  options.noiseRate = 0.1;
  options.targetSaturation = {1.0, 1.1, 0.9, 1.0};
  options.targetHue = {2.0, 0.0, -3.0};
  options.whitePatches = {19, 22};
  return options;
}

TEST_F(GoldenResults, OfCharts) {
  const SimulatedChart a = photograph(illum_A);
  expectResult("simulated.json", json(a));
  expectResult("search.json", json(searchChart(a.picture, {}, "a.tif")));
  LocateOptions stated;
  stated.method = SearchMethods::Stated;
  writeRegions(folder / "regions.txt", locateChart(a.picture, stated).regions);
  ChartFitOptions options = otherOptions();
  options.locate.regions = folder / "regions.txt";
  const ChartFit fit = *fitChart(a.picture, options, "a.tif");
  expectResult("fit.json", json(fit));
  ChartFitOptions lit = options;
  lit.exposure = FitExposure::number;
  std::string warnings;
  for (const double gain : {1.0, 1.2, 1.6}) {
    lit.exposureGain = gain;
    const ChartFit bright = *fitChart(a.picture, lit, "a.tif");
    for (const std::string& warning : bright.warnings)
      warnings += exact(gain) + ": " + warning + "\n";
  }
  expectResult("warnings.txt", warnings);
  expectResult("corrected.txt", trace(correctedPhotograph(a.picture, fit, options.locate.samples)));
  // Regions in the wrong order are doubted in several ways, unless they are forced.
  LocateOptions wrong = options.locate;
  PatchRegions turned = fit.chart.regions;
  std::ranges::reverse(turned);
  wrong.regions = folder / "turned.txt";
  writeRegions(wrong.regions, turned);
  EXPECT_THAT([&] { locateChart(a.picture, wrong); },
              testing::ThrowsMessage<DoubtfulChart>(testing::HasSubstr("; ")));
  wrong.force = true;
  EXPECT_GT(locateChart(a.picture, wrong).warnings().size(), 1U);
  writeWholeFile(folder / "fit.json", json(fit));
  const MeasuredChart measured = readMeasuredChart(folder / "fit.json");
  EXPECT_EQ(measured.matrix, fit.matrix);
  EXPECT_EQ(measured.rgb, fit.measuredRgb);
  EXPECT_EQ(measured.light, illum_A);
  ChartFit odd = fit;
  odd.matrix[0][2] = NAN;
  writeWholeFile(folder / "fit.json", toJson(odd));
  EXPECT_THROW(readMeasuredChart(folder / "fit.json"), JobError);
  BestFitOptions best;
  best.chart = options;
  best.best.light = FitLight::plane;
  const ChartPhotograph photographs[] = {{a.picture, "a.tif", 1.0, {}},
                                         {a.picture, "b.tif", 0.5, {}}};
  std::vector<double> progress;
  const BestChartFit bestFit = *fitChartBest(photographs, best, [&](double done) {
    progress.push_back(done);
    return true;
  });
  EXPECT_TRUE(std::ranges::is_sorted(progress));
  EXPECT_EQ(progress.back(), 1.0);
  expectResult("best.json", json(bestFit.best));
  for (const char* numbers : {"1 2 3", "-1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1"}) {
    writeWholeFile(folder / "weights.txt", numbers);
    EXPECT_THROW(readPatchWeights(folder / "weights.txt"), JobError);
  }

  EvaluationOptions judged;
  judged.locate = options.locate;
  judged.light = illum_TL84;
  judged.scale = 1.2;
  judged.locate.samples.whiteLevel = 60000;
  expectResult("evaluation.json", json(evaluateChart(a.picture, judged, "a.tif")));

  // Clipped, without the black level, and searched for.
  SimulationSettings bright;
  bright.width = 360, bright.height = 300, bright.whiteShare = 1.6, bright.yawDeg = 12;
  const SimulatedChart clipped = *simulateChart(bright, "bright.png");
  const ChartFit poor = *fitChart(clipped.picture, {}, "bright.png");
  expectResult("fit_clipped.json", json(poor));
  expectResult("report.html", fitReport(poor, clipped.picture));
  options.locate.regions = judged.locate.regions = "regions.txt";
  options.saturation = 1.2;
  bright.seed = 1ULL << 63U;
  bright.light = illum_Horizon;
  bright.sensor = ModelSensor::Narrow;
  expectResult("options.json",
               json(options) + json(judged) + json(bright) + json(FlatFieldSettings()) +
                   json(ShowCurveOptions{CurveChannel::Blue, 5}) + json(CurveFileForm{64, 8}) +
                   json(StandardCurveOptions{StandardCurveKind::HLG, 9}) +
                   json(Lut2dIdentityOptions{{0.1F, 0.2F, 0.3F, 0.4F}, 0.5F, 6.0F, 7.0F}) +
                   json(Lut2dApplyOptions{10}) + json(FlatFieldOptions{LumaChoice::Green, {}}) +
                   json(FlatFieldOptions{{}, BareSamples{4, 5, 16}}));
  EXPECT_EQ(roundTrip(clipped).truth.rgb, clipped.truth.rgb);
  EXPECT_EQ(roundTrip(poor).pipeline().m_gains, poor.pipeline().m_gains);
}

TEST_F(GoldenResults, OfCurves) {
  GammaCurveModel model(true);
  const GammaCurvePtr outdoor = model.GetGammaCurveByName("VOutdoor");
  std::string odd = "junk ", plain = "GammaTableV2R: ";
  for (int i = 0; i < 256; ++i) odd += std::to_string(4 * i) + " ";
  for (int channel = 0; channel < 3; ++channel) {
    for (int i = 0; i < 256; ++i) plain += std::to_string(std::min((6 - channel) * i, 1023)) + " ";
    if (channel < 2) plain += channel == 0 ? "\nGammaTableV2G: " : "\nGammaTableV2B: ";
  }
  writeWholeFile(folder / "odd.txt", odd);
  writeWholeFile(folder / "three.txt", plain);
  std::filesystem::current_path(folder);
  const std::vector<std::filesystem::path> files{"odd.txt", "three.txt"};
  const CurveImportReport imported = importCurves(model, files);
  const GammaCurvePtr three = model.GetGammaCurveByName(imported.curves[1].curve.name);
  const auto against = comparisonCurve("VNormal").curve;
  expectResult("imported.json", json(imported) + json(listCurves(model)));
  const ShownCurve shown = showCurve(*outdoor, {CurveChannel::Red, 7});
  expectResult("shown.json", json(shown) + json(exportCurve(*three, "out.txt", {64, 10})));
  expectResult("exported.txt", readWholeFile("out.txt"));
  std::string luts;
  for (const CurveLutOptions& options : {CurveLutOptions{LutKind::Plain, CurveChannel::Red, 8},
                                         {LutKind::Of14Bits, CurveChannel::Green, {}},
                                         {LutKind::Norm, CurveChannel::Blue, {}},
                                         {LutKind::To12Bits, CurveChannel::Blue, {}}})
    luts += json(buildCurveLut(*three, options)).substr(0, 3000) + json(options);
  expectResult("luts.json", luts + lutText(buildCurveLut(*three)) +
                                lutText(buildCurveLut(*three, {LutKind::Norm, {}, {}})));
  const ControlPointReduction reduced = reduceToControlPoints(*three, CurveChannel::Green);
  const StandardCurve pq = standardCurve({StandardCurveKind::HDR10, 1000}),
                      hlg = standardCurve({StandardCurveKind::HLG});
  const DeGammaResult inputs = degammaColour(*three, {60.0, 61.0, 30.0});
  expectResult("reduced.json", json(reduced));
  expectResult("standard.json", json(pq) + json(hlg));
  expectResult("degamma.json", json(inputs));
  expectResult("curves.svg", curvePlot(shown, against) + curvePlot(imported) + curvePlot(reduced) +
                                 curvePlot(pq) + curvePlot(hlg, against) +
                                 curvePlot(inputs, imported.curves[1].curve));
}

TEST_F(GoldenResults, OfTables) {
  Lut2DConfig table = identityLut2d({{0.0F, 0.1F, 0.9F, 1.0F}});
  std::string reports;
  for (const Lut2dDragOptions& drag :
       {Lut2dDragOptions{118.0, 0.52, -30.0, 0.1, 2, 3}, {300.0, 0.8, 12.0, -0.2, 3, 1}})
    reports += json(drag) + json(dragLut2d(table, drag));
  expectResult("drags.json", reports + json(summariseLut2d(table)));
  expectResult("wheel.svg", lut2dWheel(table, "dragged"));
  const Lut2dInverse inverse = invertLut2d(table);
  expectResult("inverse.json", json(inverse.report) + json(inverse.table));
  const AppliedLut2d applied =
      applyLut2d(photograph(illum_D65).picture, table, {}, "a.tif", "t.json");
  expectResult("applied.json",
               json(applied.report) + trace(applied.picture()) + trace(applied.comparison()));
}

TEST_F(GoldenResults, OfRules) {
  writeWholeFile(folder / "dark.ppm", "P3 2 2 255\n10 20 30  20 30 40  60 50 40  90 120 80\n");
  writeWholeFile(folder / "deep.pgm", "P2 4 1 4095\n160 320 480 2960\n");
  ExposureJob job;
  job.images.resize(2);
  job.images[0].picture = folder / "dark.ppm";
  job.images[0].newTarget = 45;
  job.images[1].picture = folder / "deep.pgm";
  job.images[1].whiteLevel = 4095;
  job.images[1].newTarget = 60;
  job.images[1].Weight = 2;
  job.parameters_enable[2] = 0;
  SearchOptions search;
  search.maxSeconds = 0.0;
  search.maxEvaluations = 300;
  ExposureFit fit = fitExposure(job, search);
  fit.seconds = 2.0;
  EXPECT_EQ(fit.evaluationsPerSecond(), 150.0);
  const ExposureTrial trial = evaluateExposure(job);
  for (ExposureImage& image : job.images) image.picture = image.picture->filename();
  expectResult("exposure.json", json(job) + json(search) + json(fit) + json(trial));
  expectResult("exposure.svg", exposurePlot(fit) + exposurePlot(trial));
  expectResult("luma.json", json(matchLuma({{100, 120, 140}, {60, 90, 30}, search})));

  WhiteBalanceOptions points;
  points.from = {{{0.48, 0.66}, {0.64, 0.52}, {0.93, 0.37}}};
  points.to = {{{0.5, 0.6}, {0.7, 0.5}, {0.9, 0.4}}};
  points.points = {{0.5, 0.5}, {0.7, 0.3}};
  const WhiteBalanceMapping mapping = mapWhiteBalance(points);
  expectResult("wb_map.json", json(points) + json(mapping) + wbMapCsv(mapping));

  SkinCharts charts;
  const Illum lights[] = {illum_D65, illum_A, illum_TL84};
  LocateOptions locate;
  locate.samples.blackLevel = 1000;
  for (std::size_t i = 0; i < 3; ++i)
    charts[i] = measureChart(photograph(lights[i]).picture, locate, "chart.tif");
  SkinOptions options;
  options.matrix = Matrix3{{{1.7, -0.5, -0.2}, {-0.2, 1.5, -0.3}, {0.0, -0.5, 1.5}}};
  options.matrixFrom = "by hand";
  const SkinCalibration skin = calibrateSkin(charts, options, {"d65.tif", "a.tif", "tl84.tif"});
  constexpr std::size_t kEnough = 20000;  // of thousands of points
  expectResult("skin.json", json(options) + json(skin).substr(0, kEnough));
  expectResult("skin.svg", skinPlot(skin).substr(0, kEnough) + skinCsv(skin).substr(0, kEnough));
}

TEST_F(GoldenResults, OfFlatFields) {
  FlatFieldSettings settings;
  settings.width = settings.height = 640;
  settings.fallOff = 0.4;
  const SimulatedFlatField simulated = *simulateFlatField(settings, "flat.png");
  const SigmaEstimate estimate = estimateSigma(flatField(simulated.picture, {}, "flat.jpg"), true);
  expectResult("sigma.json", json(simulated) + json(estimate) + sigmaCsv(estimate));
  expectResult("sigma.svg", sigmaPlot(estimate));
  expectResult("sigma_map.txt", trace(sigmaMap(estimate)));
}

}  // namespace
}  // namespace greycard::present
