// C headers through a compiler, FileStorage through OpenCV, CSV, and the list of formats.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <opencv2/core.hpp>

#include "exchange_fixture.h"
#include "greycard/curve_source.h"
#include "greycard/errors.h"
#include "greycard/lut2d_table.h"
#include "greycard/names.h"

namespace greycard::exchange {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Prints entries of the arrays that a header declares.
std::vector<double> compiled(const std::string& header, const std::vector<std::string>& entries) {
  Folder folder;
  std::string program = "#include <stdio.h>\n#include \"tables.h\"\nint main(void) {\n";
  for (const std::string& entry : entries)
    program += "printf(\"%ld\\n\", (long)(" + entry + "));\n";
  folder.write("tables.h", header);
  folder.write("main.c", program + "return 0; }\n");
  return numbersIn(
      folder.shell(GREYCARD_COMPILER
                   " -x c -std=c99 -Wall -Wextra -Wpedantic -Werror main.c -o main && ./main"));
}

TEST(CHeader, Compiles) {
  const FittedCamera camera = knownCamera({illum_D65});
  EXPECT_THAT(
      compiled(exportAs("header", camera, {false, "7 Cam*/\n\"x"}).bytes,
               {"camera_7_Cam____x_matrix[1]", "camera_7_Cam____x_gains[0]",
                "sizeof camera_7_Cam____x_curve_blue / sizeof *camera_7_Cam____x_curve_blue",
                "camera_7_Cam____x_matrix[3] + camera_7_Cam____x_matrix[4] + "
                "camera_7_Cam____x_matrix[5]"}),
      ElementsAre(std::round(-0.6 * 65536), std::round(1.1 * 1.9 * 65536), 256, 65536));
  EXPECT_THAT(exportAs("header", camera, {false, "7"}).bytes, HasSubstr(" camera_7_matrix["));
  const CurveTables curve = curveTables(*curveByNameOrFile("VOutdoor").curve);
  EXPECT_THAT(compiled(exportAs("header", curve).bytes, {"greycard_curve[300]"}),
              ElementsAre(curve.channels[0].table[300]));
  EXPECT_THAT(
      compiled(exportAs("header", knownTable()).bytes,
               {"greycard_hue_change[37]", "greycard_saturation_change[37]", "greycard_hue[24]"}),
      ElementsAre(-12.5 * 65536, 8192, 360 * 65536));
  EXPECT_THAT(compiled(exportAs("header", knownNoise()).bytes,
                       {"greycard_noise[163]", "greycard_centre_sigma[0]"}),
              ElementsAre(65536 + 163 * 512, 2.5 * 65536));
}

TEST(OpenCvStorage, ReadsBackToTheBit) {
  const auto read = [](const Material& material, const std::string& name) {
    const cv::FileStorage storage(exportAs("opencv", material).bytes,
                                  cv::FileStorage::READ | cv::FileStorage::MEMORY);
    cv::Mat values;
    storage[name] >> values;
    return values;
  };
  const FittedCamera camera = knownCamera({illum_D65, illum_A});
  const cv::Mat matrix = read(camera, "matrix_A");
  ASSERT_EQ(matrix.size(), cv::Size(3, 3));
  for (int i = 0; i < 9; ++i)
    EXPECT_EQ(matrix.at<double>(i / 3, i % 3),
              camera.lights[1]
                  .fit.matrix[static_cast<std::size_t>(i / 3)][static_cast<std::size_t>(i % 3)]);
  EXPECT_EQ(read(camera, "curve").size(), cv::Size(256, 3));
  const CurveTables curve = curveTables(*curveByNameOrFile("VOutdoor").curve);
  EXPECT_EQ(read(curve, "curve").at<int>(0, 300), curve.channels[0].table[300]);
  EXPECT_EQ(read(knownTable(), "hue_change").at<double>(2, 5), -12.5);
  EXPECT_EQ(read(knownNoise(), "noise").at<double>(0, 64), 1.5);
}

TEST(Csv, HoldsARowForEach) {
  const auto row = [](const Material& material, std::size_t wanted) {
    std::istringstream lines(exportAs("csv", material).bytes);
    std::string line;
    for (std::size_t i = 0; i <= wanted; ++i) std::getline(lines, line);
    return line;
  };
  EXPECT_EQ(row(knownNoise(), 65), "64,1.5\r");
  EXPECT_EQ(row(knownTable(), 38).substr(0, 8), "2,5,30,0");
  EXPECT_THAT(row(knownTable(), 38), HasSubstr(",-12.5,0.125\r"));
  EXPECT_THAT(row(knownCamera({illum_D65, illum_A}), 25),
              HasSubstr("A,1,dark skin,0.05,0.1,0.06,"));
  CurveTables split;
  split.unified = false;
  for (std::int32_t c = 0; c < 3; ++c)
    split.channels[static_cast<std::size_t>(c)].table = {c, 9 + c};
  EXPECT_EQ(row(split, 2), "1,9,10,11\r");
}

TEST(Formats, HoldTheirKindsAndSoManyLights) {
  std::string list;
  for (const FormatInfo& info : formats()) {
    list += info.name + ":";
    for (const MaterialKind kind : info.kinds) list += std::to_string(static_cast<int>(kind));
    if (info.mostLights > 0) list += " up to " + std::to_string(info.mostLights);
    list += "\n";
  }
  EXPECT_EQ(list,
            "cube1d:01\ncube17:02\ncube33:02\ncube65:02\ncsv:0123\nheader:0123\nrpi:01\n"
            "rpi-pisp:01\nlibcamera:01\nopencv:0123\nicc:0\nicc2:0\ndcp:0 up to 2\n");
  EXPECT_THAT(formatNames(MaterialKind::Noise), ElementsAre("csv", "header", "opencv"));
  EXPECT_NO_THROW(checkFormat("dcp", MaterialKind::Fit, 2));
  EXPECT_THROW(checkFormat("dcp", MaterialKind::Fit, 3), JobError);
  EXPECT_THROW(exportAs("dcp", knownCamera({illum_D65, illum_A, illum_TL84})), JobError);
  EXPECT_THROW(exportAs("csv", knownCamera({illum_A, illum_A})), JobError);
  FittedCamera broken = knownCamera({illum_A});
  broken.lights[0].fit.matrix[0][0] = 2e6;
  EXPECT_THROW(updatedTuning("{}", broken), std::invalid_argument);
  broken = knownCamera({illum_A});  // with an exposure of 1.1
  broken.lights[0].fit.whiteBalance[0] = 29700.0;
  EXPECT_NO_THROW(exportAs("header", broken));
  broken.lights[0].fit.whiteBalance[0] = 29800.0;
  EXPECT_THROW(exportAs("header", broken), std::invalid_argument);
  broken.lights[0].fit.matrix = {{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 0.0}}};
  EXPECT_THROW(exportAs("dcp", broken), std::invalid_argument);  // no inverse
  EXPECT_THROW(updatedTuning(" \n", knownCamera({illum_A})), JobError);
  EXPECT_THROW(updatedTuning("{}", identityLut2d()), std::invalid_argument);
}

