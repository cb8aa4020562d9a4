// .cube files as OpenColorIO applies them.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <random>
#include <sstream>
#include <vector>

#include "exchange_fixture.h"
#include "greycard/curve_source.h"
#include "greycard/delta_e.h"
#include "greycard/lut2d_table.h"
#include "greycard/number_text.h"
#include "greycard/two_d_lut_helper.h"

namespace greycard::exchange {
namespace {

Vector3 applied(const Folder& folder, const Vector3& rgb) {
  const auto out = numbersIn(folder.shell("ociochecklut lut.cube " + exact(rgb[0]) + " " +
                                          exact(rgb[1]) + " " + exact(rgb[2])));
  if (out.size() != 3) throw std::runtime_error("ociochecklut gave no colour");
  return {out[0], out[1], out[2]};
}

double encoded(double linear) {  // IEC 61966-2-1
  return linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1.0 / 2.4) - 0.055;
}
double decoded(double code) {
  return code <= 0.04045 ? code / 12.92 : std::pow((code + 0.055) / 1.055, 2.4);
}

Vector3 labOf(const Vector3& rgb) {  // encoded sRGB under D65
  const double m[3][3] = {
      {0.4124, 0.3576, 0.1805}, {0.2126, 0.7152, 0.0722}, {0.0193, 0.1192, 0.9505}};
  double f[3];
  for (int i = 0; i < 3; ++i) {
    double xyz = 0.0, white = 0.0;
    for (std::size_t c = 0; c < 3; ++c) xyz += m[i][c] * decoded(rgb[c]), white += m[i][c];
    f[i] = xyz / white > 0.008856 ? std::cbrt(xyz / white) : 7.787 * xyz / white + 16.0 / 116.0;
  }
  return {116.0 * f[1] - 16.0, 500.0 * (f[0] - f[1]), 200.0 * (f[1] - f[2])};
}

// Gains, matrix and tone curve of linear camera RGB.
Vector3 exactly(const ChartFit& fit, const Vector3& rgb) {
  static const auto curves = fit.pipeline().m_gamma;
  Vector3 out{};
  for (std::size_t i = 0; i < 3; ++i) {
    double corrected = 0.0;
    for (std::size_t c = 0; c < 3; ++c)
      corrected += fit.matrix[i][c] * fit.exposure * fit.whiteBalance[c] * rgb[c];
    const double at = 255.0 * std::clamp(corrected, 0.0, 1.0);
    const auto entry = std::min(static_cast<std::size_t>(at), std::size_t{254});
    const double rest = at - static_cast<double>(entry);
    out[i] = std::min(1.0, (1.0 - rest) * curves[i][entry] + rest * curves[i][entry + 1]);
  }
  return out;
}

TEST(Cube, RendersAChartAsTheExactPipelineDoes) {
  const FittedCamera camera = knownCamera({illum_D65});
  const ChartFit& fit = camera.lights[0].fit;
  const struct {
    const char* format;
    bool linear;
    std::size_t every;  // so many patches; each is a run of the program
    double meanDe00;    // linear nodes are scarce in the shadows
  } cases[] = {{"cube17", false, 5, 1.0}, {"cube33", false, 1, 0.5}, {"cube65", true, 7, 1.5}};
  for (const auto& [format, linear, every, limit] : cases) {
    SCOPED_TRACE(format);
    const Exported lut = exportAs(format, camera, {linear, {}});
    ASSERT_EQ(lut.notes.size(), 1U);
    EXPECT_NE(lut.bytes.find(lut.notes[0]), std::string::npos);
    Folder folder;
    folder.write("lut.cube", lut.bytes);
    double sum = 0.0;
    for (std::size_t patch = 0; patch < kPatchCount; patch += every) {
      const Vector3& rgb = fit.measuredRgb[patch];
      Vector3 in = rgb;
      if (!linear)
        for (double& value : in) value = encoded(value);
      sum += deltaE2000(labOf(exactly(fit, rgb)), labOf(applied(folder, in)));
    }
    EXPECT_LT(sum * static_cast<double>(every) / kPatchCount, limit);
  }
}

// At other colours than the note's, and read by another reader.
TEST(Cube, TellsItsErrorOverTheWholeCube) {
  const FittedCamera camera = knownCamera({illum_D65});
  constexpr std::size_t kSize = 17;
  const Exported lut = exportAs("cube17", camera);
  double stated = 0.0, worst = 0.0;
  ASSERT_EQ(std::sscanf(lut.notes[0].c_str(),
                        "dE00 to the exact colours over the whole cube: "
                        "trilinear mean %lf, worst %lf",
                        &stated, &worst),
            2);
  std::vector<Vector3> nodes;
  std::istringstream lines(lut.bytes);
  for (std::string line; std::getline(lines, line);)
    if (Vector3 node; std::sscanf(line.c_str(), "%lf %lf %lf", &node[0], &node[1], &node[2]) == 3)
      nodes.push_back(node);
  ASSERT_EQ(nodes.size(), kSize * kSize * kSize);

  std::mt19937 random(5);
  double sum = 0.0, largest = 0.0;
  constexpr int kColours = 4000;
  for (int i = 0; i < kColours; ++i) {
    std::array<std::size_t, 3> first{};
    Vector3 rest{}, linear{}, read{};
    for (std::size_t c = 0; c < 3; ++c) {
      const double code = static_cast<double>(random()) / 4294967296.0, at = code * (kSize - 1);
      first[c] = static_cast<std::size_t>(at);
      rest[c] = at - static_cast<double>(first[c]);
      linear[c] = decoded(code);
    }
    for (std::size_t b = 0; b < 2; ++b)
      for (std::size_t g = 0; g < 2; ++g)
        for (std::size_t r = 0; r < 2; ++r) {
          const double weight = (r ? rest[0] : 1 - rest[0]) * (g ? rest[1] : 1 - rest[1]) *
                                (b ? rest[2] : 1 - rest[2]);
          const std::size_t row = (first[2] + b) * kSize + first[1] + g;
          const Vector3& node = nodes[row * kSize + first[0] + r];
          for (std::size_t c = 0; c < 3; ++c) read[c] += weight * node[c];
        }
    const double error = deltaE2000(labOf(exactly(camera.lights[0].fit, linear)), labOf(read));
    sum += error;
    largest = std::max(largest, error);
  }
  EXPECT_NEAR(stated, sum / kColours, 0.1 * stated);
  EXPECT_GT(largest, 0.5 * worst);
  EXPECT_LT(largest, 2.0 * worst);
}

TEST(Cube, OneDimensionIsTheCurve) {
  const CurveTables curve = curveTables(*curveByNameOrFile("VOutdoor").curve);
  Folder folder;
  folder.write("lut.cube", exportAs("cube1d", curve).bytes);
  for (const std::size_t entry : {0U, 3U, 77U, 512U, 1023U}) {
    const double x = static_cast<double>(entry) / 1023.0;
    EXPECT_NEAR(applied(folder, {x, 0.0, 1.0})[0], curve.channels[0].table[entry] / 16383.0, 2e-5);
  }
}

TEST(Cube, MovesColoursAsTheTableDoes) {
  Lut2DConfig table = identityLut2d();
  dragLut2d(table, {120.0, 0.5, -15.0, 0.05, 3, 6});
  Folder folder;
  folder.write("lut.cube", exportAs("cube33", table).bytes);
  TwoDLutHelper helper;
  helper.SetConfig(table);
  for (const std::array<std::uint16_t, 3> rgb :
       {std::array<std::uint16_t, 3>{300, 700, 320}, {500, 500, 500}, {200, 610, 150}}) {
    auto moved = rgb;
    helper.ProcessImage(std::span(moved).subspan(0, 1), std::span(moved).subspan(1, 1),
                        std::span(moved).subspan(2, 1), 1, 1, 10);
    const Vector3 out = applied(folder, {rgb[0] / 1023.0, rgb[1] / 1023.0, rgb[2] / 1023.0});
    for (std::size_t c = 0; c < 3; ++c) EXPECT_NEAR(1023.0 * out[c], moved[c], 5.0);
  }
}

}  // namespace
}  // namespace greycard::exchange
