#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <locale>
#include <string>
#include <vector>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/gamma_curve_model.h"

namespace greycard {
namespace {

using testing::HasSubstr;

class CurveFile : public testing::Test {
 protected:
  // Any UTF-8 may stand in a path.
  CurveFile()
      : folder(testing::TempDir() + "curve_file \u2192 \u66f2\u7dda " +
               std::to_string(::getpid())) {
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
  }
  ~CurveFile() override { std::filesystem::remove_all(folder); }

  GammaCurvePtr import(const std::string& text) {
    writeWholeFile(folder / "curve.txt", text);
    return model.ImportFromFile(folder / "curve.txt");
  }

  std::filesystem::path folder;
  GammaCurveModel model{false};
};

std::string numbers(int count, int first = 0, int step = 1) {
  std::string text;
  for (int i = 0; i < count; ++i) text += std::to_string(first + i * step) + ' ';
  return text;
}

// An export known byte for byte: a power curve of 1/2.2, two control points, 64 values of 10 bits.
constexpr std::string_view kKnownExport =
    "GammaTableV2:\r\n"
    "  0, 154, 211, 254, 290, 321, 349, 374, 398, 419, 440, 460, 478, 496, 513, 529,\n"
    "545, 560, 575, 589, 603, 617, 630, 643, 655, 668, 680, 691, 703, 714, 725, 736,\n"
    "747, 758, 768, 778, 788, 798, 808, 817, 827, 836, 845, 854, 863, 872, 881, 890,\n"
    "898, 907, 915, 923, 932, 940, 948, 956, 964, 971, 979, 987, 994, 1002, 1009, 1017\n"
    "\r\n"
    "GammaControlPointsV2:\r\n"
    " 0,0 255,255\r\n";

struct CommaNumbers : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST_F(CurveFile, KnownExportWhateverTheLocale) {
  const auto curve = model.AddGammaCurve("power", 2.2, 16383);
  curve->SetControlPoints(ColorChannel::All, "0,0 255,255");
  const std::locale before =
      std::locale::global(std::locale(std::locale::classic(), new CommaNumbers));
  for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8"}) std::setlocale(LC_ALL, name);
  EXPECT_TRUE(curve->ExportToFile(folder / "power.txt", 64, 10));
  const auto read = model.ImportFromFile(folder / "power.txt");
  std::locale::global(before);
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(readWholeFile(folder / "power.txt"), kKnownExport);
  ASSERT_TRUE(read);
  EXPECT_EQ((*read->Data())[1023 - 15], 1017 << 4);
  EXPECT_EQ(*read->ControlPoints(), (ControlPointList{{0, 0}, {255, 255}}));
}

// Each value sits where its entry was, so a second export has the same bytes.
TEST_F(CurveFile, EverySizeAndDepthComesBack) {
  const auto curve = model.AddGammaCurve("power", 2.2, 16383);
  curve->SetIsUnified(false);
  for (std::size_t i = 0; i < 1024; ++i) (*curve->DataG())[i] = static_cast<std::int32_t>(16 * i);
  for (const ColorChannel c : {ColorChannel::Red, ColorChannel::Green, ColorChannel::Blue})
    curve->SetControlPoints(c, "0,0 100,7 255,255");
  for (const bool unified : {false, true}) {
    curve->SetIsUnified(unified);
    for (const std::int32_t size : {64, 256, 512, 1024})
      for (const std::int32_t bits : {8, 10, 12, 14}) {
        SCOPED_TRACE(std::to_string(size) + " values of " + std::to_string(bits) + " bits");
        ASSERT_TRUE(curve->ExportToFile(folder / "curve.txt", size, bits));
        const std::string text = readWholeFile(folder / "curve.txt");
        const auto read = model.ImportFromFile(folder / "curve.txt");
        ASSERT_TRUE(read);
        EXPECT_EQ(read->IsUnified(), unified);
        EXPECT_TRUE(read->IsDirty() && !read->IsImmutable() && read->IsEditable());
        EXPECT_EQ(read->GetFileText(size, bits), text);
        const std::size_t step = 1024 / static_cast<std::size_t>(size);
        for (std::size_t i = 0; i < 1024; i += step)
          ASSERT_EQ((*read->DataG())[i], (*curve->DataG())[i] >> (14 - bits) << (14 - bits));
        EXPECT_TRUE(size < 1024 || bits < 14 || *read->DataB() == *curve->DataB());
      }
  }
  EXPECT_EQ(model.GetNames().size(), 33u);
}

TEST_F(CurveFile, WhatIsWrittenWithoutSomeListsOrTables) {
  const auto curve = model.AddGammaCurve("power", 2.2, 16383);
  curve->SetIsUnified(false);
  curve->SetControlPoints(ColorChannel::Red, "0,0 9,9");
  EXPECT_THAT(*curve->GetFileText(64, 8), testing::StartsWith("GammaTableV2R:\r\n"));
  EXPECT_THAT(*curve->GetFileText(64, 8), HasSubstr("\n\r\nGammaTableV2B:\r\n"));
  EXPECT_THAT(*curve->GetFileText(64, 8), testing::Not(HasSubstr("ControlPoints")));
  curve->SetControlPoints(ColorChannel::Green, "0,0 9,9");
  curve->SetControlPoints(ColorChannel::Blue, "0,0 9,9");
  curve->SetControlPoints(ColorChannel::Red, std::make_shared<ControlPointList>());
  EXPECT_THAT(*curve->GetFileText(64, 8), testing::Not(HasSubstr("ControlPoints")));
  curve->SetControlPoints(ColorChannel::Red, "0,0 9,9");
  EXPECT_THAT(*curve->GetFileText(64, 8), HasSubstr("\nGammaControlPointsV2B:\r\n 0,0 9,9\r\n"));
  model.SetRGBGamma(false);  // the curve's own flag counts
  EXPECT_THAT(*curve->GetFileText(64, 8), HasSubstr("GammaTableV2G:"));
  curve->SetGammaTable(ColorChannel::Green, nullptr);
  EXPECT_THAT(*curve->GetFileText(64, 8), testing::StartsWith("GammaTableV2:\r\n"));
  EXPECT_THAT(*curve->GetFileText(64, 8),
              testing::EndsWith("GammaControlPointsV2:\r\n 0,0 9,9\r\n"));
}

TEST_F(CurveFile, FailedExportLeavesTheEarlierFile) {
  const auto path = folder / "curve.txt";
  writeWholeFile(path, "earlier");
  const auto curve = model.AddGammaCurve("power", 2.2, 16383);
  for (const auto& [size, bits] : {std::pair{0, 14}, {1025, 14}, {-1, 8}, {64, -18}, {64, 46}})
    EXPECT_FALSE(curve->ExportToFile(path, size, bits)) << size << ' ' << bits;
  for (const std::size_t entries : {0u, 1u}) {
    curve->SetGammaTable(ColorChannel::All, std::make_shared<GammaTable>(entries));
    EXPECT_FALSE(curve->ExportToFile(path, 64, 14)) << entries;
  }
  EXPECT_EQ(readWholeFile(path), "earlier");
  EXPECT_FALSE(model.AddGammaCurve("other")->ExportToFile(folder / "none" / "x.txt", 64, 14));
  EXPECT_FALSE(model.AddGammaCurve("third")->ExportToFile(folder, 64, 14));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}),
            1);  // nothing beside it
}

