// ICC profiles through lcms2 and camera profiles through exiftool, against the printed formulas.

#include <gtest/gtest.h>
#include <lcms2.h>

#include <array>
#include <cmath>
#include <ctime>
#include <opencv2/core.hpp>

#include "exchange_fixture.h"
#include "greycard/delta_e.h"

namespace greycard::exchange {
namespace {

using Matrix = cv::Matx33d;
using Column = cv::Vec3d;

// IEC 61966-2-1, 4 decimals; Bradford's cone responses (ICC.1:2022, annex E).
const Matrix kToXyz(0.4124, 0.3576, 0.1805, 0.2126, 0.7152, 0.0722, 0.0193, 0.1192, 0.9505);
const Matrix kCones(0.8951, 0.2664, -0.1614, -0.7502, 1.7135, 0.0367, 0.0389, -0.0685, 1.0296);
const Column kD65(0.9505, 1.0, 1.0890), kD50(0.9642, 1.0, 0.8249);
const Column kLightA(1.0985, 1.0, 0.3558);  // CIE 15:2004, table T.3

Matrix adapted(const Column& from, const Column& to) {
  const Column a = kCones * from, b = kCones * to;
  return kCones.inv() * Matrix::diag(Column(b[0] / a[0], b[1] / a[1], b[2] / a[2])) * kCones;
}
Matrix matrixOf(const ChartFit& fit) {
  return Matrix(fit.matrix[0].data());
}
Column columnOf(const Vector3& v) {
  return {v[0], v[1], v[2]};
}

Vector3 labUnderD50(const Column& xyz) {
  Vector3 f{};
  for (int i = 0; i < 3; ++i) f[static_cast<std::size_t>(i)] = std::cbrt(xyz[i] / kD50[i]);
  return {116.0 * f[1] - 16.0, 500.0 * (f[0] - f[1]), 200.0 * (f[1] - f[2])};
}

double encoded(double linear) {  // IEC 61966-2-1
  return linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1.0 / 2.4) - 0.055;
}

TEST(IccProfile, TransformsAsTheFitDoes) {
  const FittedCamera camera = knownCamera({illum_D65});
  const ChartFit& fit = camera.lights[0].fit;
  for (const std::string format : {"icc", "icc2"})
    for (const bool linear : {false, true}) {
      SCOPED_TRACE(format + (linear ? " linear" : " encoded"));
      const std::string bytes = exportAs(format, camera, {linear, "Cam"}).bytes;
      EXPECT_EQ(exportAs(format, camera, {linear, "Cam"}).bytes, bytes);
      cmsHPROFILE profile =
          cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size()));
      ASSERT_NE(profile, nullptr);
      EXPECT_EQ(static_cast<int>(cmsGetProfileVersion(profile)), format == "icc" ? 4 : 2);
      std::tm created{};
      EXPECT_TRUE(cmsGetHeaderCreationDateTime(profile, &created));
      EXPECT_EQ((std::array{created.tm_year, created.tm_mon, created.tm_mday}),
                (std::array{100, 0, 1}));  // the same for the same fit
      char words[256];
      cmsGetProfileInfoASCII(profile, cmsInfoDescription, "en", "US", words, sizeof words);
      EXPECT_NE(std::string(words).find("R 1.9000 G 1.0000 B 1.6000 and exposure 1.1000"),
                std::string::npos);

      double sum[3]{};
      for (const auto tag : {cmsSigRedColorantTag, cmsSigGreenColorantTag, cmsSigBlueColorantTag}) {
        const auto* xyz = static_cast<const cmsCIEXYZ*>(cmsReadTag(profile, tag));
        sum[0] += xyz->X, sum[1] += xyz->Y, sum[2] += xyz->Z;
      }
      EXPECT_EQ(sum[0] * 65536.0, 0xF6D6);
      EXPECT_EQ(sum[1] * 65536.0, 0x10000);
      EXPECT_EQ(sum[2] * 65536.0, 0xD32D);

      const auto* curve = static_cast<const cmsToneCurve*>(cmsReadTag(profile, cmsSigGreenTRCTag));
      EXPECT_EQ(cmsGetToneCurveParametricType(curve), linear ? 1 : format == "icc" ? 4 : 0);
      // ICC.1:2022, annex E: from the adopted white to that of the connection space.
      const auto* adaptation =
          static_cast<const cmsFloat64Number*>(cmsReadTag(profile, cmsSigChromaticAdaptationTag));
      ASSERT_EQ(adaptation != nullptr, format == "icc");
      if (adaptation != nullptr) {
        EXPECT_LT(cv::norm(Matrix(adaptation) - adapted(kD65, kD50)), 1e-3);
      }

      const auto* white =
          static_cast<const cmsCIEXYZ*>(cmsReadTag(profile, cmsSigMediaWhitePointTag));
      EXPECT_EQ(white->X * 65536.0, 0xF6D6);
      EXPECT_EQ(white->Y, 1.0);
      EXPECT_EQ(white->Z * 65536.0, 0xD32D);

