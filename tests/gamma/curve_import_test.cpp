#include "greycard/curve_import.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <functional>
#include <string>
#include <utility>

#include "golden.h"
#include "greycard/curve_source.h"

namespace greycard {
namespace {

using testing::HasSubstr;

GammaImport import(const std::string& text, bool fromPoints = false) {
  GammaCurveModel model(false);
  return importAnyCurve(model, "curve", text, {fromPoints});
}

std::string joined(int count, const std::function<std::string(int)>& item) {
  std::string text;
  for (int i = 0; i < count; ++i) text += item(i);
  return text;
}

// A code of 8 bits at i of 0..last along x^(1/2).
std::string rootOf(int i, int last) {
  return std::to_string(std::lround(255.0 * std::sqrt(static_cast<double>(i) / last)));
}

// All that an import tells, and a sum that every entry of the first table changes in its own way.
std::string told(const GammaImport& import) {
  std::string text;
  const auto add = [&text](const GammaImportNote& note) {
    text += "  " + noteText("f", note) + "\n";
  };
  if (import.refusal) add(*import.refusal);
  for (const GammaImportNote& note : import.notes) add(note);
  for (const auto& table : import.tables)
    if (table.numbers > 0)
      text +=
          "  " + std::to_string(table.numbers) + " of " + std::to_string(table.bits) + " bits\n";
  if (!import.curve) return text;
  return text + "  sum " + std::to_string(traceOf(*import.curve->Data())) + "\n";
}

struct FormCase {
  const char* name;
  std::string text;
  int entries;
  int channels = 1;
};

// Each holds 255 sqrt(x) rounded: straight lines between rounded samples are near the root but for
// the first steps.
TEST(CurveImport, TheSameCurveInEveryForm) {
  const auto list = [](int n, const char* separator) {
    return joined(n, [&](int i) { return (i > 0 ? separator : "") + rootOf(i, n - 1); });
  };
  const auto rows = [](int n, const std::function<std::string(const std::string&, int)>& row) {
    return joined(n, [&](int i) { return row(rootOf(i, n - 1), i); });
  };
  const FormCase cases[] = {
      {"plain numbers", list(1000, "\n"), 1000},
      {"a mark and comments", "\xEF\xBB\xBF# 7 of 9\r\n" + list(300, ",\r\n") + " // 8", 300},
      {"index and value",
       "index,code\n" +
           rows(200, [](auto& y, int i) { return std::to_string(i) + "," + y + "\n"; }),
       200},
      {"input and value",
       rows(101, [](auto& y, int i) { return std::to_string(5 * i) + "; " + y + "\n"; }), 101},
      {"R, G, B", rows(129, [](auto& y, int) { return y + "," + y + ",0\n"; }), 129, 3},
      {"input, R, G, B",
       rows(130,
            [](auto& y, int i) { return std::to_string(2 * i) + "\t" + y + "\t" + y + "\t0\n"; }),
       130, 3},
      {"cube",
       "TITLE \"x\"\nLUT_1D_SIZE 400\n" + rows(400,
                                               [](auto&, int i) {
                                                 const std::string y =
                                                     std::to_string(std::sqrt(i / 399.0));
                                                 return y + " " + y + " 0 # 5\n";
                                               }),
       400, 3},
      {"JSON list", "[" + list(333, ", ") + "]", 333},
      {"JSON points",
       "{\"points\": [" +
           rows(99,
                [](auto& y, int i) {
                  return (i > 0 ? ",[" : "[") + std::to_string(i) + "," + y + "]";
                }) +
           "]}",
       99},
      {"flat pairs in a tuning file",
       "{\"ccm\": [1, 0, 0], \"a\": {\"gamma_curve\": [" +
           rows(77, [](auto& y,
                       int i) { return (i > 0 ? "," : "") + std::to_string(3 * i) + "," + y; }) +
           "]}}",
       77},
      {"YAML points",
       "%YAML 1.1\n---\ncurve: # 4\n" +
           rows(90, [](auto& y,
                       int i) { return "  - x: " + std::to_string(i) + "\n    y: " + y + "\n"; }),
       90},
      {"YAML pairs",
       rows(91, [](auto& y, int i) { return "- " + std::to_string(i) + ", " + y + "\n"; }), 91},
      {"YAML flow",
       "red: [" + list(70, ",\n ") + "]\ngreen: !!tag\n  data: [" + list(70, ",") +
           "]\nblue: [0, 255]\n",
       70, 3},
      {"C array",
       "#define N 3\n/* 1, 2 */ static const uint8_t gamma[80] = { // 6\n" + list(80, "u, ") + "};",
       80},
      {"hexadecimal", "std::array<int, 3> lut{{0x00, 0xB4, 0xFFu}};", 3},
      {"C channels",
       "int g_r[]={" + list(88, ",") + "}, g_g[]={" + list(88, ",") + "}, g_b[]={0,255};", 88, 3}};
  std::string text;
  for (const FormCase& c : cases) {
    SCOPED_TRACE(c.name);
    const GammaImport got = import(c.text);
    text += c.name + ("\n" + told(got));
    ASSERT_TRUE(got.curve) << got.refusal->text;
    EXPECT_EQ(got.curve->IsUnified(), c.channels == 1);
    EXPECT_EQ(got.tables[0].numbers, static_cast<std::size_t>(c.entries));
    EXPECT_THAT(got.notes, testing::Contains(testing::Field(&GammaImportNote::text,
                                                            HasSubstr("resampled to 1024"))));
    const double step = 0.26 * std::sqrt(1.0 / (c.entries - 1));
    for (const auto& table : {*got.curve->Data(), *got.curve->DataG()})
      for (std::size_t i = 0; i < table.size(); ++i)
        EXPECT_NEAR(table[i] / 16383.0, std::sqrt(static_cast<double>(i) / 1023.0), step + 0.002)
            << i;
    EXPECT_EQ(*got.curve->DataB() == *got.curve->Data(), c.channels == 1);
  }
  expectGolden("gamma/golden/forms.txt", text);
}

TEST(CurveImport, CurveFilesReadAsEver) {
  const auto ramp = [](int n, int top) {
    return joined(n, [&](int i) { return std::to_string(top * i / (n - 1)) + " "; });
  };
  const std::string files[] = {
      ramp(64, 255), ramp(256, 1023) + "junk", ramp(512, 16383),
      "GammaTableV2: 3 " + ramp(255, 4095),
      "GammaTableV2: " + ramp(64, 255) + "GammaControlPointsV2: 0,9 255,200"};
  for (const std::string& file : files) {
    GammaCurveModel model(false);
    const GammaImport stated = model.ImportText("curve", file), got = import(file);
    ASSERT_TRUE(stated.curve && got.curve);
    EXPECT_EQ(*got.curve->Data(), *stated.curve->Data());
    EXPECT_EQ(got.notes.size(), stated.notes.size() + (file.ends_with("200") ? 1 : 0));
  }
  const GammaImport low = import(ramp(63, 900) + "200");
  EXPECT_THAT(low.notes.at(0).text, HasSubstr("the largest value, 900, doesn't fit the 8 bits"));
}

TEST(CurveImport, ControlPointsAloneMakeACurve) {
  GammaCurveModel model(false);
  const std::string points = "0,0 64,140 255,250", zeros = joined(64, [](int) { return "0 "; });
  GammaCurve through("through", model);
  through.SetControlPoints(ColorChannel::All, points);
  through.CalculateCurve();
  for (const std::string& text :
       {"GammaControlPointsV2: " + points, std::string("[[0,0],[64,140],[255,250]]"),
        std::string("0,0\n64,140\n255,250"),
        "GammaTable: " + zeros + "GammaControlPoints: " + points})
    EXPECT_EQ(*import(text, true).curve->Data(), *through.Data()) << text;
  const GammaImport three = import(
      "GammaControlPointsV2R: 0,0 255,9 GammaControlPointsV2G: 0,0 "
      "255,19 GammaControlPointsV2B: 0,0 255,255");
  ASSERT_TRUE(three.curve);
  EXPECT_FALSE(three.curve->IsUnified());
  EXPECT_EQ(three.curve->DataG()->at(1020), 19 * 64);
}

TEST(CurveImport, StandardCurvesComeBack) {
  GammaCurveModel model(false);
  for (const auto& curve : {model.GenerateHDRCurve(10000), model.GenerateHLGCurve()}) {
    std::string codes;
    for (std::size_t i = 0; i < 257; ++i) codes += std::to_string(curve->Data()->at(i)) + "\n";
    const GammaTable table = *import(codes).curve->Data();
    EXPECT_EQ(table, *curveByNameOrFile(curve->Name()).curve->Data());
    EXPECT_EQ(table.back(), 16383);
    // Index 512 is the input 2049.5 of 12 bits, a part of 1.5 / 16 behind code 128.
    const double code =
        curve->Data()->at(128) + 1.5 / 16 * (curve->Data()->at(129) - curve->Data()->at(128));
    EXPECT_NEAR(table[512], 16383.0 / 1023.0 * code, 1.0);
  }
}

TEST(CurveImport, WhatIsWrongIsSaidWithItsPlace) {
  struct Case {
    std::string text;
    std::size_t line, column;
    const char* why;
  };
  const Case cases[] = {
      {"1 2 3\n4 x 6", 2, 3, "this is no number"},
      {"0 1 2\n\n-3 9", 3, 1, "lie at 0 or above"},
      {"0 1 99999", 1, 5, "16 bits at most"},
      {"0,0\n1,5\n2\n3,9", 3, 1, "holds 1 numbers where those before hold 2"},
      {"7 # 5", 1, 0, "1 values where a curve has 2 to 65536"},
      {"[0, 1, \"a\"]", 1, 8, "no number"},
      {"[0, 1\n", 1, 1, "never closed"},
      {"{\"a\": [0, 1], \"b\": [0, 2]}", 1, 20, "could both be the curve"},
      {"[[0, 0], [1]]", 1, 10, "2 numbers is wanted"},
      {"points:\n  - [5, 0]\n  - [5, 9]", 3, 6, "inputs must rise"},
      {"a: 1\n b: 2", 2, 2, "doesn't fit"},
      {"int a[] = {1,\n 2, b};", 2, 5, "this is no number"},
      {"int a[] = {010, 9};", 1, 12, "octal"},
      {"/* 1 2", 1, 1, "never ends"},
      {"LUT_3D_SIZE 2", 1, 1, "three dimensions"},
      {"LUT_1D_SIZE 3\n0 0 0\n1 1 1", 3, 0, "after 2 of the 3 rows"},
      {"LUT_1D_SIZE 2\n0 0 0\n1 nan 1", 3, 3, "finite"},
      {std::string(70, '['), 1, 66, "deeper than 64"},
      {"GammaControlPointsV2: 9,1 9,2", 1, 0, "increasing X"},
      {"[0, 9] 7", 1, 8, "the document has ended"},
      {"[\"a", 1, 2, "the text that begins here"},
      {"{\"a\" 5}", 1, 6, "a \":\" is wanted"},
      {"[1 2]", 1, 4, "a comma or \"]\" is"},
      {"[[0,1,2,3,4],[0,1,2,3,5]]", 1, 14, "item 1 and item 2 could"},
      {"[{\"x\":0,\"y\":3},{\"x\":4}]", 1, 16, "with the numbers x and y"},
      {"{\"gamma_curve\":[0,0,9]}", 1, 16, "these numbers"},
      {"{\"x\":[0,1,2],\"y\":[0,5]}", 1, 7, "there are 3 inputs for 2"},
      {"{\"x\":[-1,2],\"y\":[0,5]}", 1, 7, "an input"},
      {"{\"bits\":8,\"table\":[0,256,9]}", 1, 22, "takes more than the 8"},
      {"int a[] = {1, 2", 1, 11, "the bracket"},
      {"LUT_1D_SIZE 1", 1, 13, "a curve of 2"},
      {"LUT_1D_SIZE 65537", 1, 13, "a curve of 2"},
      {"DOMAIN_MAX 2 2 1", 1, 16, "a domain"},
      {"LUT_1D_SIZE 2\n 0 0", 2, 2, "three numbers are wanted in this line, not 2"},
      {"LUT_1D_SIZE 2\n0 0 0\n0 0 0\n.5 0 0", 4, 1, "there are more than the 2"},
      {"LUT_1D_SIZE 2\nDOMAIN_MIN 1 1 1\n0 0 0\n1 1 1", 0, 0, "the domain's end"},
      {"0,\"5\n1,7", 1, 3, "this is no number"}};
  std::string text;
  for (const Case& c : cases) {
    const GammaImport got = import(c.text);
    ASSERT_TRUE(got.refusal) << c.text;
    text += c.text.substr(0, 40) + "\n" + told(got);
    EXPECT_THAT(got.refusal->text, HasSubstr(c.why)) << c.text;
    EXPECT_EQ(got.refusal->line, c.line) << c.text;
    EXPECT_EQ(got.refusal->column.value_or(0), c.column) << c.text;
  }
  expectGolden("gamma/golden/refusals.txt", text);
  EXPECT_THAT(import("GammaTable: 1 2", true).refusal->text, HasSubstr("holds 2 numbers"));
  EXPECT_THAT(import("[0, 9]", true).refusal->text, HasSubstr("no control points"));
}

// Entries 0, 341 (a third) and 1023 of red, and 341 of blue; 16383 is three times 5461.
TEST(CurveImport, EveryReadersValues) {
  const auto ramp = [](int step) {
    return joined(64, [&](int i) { return (i ? "," : "[") + std::to_string(step * i); }) + "]";
  };
  const std::pair<std::string, std::array<std::int32_t, 4>> cases[] = {
      {"char s[] = \"{9, 9}\"; int a[] = {0, 255};", {0, 5461, 16383, 5461}},
      {"[[0,0,0,0,255],[0,0,0,0,9],[255,0,255,0,0]]", {0, 0, 16383, 5461}},
      {"[[0,0,0,255],[1,85,0,85],[3,255,3,0]]", {0, 5461, 16383, 5461}},
      {"{\"table\":[0,255],\"table_green\":[3,4],\"table_blue\":[255,0]}", {0, 5461, 16383, 10922}},
      {"{\"x\":[0,1,3], # 5,\n\"y\":[255,85,0]}", {16383, 5461, 0, 5461}},
      {"{\"bits\":16,\"table\":[0,4369]}", {0, 364, 1092, 364}},
      {"{\"output_bits\":12,\"codes\":[0,1365]}", {0, 1820, 5461, 1820}},
      {ramp(4), {0, 5456, 63 * 256 + 15 * 15, 5456}},  // as a curve file's, up to full scale
      {ramp(256), {0, 5456, 63 * 256 + 15 * 15, 5456}},
      {ramp(1040), {0, 5460, 16379, 5460}},  // 65520 of 65535
      {"LUT_1D_SIZE 3\nDOMAIN_MAX 2 2 2\n0 0 0\n1 0 1\n0 0 1", {0, 5461, 16383, 5461}},
      {"LUT_1D_SIZE 3\nDOMAIN_MAX 6 6 6\n0 0 0\n1 0 0\n0 0 1", {0, 1820, 5461, 0}},
      {"LUT_1D_SIZE 3\nDOMAIN_MAX 254 254 254\n0 0 0\n1 0 0\n1 0 1", {0, 43, 129, 0}},
      {"LUT_1D_SIZE 3\nDOMAIN_MAX 255 255 255\n0 0 0\n1 0 0\n1 0 1", {0, 10922, 16383, 0}},
      {"LUT_1D_SIZE 3\nDOMAIN_MIN -1 -1 -1\n1 0 1\n0 0 1\n1 0 0", {0, 5461, 16383, 10922}},
      {"\"0\",\"255\"\n\"3\",\"0\"", {16383, 10922, 0, 10922}}};
  for (const auto& [text, codes] : cases) {
    const GammaCurvePtr curve = import(text).curve;
    ASSERT_TRUE(curve) << text;
    const GammaTable red = *curve->Data();
    EXPECT_EQ((std::array{red[0], red[341], red[1023], curve->DataB()->at(341)}), codes) << text;
  }
  for (const char* list : {"0 1 2\n2 4 5", "0 3 3\n5 9 9", "0,9,1,\n5,9,2", "0,1,2,3,4\n5"})
    EXPECT_EQ(import(list).tables[0].numbers, 6U) << list;
  for (const char* columns :
       {"0,1,2\n3,4,5", "0 1 2\n3 4 1", "0 9\n5 3", "0,3\n5,9", "0 7\n1 9", "0 1\n1 1"})
    EXPECT_EQ(import(columns).tables[0].numbers, 2U) << columns;
}

// Forms are told apart by little.
TEST(CurveImport, FormsAreKnownByTheirFirstLines) {
  const char* const texts[] = {"{1, 5}",
                               "{\"a\": [1, 5]}",
                               "{a: [1, 5]}",
                               "{Z: [1, 5]}",
                               "{_k: [1, 5]}",
                               "{ 0x1, 0x5 }",
                               "{\n\t\"x\": [0, 7]}",
                               "int A_9[] = {1, 5};",
                               "Zed{1, 5}",
                               "// n\nlut{1, 5}",
                               "gamma: [1, 5]",
                               "\"gamma\": [1, 5]",
                               "9a: [1, 5]",
                               "--- # x\na: [1, 5]",
                               "---\na: [1, 5]",
                               "- 1\n- 5",
                               "DOMAIN_MIN 0 0 0\nLUT_1D_SIZE 2\n0 0 0\n1 1 1",
                               "LUT_IN_VIDEO_RANGE\nLUT_1D_SIZE 2\n0 0 0\n1 1 1",
                               "LUT_1D_SIZE 2\nLUT_1D_INPUT_RANGE 0 1\n0 0 0\n1 1 1",
                               "x 1, 2",
                               "",
                               "#",
                               "GammaTable:",
                               "{\"a\": {\"b\": 3}}",
                               "{}",
                               "a[2] = {0.5, 1}; b[2] = {0, 1};",
                               "x,y\n0,0\n255,90\n",
                               "[[0, 0], [10, 300], [255, 255]]",
                               "0,0 5,5\n9,9",
                               "0 1023",
                               "0 9 4095",
                               "0 9 16383",
                               "0 65535"};
  std::string text;
  for (const char* form : texts) text += form + ("\n" + told(import(form)));
  text += told(import("[[0, 0], [100, 77], [255, 90]]")) + told(import("0 5 9 30\n", true));
  expectGolden("gamma/golden/first_lines.txt", text);
}

TEST(CurveImport, WhatIsDoubtfulIsNoted) {
  const auto notes = [](const std::string& text) {
    std::string all;
    for (const auto& note : import(text).notes) all += note.text + "\n";
    return all;
  };
  EXPECT_THAT(notes("0 9 # 12\n200"), HasSubstr("numbers in comments"));
  EXPECT_THAT(notes("0 700 1000 30"), HasSubstr("takes 10 bits, the last, 30, only 8"));
  EXPECT_THAT(notes("LUT_1D_SIZE 2\n-1 0 0\n1 1 2"), HasSubstr("2 values outside 0 to 1"));
  EXPECT_THAT(notes("[[0.1, 0.2], [0.5, 0.7]]"), HasSubstr("level beyond"));
  EXPECT_THAT(notes("GammaControlPointsV2: 0,0 255,200 zz"), HasSubstr("not understood; skipped"));
  EXPECT_EQ(notes("0.5 1"), "2 values are resampled to 1024 entries by straight lines\n");
}

}  // namespace
}  // namespace greycard
