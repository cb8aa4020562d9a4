// Every page, and every picture that is drawn into a photograph, as the texts beside this file.

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

#include "golden_results.h"
#include "greycard/files.h"
#include "greycard/present/fit_file.h"

namespace greycard::present {
namespace {

// Where the drawing that begins at `begin` ends; drawings may hold others.
std::size_t endOfDrawing(const std::string& page, std::size_t begin) {
  const std::string opened = "<svg", closed = "</svg>";
  std::size_t end = page.find(closed, begin) + closed.size();
  for (std::size_t inner = begin + 1; (inner = page.find(opened, inner)) < end; ++inner)
    end = page.find(closed, end) + closed.size();
  return end;
}

// A page without what all pages begin with; of its drawings, which stand in whole in the files of
// plots and in the page of a fit, the traces of their settled texts.
std::string bodyOf(const std::string& page) {
  std::string text;
  std::size_t at = page.find("<h1>");
  for (std::size_t begin; (begin = page.find("<svg", at)) != std::string::npos;) {
    text += page.substr(at, begin - at);
    at = endOfDrawing(page, begin);
    const std::string drawing = settled(page.substr(begin, at - begin));
    text += "drawing of " + std::to_string(drawing.size()) + " characters, trace " +
            std::to_string(traceOf(drawing));
  }
  return text + page.substr(at);
}

const Provenance kProvenance{
    "9.9", "2026-11-22T09:30:00Z", "greycard ccm <a> & b", {{"scale", "2"}, {"name", "\"x\""}}};

class GoldenPages : public GoldenResults {
 protected:
  const SimulatedChart chart = photograph(illum_A);
  ChartFitOptions options;