TEST_F(CurveFile, ReadsNumbersWhereverTheyStand) {
  const auto bare = import(numbers(255) + "\n\n,255");
  ASSERT_TRUE(bare);
  EXPECT_EQ(bare->Name(), "curve");
  EXPECT_TRUE(bare->IsUnified() && !bare->IsEditable());
  EXPECT_EQ((*bare->Data())[4 * 100], 100 << 6);

  // Older keywords, continued lists, words that mean nothing, and an odd number of coordinates.
  const auto older = import("GammaControlPoints: 0,0 \r\nGammaTable: junk " + numbers(100) +
                            "\rGammaControlPoints: 64 80 255\ngammatable: 255 9\nGammaTable:" +
                            " 9999999999 1.5 " + numbers(156, 100));
  ASSERT_TRUE(older);
  EXPECT_EQ(older->Name(), "curve1");
  EXPECT_EQ(*older->Data(), *bare->Data());
  EXPECT_EQ(*older->ControlPoints(), (ControlPointList{{0, 0}, {64, 80}, {255, 255}}));

  const auto channels = import(numbers(64, 0, 4) + "GammaTableV2G: " + numbers(256) +
                               "GammaTableV2B: " + numbers(64, 0, 3));
  ASSERT_TRUE(channels);
  EXPECT_FALSE(channels->IsUnified());
  EXPECT_EQ((*channels->DataG())[4], 64);
  EXPECT_EQ((*channels->DataB())[16], 3 * 64);
  EXPECT_EQ(import("GammaTableV2G: " + numbers(64) + "GammaTableV2B: " + numbers(64)), nullptr);
}

TEST_F(CurveFile, RefusalsLeaveTheCatalogue) {
  for (const std::string& text : {std::string(), "GammaTableV2R:\n" + numbers(100), numbers(5000),
                                  std::string(3 << 20, 'x') + std::string(1 << 20, '\0')}) {
    EXPECT_EQ(import(text), nullptr);
    EXPECT_TRUE(model.ImportWithReport(folder / "curve.txt").refusal);
  }
  EXPECT_THROW(model.ImportFromFile(folder / "none.txt"), FileError);
  EXPECT_THROW(model.ImportFromFile(folder), FileError);
  EXPECT_TRUE(model.GetNames().empty());

  for (int i = 0; i < 999; ++i) model.AddGammaCurve("none" + (i ? std::to_string(i) : ""));
  EXPECT_EQ(model.ImportFromFile(folder / "none.txt"), nullptr);  // not even read
  const auto refusal = *model.ImportText("none", numbers(64)).refusal;
  EXPECT_EQ(refusal.line, 0u);
  EXPECT_EQ(
      refusal.text,
      "the catalogue already holds \"none\" and the same name with 1 to 998 behind; rename the "
      "file or delete a curve");
  model.DeleteGammaCurve("none998");
  EXPECT_EQ(model.ImportText("none", numbers(64)).curve->Name(), "none998");
}

}  // namespace
}  // namespace greycard
