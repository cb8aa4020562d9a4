#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <string>

#include "greycard/colour_errors.h"
#include "greycard/delta_e.h"

namespace greycard {
namespace {

TEST(DeltaE2000, MeetsThePublishedPairs) {
  std::ifstream file(GREYCARD_DATA_DIR "/ciede2000_pairs.csv");
  std::string line;
  ASSERT_TRUE(std::getline(file, line));
  int pair = 0;
  while (std::getline(file, line)) {
    ++pair;
    Vector3 a, b;
    double expected = 0.0;
    ASSERT_EQ(std::sscanf(line.c_str(), "%lf,%lf,%lf,%lf,%lf,%lf,%lf", &a[0], &a[1], &a[2], &b[0],
                          &b[1], &b[2], &expected),
              7)
        << line;
    SCOPED_TRACE(line);
    for (const double found : {deltaE2000(a, b), deltaE2000(b, a)}) {
      // Pair 14 lies at a hue difference of exactly 180 degrees, where rounding picks the side.
      if (pair == 14 && std::fabs(found - 4.7461) < 0.6e-4) continue;
      EXPECT_NEAR(found, expected, 0.6e-4);  // four printed decimals
    }
  }
  EXPECT_EQ(pair, 34);
}

TEST(DeltaE, OlderFormulasWorkedByHand) {
  EXPECT_DOUBLE_EQ(deltaE76({50, 0, 0}, {53, 4, 12}), 13.0);
  // C1 = 5, C2 = 10, same hue: dC = 5, SC = 1.225. Reference and sample exchanged: SC = 1.45.
  EXPECT_NEAR(deltaE94({50, 3, 4}, {50, 6, 8}), 5.0 / 1.225, 1e-12);
  EXPECT_NEAR(deltaE94({50, 6, 8}, {50, 3, 4}), 5.0 / 1.45, 1e-12);
  // Equal chroma 10, hue a quarter turn: dH^2 = 200, SH = 1.15; and dL = 2 with weight 1.
  EXPECT_NEAR(deltaE94({52, 10, 0}, {50, 0, 10}), std::sqrt(4.0 + 200.0 / (1.15 * 1.15)), 1e-12);
}

TEST(DeltaE2000, TermsOfColoursThatDifferInOneRespect) {
  // At L* = 50 and for greys every weight is 1 but that of chroma, so that dE is the one term.
  EXPECT_NEAR(deltaE2000Terms({49, 0, 0}, {51, 0, 0}).lightness, 2.0, 1e-9);
  const auto chroma = deltaE2000Terms({50, 20, 0}, {50, 30, 0});
  EXPECT_GT(chroma.chroma, 3.0);
  EXPECT_EQ(chroma.lightness + chroma.hue + chroma.rotation, 0.0);
  const auto hue = deltaE2000Terms({50, 0, 30}, {50, 0.5, 30});
  EXPECT_LT(hue.hue, -0.1);
  EXPECT_NEAR(hue.chroma, 0.0, 0.01);
}

TEST(DeltaE, ZeroForEqualColoursAndNotANumberPassesThrough) {
  using Formula = double (*)(const Vector3&, const Vector3&);
  for (const Formula formula : {Formula{deltaE76}, Formula{deltaE94}, Formula{deltaE2000}}) {
    for (const Vector3& lab : {Vector3{0, 0, 0}, Vector3{100, 0, 0}, Vector3{41, 53.3, -27.7}})
      EXPECT_EQ(formula(lab, lab), 0.0);
    for (std::size_t i = 0; i < 3; ++i) {
      Vector3 bad{50, 10, 10};
      bad[i] = NAN;
      EXPECT_TRUE(std::isnan(formula(bad, {50, 10, 10})));
      EXPECT_TRUE(std::isnan(formula({50, 10, 10}, bad)));
    }
    EXPECT_TRUE(std::isfinite(formula({50, 1e60, 0}, {50, 0, 1e60})));
  }
}

TEST(ColourErrorsOfAChart, MeanAndWorstOfAllPatches) {
  PatchTable reference{}, lab{};
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    reference[i] = {50, 3, 4};
    lab[i] = {50.0 + static_cast<double>(24 - i), 3, 4};
  }
  const ColourErrors errors = colourErrors(reference, lab);
  EXPECT_DOUBLE_EQ(errors.cie76.mean, 12.5);
  EXPECT_DOUBLE_EQ(errors.cie94.worst, 24.0);
  EXPECT_EQ(errors.cie76.worstPatch, 0);
  EXPECT_EQ(colourErrors(lab, reference).ciede2000.patch[23], deltaE2000(lab[23], reference[23]));
}

// Colours that are all too bright by as much are right but for that.
TEST(ColourErrors, LevelledOnesForgiveACommonBrightness) {
  PatchTable reference;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    reference[i] = {20.0 + 3.0 * static_cast<double>(i), 30.0, -10.0};
  PatchTable brighter = reference;
  for (Vector3& lab : brighter) lab[0] += 3.0;
  const ColourErrors errors = colourErrors(reference, brighter);
  EXPECT_NEAR(errors.levelled2000.worst, 0.0, 1e-12);
  EXPECT_NEAR(errors.cie76.mean, 3.0, 1e-12);
  brighter[7][1] += 4.0;
  const ColourErrors other = colourErrors(reference, brighter);
  EXPECT_NEAR(other.cie76.worst, 5.0, 1e-12);
  EXPECT_NEAR(other.cie76.mean, (23.0 * 3.0 + 5.0) / 24.0, 1e-12);
  EXPECT_EQ(other.cie76.worstPatch, 7);
  EXPECT_NEAR(other.levelled2000.worst, deltaE2000(reference[7], {reference[7][0], 34.0, -10.0}),
              1e-9);
}

}  // namespace
}  // namespace greycard