TEST(Formats, WhatCantBeMadeIsRefusedWithTheListOfThoseThatCan) {
  const std::string known = listed(formatNames(MaterialKind::Noise));
  for (const std::string name : {"cvs", "icc", ""}) {
    try {
      exportAs(name, knownNoise());
      ADD_FAILURE() << name;
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), HasSubstr(known));
    }
  }
  FittedCamera camera = knownCamera({illum_D65});
  camera.lights[0].fit.matrix[1][2] = std::numeric_limits<double>::quiet_NaN();
  for (const std::string& format : formatNames(MaterialKind::Fit)) {
    EXPECT_THROW(exportAs(format, camera), std::invalid_argument) << format;
    EXPECT_THROW(exportAs(format, FittedCamera()), std::invalid_argument) << format;
  }
  EXPECT_THROW(exportAs("csv", CurveTables()), std::invalid_argument);
  SigmaEstimate noise = knownNoise();
  noise.lut.back() = std::numeric_limits<double>::infinity();
  EXPECT_THROW(exportAs("csv", noise), std::invalid_argument);
  for (const double kelvin : {999.0, 25001.0})
    EXPECT_THROW(fittedLight(knownFit(illum_LED), kelvin), std::invalid_argument);
  for (const double kelvin : {1000.0, 25000.0})
    EXPECT_EQ(fittedLight(knownFit(illum_LED), kelvin).kelvin, kelvin);
}

}  // namespace
}  // namespace greycard::exchange
