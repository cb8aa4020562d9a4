#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "greycard/present/chart.h"
#include "greycard/present/verdict.h"

namespace greycard::present {
namespace {

TEST(ColourVerdict, GradesByTheStatedScale) {
  struct Case {
    const char* name;
    double most, last;  // 22 patches, then the worst two
    double percentile;  // 0.95 * 23 = 21.85: between the third and the second from the end
    ColourGrade grade;
  };
  for (const Case& c : {Case{"good", 1.0, 4.0, 1.0 + 0.85 * 3.0, ColourGrade::Good},
                        {"two patches too far", 1.0, 9.0, 1.0 + 0.85 * 8.0, ColourGrade::Fair},
                        {"on the whole too far", 2.4, 2.4, 2.4, ColourGrade::Fair},
                        {"at the limit", 2.3, 2.3, 2.3, ColourGrade::Good},
                        {"poor", 5.0, 5.0, 5.0, ColourGrade::Poor},
                        {"not a number", NAN, 1.0, NAN, ColourGrade::Poor}}) {
    SCOPED_TRACE(c.name);
    ErrorColumn errors;
    errors.patch.fill(c.most);
    errors.patch[3] = errors.patch[11] = c.last;
    errors.mean = (22.0 * c.most + 2.0 * c.last) / 24.0;
    const ColourVerdict verdict = colourVerdict(errors);
    EXPECT_EQ(verdict.grade, c.grade);
    EXPECT_EQ(std::isnan(verdict.percentile95), std::isnan(c.percentile));
    EXPECT_FALSE(std::abs(verdict.percentile95 - c.percentile) > 1e-12) << verdict.percentile95;
  }
}

// A photograph of 12 megapixels in one colour with the chart's patches in it.
ChartEvaluation evaluationOf(Picture& photograph) {
  photograph = Picture(4000, 3000, 3, 8);
  ChartEvaluation evaluation;
  evaluation.photo = "a <b> & \"c\".jpg";
  evaluation.capture.emplace().camera = "Maker X1";
  evaluation.warnings = {"<script>alert(1)</script>"};
  std::mt19937 random(3);
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const double x = 1000.0 + 300.0 * static_cast<double>(i % 6),
                 y = 800.0 + 300.0 * static_cast<double>(i / 6);
    evaluation.chart.patches[i] = {{{x, y}, {x + 250, y}, {x + 250, y + 250}, {x, y + 250}}};
    evaluation.referenceLab[i] = {50, 10, 10};
    evaluation.measuredLab[i] = {i == 5 ? NAN : 55.0, 12, 8};
    evaluation.measuredRgb[i] = {0.2, 0.2, 0.2};
  }
  // Noise, the worst that an encoder can be given.
  for (auto& sample : photograph.samples) sample = static_cast<std::uint16_t>(random() >> 24);
  evaluation.errors = colourErrors(evaluation.referenceLab, evaluation.measuredLab);
  return evaluation;
}

TEST(EvaluationReport, IsSelfContainedSmallAndSafeWhateverTheNames) {
  Picture photograph;
  const ChartEvaluation evaluation = evaluationOf(photograph);
  Provenance provenance{"9.9", "2026-11-22T09:30:00Z", "greycard <x>", {{"scale", "2"}}};
  const std::string page = evaluationReport(evaluation, photograph, provenance);
  EXPECT_LT(page.size(), 1500000U);
  for (const char* text : {"<script", "a <b>", "greycard <x>", "\"nan", "\"inf", ">nan", "url("})
    EXPECT_EQ(page.find(text), std::string::npos) << text;
  for (const char* text : {"a &lt;b&gt; &amp; &quot;c&quot;.jpg", "greycard &lt;x&gt;", "Poor",
                           "greycard 9.9, 2026-11-22T09:30:00Z", "scale", "Camera Maker X1"})
    EXPECT_NE(page.find(text), std::string::npos) << text;
  // The only addresses are the name of SVG and the pictures' own bytes.
  for (std::size_t at = 0; (at = page.find("http", at)) != std::string::npos; ++at)
    EXPECT_EQ(page.substr(at, 26), "http://www.w3.org/2000/svg");
}

}  // namespace
}  // namespace greycard::present