      cmsHPROFILE lab = cmsCreateLab4Profile(nullptr);
      cmsHTRANSFORM transform =
          cmsCreateTransform(profile, TYPE_RGB_DBL, lab, TYPE_Lab_DBL, INTENT_RELATIVE_COLORIMETRIC,
                             cmsFLAGS_NOOPTIMIZE);
      int compared = 0;
      for (const Vector3& rgb : fit.fit.m_balancedRGB) {
        const Column exact = adapted(kD65, kD50) * kToXyz * matrixOf(fit) * columnOf(rgb);
        if (exact[0] < 0.01 || exact[1] < 0.01 || exact[2] < 0.01) continue;  // the linear part
        Vector3 in = rgb, out{};
        if (!linear)
          for (double& value : in) value = encoded(value);
        if (std::max({in[0], in[1], in[2]}) > 1.0) continue;  // tables end there
        cmsDoTransform(transform, in.data(), out.data(), 1);
        EXPECT_LT(deltaE2000(labUnderD50(exact), out), 0.1);
        ++compared;
      }
      EXPECT_GE(compared, 12);
      cmsDeleteTransform(transform);
      cmsCloseProfile(lab);
      cmsCloseProfile(profile);
    }
}

TEST(IccProfile, TellsOfColorantsThatSomeReadersClip) {
  FittedCamera camera = knownCamera({illum_D65});
  camera.lights[0].fit.matrix = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};  // those of sRGB, all above 0
  EXPECT_TRUE(exportAs("icc", camera).notes.empty());
  camera.lights[0].fit.matrix[0] = {2.0, 0.0, -1.0};
  EXPECT_EQ(exportAs("icc", camera).notes.size(), 1U);
}

class CameraProfile : public testing::Test {
 protected:
  std::vector<double> tag(const std::string& name) const {
    return numbersIn(folder_.shell("exiftool -m -n -b -" + name + " p.dcp"));
  }
  Matrix matrix(const std::string& name) const {
    const auto entries = tag(name);
    return entries.size() == 9 ? Matrix(entries.data()) : Matrix::zeros();
  }
  Folder folder_;
};

TEST_F(CameraProfile, HoldsWhatTheFormulasOfDngGive) {
  const FittedCamera camera = knownCamera({illum_D65, illum_A});  // the warmer goes first
  folder_.write("p.dcp", exportAs("dcp", camera, {false, "Maker Model"}).bytes);
  EXPECT_EQ(folder_.shell("exiftool -s3 -FileType -UniqueCameraModel p.dcp"), "DCP\nMaker Model\n");
  EXPECT_EQ(tag("CalibrationIlluminant1"), std::vector<double>{17});
  EXPECT_EQ(tag("CalibrationIlluminant2"), std::vector<double>{21});
  const auto curve = tag("ProfileToneCurve");
  const auto rendered = camera.lights[0].fit.pipeline().m_gamma[1];
  ASSERT_EQ(curve.size(), 512U);
  EXPECT_EQ(curve[0] + curve[1], 0.0);
  EXPECT_EQ(curve[510] + curve[511], 2.0);
  for (std::size_t i = 20; i < 510; i += 2) {  // the power part of the sRGB transfer
    EXPECT_NEAR(curve[i], static_cast<double>(i) / 510.0, 1e-6);
    EXPECT_NEAR(curve[i + 1], std::pow((std::min(rendered[i / 2], 1.0) + 0.055) / 1.055, 2.4),
                1e-6);
  }

  const Column whites[] = {kLightA, kD65};
  Matrix forward[2];
  for (int i = 0; i < 2; ++i) {
    const ChartFit& fit = camera.lights[i == 0 ? 1 : 0].fit;
    const Column gains = fit.exposure * columnOf(fit.whiteBalance);
    forward[i] = matrix("ForwardMatrix" + std::to_string(i + 1));
    EXPECT_LT(cv::norm(forward[i] - adapted(kD65, kD50) * kToXyz * matrixOf(fit)), 1e-3);

    Matrix exact = (adapted(kD65, whites[i]) * kToXyz * matrixOf(fit) * Matrix::diag(gains)).inv();
    const Column neutral = exact * whites[i];
    exact *= 1.0 / std::max({neutral[0], neutral[1], neutral[2]});
    EXPECT_LT(cv::norm(matrix("ColorMatrix" + std::to_string(i + 1)) - exact), 5e-3);
  }
  // A balanced neutral is (1, 1, 1) at any temperature; the reader mixes over 1 / temperature.
  for (int step = 0; step <= 8; ++step) {
    const Column xyz = (forward[0] * (8 - step) + forward[1] * step) * (1.0 / 8) * Column::ones();
    EXPECT_LT(cv::norm(xyz - kD50), 1e-12) << step;
  }
}

TEST_F(CameraProfile, RefusesLightsThatItCantName) {
  for (const auto& lights : {std::vector<Illum>{illum_Horizon},
                             {illum_LED},
                             {illum_A, illum_D50, illum_D65},
                             {illum_D65, illum_D65},
                             {illum_TL84, illum_Lowlight}})
    EXPECT_THROW(exportAs("dcp", knownCamera(lights)), JobError);
}

}  // namespace
}  // namespace greycard::exchange
