// Curves and remarks as texts beside this file.

#include <gtest/gtest.h>

#include <numeric>
#include <string>

#include "builtin_curves.h"
#include "gamma_curve_lib.h"
#include "golden.h"
#include "greycard/diagnostics.h"
#include "greycard/gamma_curve_model.h"

namespace greycard {
namespace {

// Every step-th entry, and the sum of all.
std::string listed(std::span<const std::int32_t> table, std::size_t step) {
  std::string text;
  for (std::size_t i = 0; i < table.size(); i += step) text += std::to_string(table[i]) + " ";
  return text + "sum " + std::to_string(std::accumulate(table.begin(), table.end(), 0LL)) + "\n";
}

TEST(GoldenCurves, Presets) {
  std::string text;
  for (const auto& [name, table] : builtinCurves())
    text += std::string(name) + " " + listed(table, 7);
  expectGolden("gamma/golden/presets.txt", text);
}

TEST(GoldenCurves, StandardCurvesOfHighDynamicRange) {
  GammaCurveModel model(false);
  std::string text;
  for (const int nits : {10000, 1000, 400, 1})
    text += std::to_string(nits) + " cd/m2: " + listed(*model.GenerateHDRCurve(nits)->Data(), 1);
  text += "HLG: " + listed(*model.GenerateHLGCurve()->Data(), 1);
  for (const std::int32_t type : {0, 1, 2, 3, 4, 5, 6}) {
    GammaCurveLib lib(type == 2 ? 300 : 65, static_cast<CurveType>(type));
    const bool scaled = lib.set_yScale(32) && lib.set_xScale(8);
    EXPECT_TRUE(scaled && !lib.set_xScale(3) && !lib.set_yScale(0) && lib.set_yScale(16));
    text += "type " + std::to_string(type) + ": " + listed(lib.get_curve(), 4);
    lib.generateByHLG();
    EXPECT_TRUE(lib.get_type() == CurveType::HLG && lib.set_maxNits(1) && !lib.set_maxNits(10001));
    text += "by HLG: " + listed(lib.get_curve(), 4);
    lib.generateByHDR10();
    EXPECT_TRUE(lib.get_type() == CurveType::HDR10 && lib.set_xScale(1));
    text += "by HDR10 at 1 cd/m2: " + listed(lib.get_curve(), 4);
    lib.generateByHLG();
    text += "by HLG, other grid: " + listed(lib.get_curve(), 4);
  }
  expectGolden("gamma/golden/hdr_curves.txt", text);
}

// The failed samples on the way to the few points that reproduce each preset, and their curve.
TEST(GoldenCurves, PointsOfThePresets) {
  GammaCurveModel model(true);
  std::string text;
  for (const std::string& name : model.GetNames()) {
    const auto curve = model.AddGammaCurve("of " + name, name);
    setDebugLog([&](int level, std::string_view category, std::string_view trace) {
      text += std::to_string(level) + std::string(category) + std::string(trace);
    });
    curve->GenerateControlPoints(ColorChannel::All);
    setDebugLog({});
    curve->CalculateCurve();
    text += name + *curve->GetControlPointsAsString(ColorChannel::All) + ": " +
            listed(*curve->Data(), 64);
  }
  expectGolden("gamma/golden/preset_points.txt", text);
}

std::string numbers(int count, int last) {
  std::string text;
  for (int i = 0; i < count; ++i) text += std::to_string(i + 1 < count ? i : last) + " ";
  return text + "\n";
}

// What is said about each file, and what became of it.
TEST(GoldenCurves, RemarksOnFiles) {
  const std::string table = "GammaTableV2:\n" + numbers(64, 255), r = "GammaTableV2R: ",
                    g = "GammaTableV2G: ", b = "GammaTableV2B: ", eight = numbers(64, 255);
  const std::string threeTables = r + eight + g + numbers(256, 1023) + b + numbers(512, 4095);
  std::string hundredWords, manyPoints = "GammaControlPoints:\n";
  for (int i = 0; i < 100; ++i) hundredWords += "word" + std::string(60, 'x') + "\n";
  for (int i = 0; i < 513; ++i) manyPoints += std::to_string(i) + ",7 ";
  const std::string files[] = {
      // Texts of curve files.
      "",
      "GammaTableV2G:\n1 2",
      "\n" + numbers(63, 255),
      "GammaTableV2R:\n\n" + numbers(65, 255),
      table,
      numbers(1024, 16383) + "junk 1.5\nmore",
      hundredWords + table,
      table + "word word2 word3 word4 word5",
      table + "word word2 word3 word4 word5 word6",
      table + g + eight,
      table + b + eight,
      table + g + numbers(63, 1) + b + eight,
      table + g + eight + b + numbers(63, 1),
      table + "GammaControlPointsV2G:\n1 2 3 4",
      table + "GammaControlPointsV2:\n0 0 9 9",
      table + "GammaControlPointsV2:\n0 0 9 9 9 9",
      table + "GammaControlPointsV2:\n0 0 9",
      table + "GammaControlPoints:\n5 0 4 0 7 0",
      table + manyPoints,
      table + manyPoints.substr(0, manyPoints.size() - 6),
      threeTables,
      threeTables + "GammaControlPointsV2R: 0 0 9 9",
      threeTables + "GammaControlPointsV2R: 0 0 9 9 GammaControlPointsV2G: 1\n" +
          "GammaControlPointsV2B: 0 0 8 8 8",
      threeTables + "GammaControlPointsV2R: 0 0 9 9\nGammaControlPointsV2G: 0 0 9 9\n" +
          "GammaControlPointsV2B: 0 0 8 8 8"};
  std::string text;
  for (const auto& [perChannel, bits] : {std::pair{true, 14}, {false, 14}, {true, 32}})
    for (const std::string& file : files) {
      GammaCurveModel model(false);
      model.SetRGBGamma(perChannel);
      model.SetGammaBitSize(bits);
      const GammaImport import = model.ImportText("x", file);
      const auto say = [&](const char* what, const GammaImportNote& note) {
        text += std::string("  ") + what + " line " + std::to_string(note.line) + " \"" +
                note.token + "\": " + note.text + "\n";
      };
      if (bits == 32 && &file != &files[4]) continue;
      text += "file " + std::to_string(&file - files) + (import.curve ? " taken" : " refused") +
              ", tables";
      for (const auto& t : import.tables)
        text += " " + std::to_string(t.numbers) + "x" + std::to_string(t.bits);
      text += "\n";
      if (import.refusal) say("refusal", *import.refusal);
      for (const GammaImportNote& note : import.notes) say("note", note);
    }
  expectGolden("gamma/golden/import_remarks.txt", text);
}

}  // namespace
}  // namespace greycard
