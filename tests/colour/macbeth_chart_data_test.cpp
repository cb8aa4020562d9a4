#include "greycard/macbeth_chart_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>

#include "greycard/errors.h"

namespace greycard {
namespace {

using testing::HasSubstr;

// A file of the given text, gone with the test.
class ChartFile {
 public:
  explicit ChartFile(const std::string& text)
      : path(std::filesystem::path(testing::TempDir()) /
             (std::string("chart_") +
              testing::UnitTest::GetInstance()->current_test_info()->name() + ".txt")) {
    std::ofstream(path, std::ios::binary) << text;
  }
  ChartFile(const ChartFile&) = delete;
  ~ChartFile() { std::filesystem::remove(path); }
  const std::filesystem::path path;
};

std::string lines(int count, const std::string& line = "50 1.5 -2\n") {
  std::string text;
  for (int i = 0; i < count; ++i) text += line;
  return text;
}

const struct {
  const char* name;
  std::string text;
  int rowsRead;           // by the forgiving call; 24 makes it true
  const char* complaint;  // of the strict call; null when it accepts
} kTexts[] = {
    // Name, text, rows read by the forgiving call, what the strict call complains of.
    {"plain", lines(24), 24, nullptr},
    {"dos, tabs, signs, exponents", lines(24, " +5e1\t15E-1 -2.0 \r\n"), 24, nullptr},
    {"byte order mark, no last newline", "\xEF\xBB\xBF" + lines(23) + "50 1.5 -2", 24, nullptr},
    {"blank lines after", lines(24) + "\n \n", 24, nullptr},
    {"23 lines", lines(23), 23, "line 24: the file has ended"},
    {"empty", "", 0, "line 1: the file has ended"},
    {"two numbers", lines(6) + "50 1.5\n" + lines(17), 6, "line 7: holds 2 values"},
    {"a word", lines(2) + "50 red 3\n" + lines(21), 2, "line 3: \"red\" is not a number"},
    {"commas", lines(24, "50,0 1,5 -2,0\n"), 0, "line 1: \"50,0\" is not a number"},
    {"comment at the end of a line", lines(24, "50 1.5 -2 x\n"), 24, "line 1: holds 4 values"},
    {"25 lines", lines(25), 24, "line 25: more text"},
    {"not a number", lines(23) + "50 nan 3\n", 24, "line 24: \"nan\" is not within"},
    {"bytes", std::string("\0\x80 \xff\n", 5) + lines(24), 0, "line 1: holds 2 values"},
    {"too long", lines(24) + std::string(70000, ' '), 24, "too long"},
    {"as long as it may be", lines(24) + std::string(65536 - 24 * 10, ' '), 24, nullptr},
    {"one byte longer", lines(24) + std::string(65537 - 24 * 10, ' '), 24, "too long"},
};

TEST(ChartFiles, ForgivingAndStrictReading) {
  for (const auto& c : kTexts) {
    SCOPED_TRACE(c.name);
    const ChartFile file(c.text);
    MacbethChartData chart;
    EXPECT_EQ(chart.LoadMCCCIELAB(file.path), c.rowsRead == 24);
    for (std::size_t i = 0; i < kPatchCount; ++i)
      EXPECT_EQ(chart.m_RefLab[i][0], static_cast<int>(i) < c.rowsRead ? 50.0 : 0.0) << i;

    MacbethChartData strict;
    try {
      strict.readReferenceLab(file.path);
      EXPECT_EQ(c.complaint, nullptr);
      EXPECT_EQ(strict.m_RefLab[23], (Vector3{50.0, 1.5, -2.0}));
    } catch (const FileError& error) {
      ASSERT_NE(c.complaint, nullptr) << error.what();
      EXPECT_THAT(error.what(), HasSubstr(c.complaint));
      EXPECT_THAT(error.what(), HasSubstr(file.path.string()));
      EXPECT_EQ(strict.m_RefLab, PatchTable{}) << "a refusal leaves the table";
    }
  }
}

TEST(ChartFiles, MissingFilesAreRefused) {
  MacbethChartData chart;
  for (const char* name : {"/no/such/file", "/"}) {
    EXPECT_FALSE(chart.LoadMCCCIELAB(std::filesystem::path(name)));
    EXPECT_FALSE(chart.LoadMCCsRGB(name));
    EXPECT_THROW(chart.readReferenceLab(name), FileError);
  }
  EXPECT_FALSE(chart.WriteMCC_CIELAB("/no/such/folder/file"));
  EXPECT_EQ(chart.m_RefLab, PatchTable{});
}

TEST(ChartFiles, WrittenOnesReadBackToSixDigits) {
  const ChartFile file("");
  MacbethChartData chart, again;
  EXPECT_TRUE(chart.LoadMCCCIELAB(illum_A));
  EXPECT_TRUE(chart.WriteMCC_CIELAB(file.path));
  again.readReferenceLab(file.path);
  for (std::size_t i = 0; i < kPatchCount; ++i)
    for (std::size_t c = 0; c < 3; ++c)
      EXPECT_NEAR(again.m_RefLab[i][c], chart.m_RefLab[i][c],
                  1e-5 * std::abs(chart.m_RefLab[i][c]));
}

TEST(ChartFiles, EightBitRgbBecomesLab) {
  const ChartFile file(lines(23, "255 255 255\n") + "255 256 255\n");
  MacbethChartData chart;
  ASSERT_TRUE(chart.LoadMCCsRGB(file.path));
  EXPECT_NEAR(chart.m_RefLab[0][0], 100.0, 1e-9);
  EXPECT_LT(std::hypot(chart.m_RefLab[0][1], chart.m_RefLab[0][2]), 0.03);
  EXPECT_EQ(chart.m_RGB, PatchTable{});
  EXPECT_THROW(chart.readReferenceSRgb(file.path), FileError);
  const ChartFile black("0 0 0\n" + lines(23, "255 255 255\n"));
  chart.readReferenceSRgb(black.path);
  EXPECT_NEAR(chart.m_RefLab[0][0], 0.0, 1e-9);
  EXPECT_NEAR(chart.m_RefLab[23][0], 100.0, 1e-9);
}

TEST(ChartData, ReferenceFromMeasuredRgb) {
  MacbethChartData chart;
  chart.m_RGB[0] = chart.m_RGB[5] = {0, 1, 0};
  chart.RefLabFromRGB();
  EXPECT_NEAR(chart.m_RefLab[5][0], 87.73, 0.01);  // sRGB green
  EXPECT_EQ(chart.m_RefLab[0], chart.m_RefLab[5]);
  EXPECT_STREQ(patchName(0), "dark skin");
  EXPECT_STREQ(patchName(5), "bluish green");
  EXPECT_THROW(patchName(24), std::out_of_range);
}

}  // namespace
}  // namespace greycard