  GoldenPages() {
    options.locate.samples.blackLevel = 1000;
    options.light = illum_A;
  }
};

TEST_F(GoldenPages, OfCharts) {
  EvaluationOptions judged;
  judged.locate = options.locate;
  judged.light = illum_A;
  judged.scale = 1.3;
  const ChartEvaluation evaluation = evaluateChart(chart.picture, judged, "a.tif");
  expectResult("evaluation.html", bodyOf(evaluationReport(evaluation, chart.picture, kProvenance)));

  BestFitOptions best;
  best.chart = options;
  best.best.light = FitLight::plane;
  best.best.toneCurve = FitToneCurve::power;
  best.best.tradeOffSteps = 3;
  const ChartPhotograph photographs[] = {{chart.picture, "a.tif", 1.0, {}},
                                         {chart.picture, "b.tif", 0.5, {}}};
  const BestChartFit bestFit = *fitChartBest(photographs, best);
  expectResult("best.html", bodyOf(fitReport(bestFit, chart.picture, kProvenance)));
  expectResult("best_corrected.txt",
               trace(correctedPhotograph(chart.picture, bestFit, 1, options.locate.samples)));
  writeWholeFile(folder / "best.json", stamped(toJson(bestFit), kProvenance));
  writeWholeFile(folder / "evaluation.json", toJson(evaluation));
  ChartComparison comparison(readJudgedChart(folder / "best.json"),
                             readJudgedChart(folder / "evaluation.json"));
  comparison.a.file = comparison.a.file.filename();
  comparison.b.file = comparison.b.file.filename();
  expectResult("comparison.html", json(comparison) + bodyOf(comparisonReport(comparison)));
  const AnyFit read = readFit(folder / "best.json");
  EXPECT_EQ(toJson(chartFitOf(read)), toJson(bestFit.shown(0)));
  const FittedPipeline pipeline = readFittedPipeline(folder / "best.json");
  EXPECT_EQ(pipeline.toneCurve, bestFit.best.toneCurve);
  EXPECT_EQ(pipeline.gains, pipelineOf(bestFit).gains);

  writePicture(folder / "a.tif", chart.picture);
  std::filesystem::current_path(folder);
  const std::vector<std::filesystem::path> files{"a.tif", "missing.png"}, outputs{"a.png", "m.png"};
  const auto applied = *applyFitToFiles(files, outputs, pipeline, {}, {options.locate.samples, {}});
  expectResult("applied_fit.json", toJson(applied) + trace(readPicture("a.png")) +
                                       json(describePhotograph(readPhotograph("a.tif"))));
}

TEST_F(GoldenPages, OfSeveralLights) {
  std::vector<LightPhotograph> photographs;
  for (const Illum light : {illum_A, illum_D65})
    photographs.push_back({{photograph(light).picture, "a.tif", "TIFF", {}, {}, {}}, light});
  photographs[1].kelvin = 6300.0;
  const CameraProfile profile = *fitProfile(photographs, options);
  const std::string whole = json(profile);  // the fits in it have texts of their own
  const std::size_t errors = whole.find("\"errors\""), lights = whole.find("\"lights\"");
  std::string text = whole.substr(errors, lights - errors);
  for (const double kelvin : {2000.0, 4000.0}) text += json(profileAt(profile, kelvin));
  expectResult("profile.json", text);
}

TEST_F(GoldenPages, OfRules) {
  writeWholeFile(folder / "dark.ppm", "P3 2 2 255\n10 20 30  20 30 40  60 50 40  90 120 80\n");
  std::filesystem::current_path(folder);
  ExposureJob job;
  job.images.resize(3);
  for (std::size_t i = 0; i < 3; ++i) {
    job.images[i].picture = "dark.ppm";
    job.images[i].name = "dark <" + std::to_string(i) + ">";
    job.images[i].newTarget = 45 + 10.0 * static_cast<double>(i);
    job.images[i].Weight = static_cast<double>(i);
  }
  job.parameters_enable[2] = 0;
  SearchOptions search;
  search.maxSeconds = 0.0;
  search.maxEvaluations = 200;
  ExposureFit fit = fitExposure(job, search);
  fit.seconds = 2.0;
  expectResult("exposure.html", bodyOf(exposureReport(job, fit, kProvenance)) +
                                    bodyOf(exposureReport(job, evaluateExposure(job))));
  // Bounds that no point keeps.
  ExposureFit none = fit;
  none.bestKeepsConstraints = false;
  expectResult("exposure_none.html", bodyOf(exposureReport(job, none)));

  WhiteBalanceOptions points;
  points.from = {{{0.48, 0.66}, {0.64, 0.52}, {0.93, 0.37}}};
  points.to = {{{0.5, 0.6}, {0.7, 0.5}, {0.9, 0.4}}};
  points.points = {{0.5, 0.5}, {0.7, 0.3}};
  expectResult("wb_map.html", bodyOf(wbMapReport(mapWhiteBalance(points), kProvenance)));

  SkinCharts charts;
  const Illum lights[] = {illum_D65, illum_A, illum_TL84};
  for (std::size_t i = 0; i < 3; ++i)
    charts[i] = measureChart(photograph(lights[i]).picture, options.locate, "chart.tif");
  SkinOptions skin;
  skin.matrix = Matrix3{{{1.7, -0.5, -0.2}, {-0.2, 1.5, -0.3}, {0.0, -0.5, 1.5}}};
  skin.matrixFrom = "by hand";
  const SkinCalibration calibration = calibrateSkin(charts, skin, {"d65.tif", "a.tif", "tl84.tif"});
  expectResult("skin.html", bodyOf(skinReport(calibration, kProvenance)));
}

TEST_F(GoldenPages, OfFlatFields) {
  FlatFieldSettings settings;
  settings.width = settings.height = 640;
  settings.fallOff = 0.4;
  const Picture field = simulateFlatField(settings, "flat.png")->picture;
  expectResult(
      "sigma.html",
      bodyOf(sigmaReport(estimateSigma(flatField(field, {}, "flat.jpg"), true), kProvenance)));
}

TEST_F(GoldenPages, OfMarksInPhotographs) {
  ChartDetection found = MCCDetector().detect(chart.picture, DetectOptions());
  std::string text = trace(annotateRegions(chart.picture, found.regions)) + "\n" +
                     trace(annotatePatches(chart.picture, found.placement.patches, {2, 24})) +
                     "\n" + trace(annotateDetection(chart.picture, found)) + "\n";
  found.placement.outliers = {7};
  text += trace(annotateDetection(chart.picture, found)) + "\n";
  ChartDetection other = found;
  for (PatchQuad& patch : other.placement.patches)
    for (Point2& corner : patch) corner.x -= 30.5;
  text += trace(annotateDetections(chart.picture, {found, other})) + "\n";
  other.stage = ChartStage::Grid;
  other.candidate = other.placement;
  other.candidateRegions = {{10, 20, 30, 40}, {100.5, 20, 8, 300}};
  text += trace(annotateDetection(chart.picture, other)) + "\n";
  Lut2DConfig table = identityLut2d();
  table.lut_2d_h[40] = 20.0;
  text += trace(labelledComparison(applyLut2d(chart.picture, table, {}, "a.tif", "t.json"))) + "\n";
  expectResult("marks.txt", text);
}

}  // namespace
}  // namespace greycard::present
