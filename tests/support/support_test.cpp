#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <clocale>
#include <cmath>
#include <filesystem>
#include <string>
#include <utility>

#include "channels.h"
#include "convex_quad.h"
#include "greycard/diagnostics.h"
#include "greycard/files.h"
#include "greycard/names.h"
#include "greycard/number_text.h"
#include "greycard/version.h"
#include "numeric_error.h"
#include "text.h"

namespace greycard {
namespace {

using testing::ElementsAre;
namespace fs = std::filesystem;

TEST(Version, OfTheLibraryIsThatOfItsHeaders) {
  EXPECT_STREQ(libraryVersion(), GREYCARD_VERSION);
  EXPECT_EQ(libraryVersion(), std::to_string(GREYCARD_VERSION_MAJOR) + "." +
                                  std::to_string(GREYCARD_VERSION_MINOR) + "." +
                                  std::to_string(GREYCARD_VERSION_PATCH));
}

TEST(Text, SplitsAndParses) {
  EXPECT_THAT(splitText("0,0 64 80,,255 255", " ,"),
              ElementsAre("0", "0", "64", "80", "255", "255"));
  EXPECT_TRUE(splitText(" , ", " ,").empty());
  EXPECT_THAT(splitLines("a\r\n\nb"), ElementsAre("a", "", "b"));
  EXPECT_EQ(parseInt32("+2147483647"), 2147483647);
  EXPECT_EQ(parseDouble("-1.5e3"), -1500.0);
  for (const char* bad : {"", "+", "+-1", "1 ", "0x1", "2147483648", "1.0"})
    EXPECT_FALSE(parseInt32(bad)) << bad;
  for (const char* bad : {"", "1,5", "--1", "1e"}) EXPECT_FALSE(parseDouble(bad)) << bad;
  std::string_view line = "+1.5e1x";
  EXPECT_EQ(takeDouble(line), 15.0);
  EXPECT_FALSE(takeDouble(line));
  EXPECT_EQ(line, "x");
  EXPECT_EQ(withoutByteOrderMark("\xEF\xBB\xBF\xEF"), "\xEF");
  EXPECT_TRUE(equalIgnoringCase("TL84 \xC4@[", "tl84 \xC4@["));
  EXPECT_FALSE(equalIgnoringCase("\xC4", "\xE4"));
  EXPECT_EQ(parseDouble(std::string_view("12345").substr(0, 2)), 12.0);  // not beyond the end
  EXPECT_EQ(shown(" a\n~\x7f"), "\" a?~?\"");
  EXPECT_EQ(shown("abc", 3) + shown("abcd", 3), "\"abc\"\"abc...\"");
  EXPECT_EQ(shown(std::string(25, 'x')), "\"" + std::string(24, 'x') + "...\"");
}

TEST(Names, TheNearestIsOfferedWithinHalfTheLetters) {
  const std::vector<std::string> known{"VNormal", "VOutdoor", "TL84", "tl84"};
  const std::pair<const char*, const char*> cases[] = {
      {"vnormal", "; did you mean \"VNormal\"? Known: VNormal, VOutdoor, TL84, tl84"},
      {"VOutdor", "; did you mean \"VOutdoor\"?"},
      {"utdoor", "; did you mean \"VOutdoor\"?"},
      {"VOuXtdooY", "; did you mean \"VOutdoor\"?"},
      {"tL84", "; did you mean \"TL84\"?"},
      {"TLxy", "; did you mean \"TL84\"?"},
      {"xyTL8", "; known: "},  // three of five
      {"pqrstuvw", "; known: VNormal, VOutdoor, TL84, tl84"}};
  for (const auto& [name, says] : cases)
    EXPECT_EQ(unknownName("curve", name, known)
                  .find("there is no curve \"" + std::string(name) + "\"" + says),
              0U)
        << unknownName("curve", name, known);
  EXPECT_EQ(printable("a\n\x1f \x7f\xc3~"), "a?? ?\xc3~");
}

TEST(NumberText, WritesAndReadsPlainNumbers) {
  const double nan = std::nan(""), infinity = HUGE_VAL;
  const std::pair<std::string, const char*> cases[] = {{fixed(-0.004, 2), "0.00"},
                                                       {fixed(-0.006, 2), "-0.01"},
                                                       {fixed(2.5, 0), "2"},
                                                       {fixed(1.0, -3), "1"},
                                                       {fixed(nan, 2), "-"},
                                                       {fixed(-infinity, 2), "-"},
                                                       {general(-0.0, 4), "0"},
                                                       {general(12345.6, 3), "1.23e+04"},
                                                       {general(2.0 / 3.0, 0), "0.7"},
                                                       {general(nan, 3), "-"},
                                                       {exact(0.1F), "0.1"},
                                                       {exact(-nan), "nan"},
                                                       {exact(0.1 + 0.2), "0.30000000000000004"},
                                                       {exact(-infinity), "-inf"}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(text, expected);
  EXPECT_EQ(finiteNumbers("\t1, 2.5\r\n,-3e1 "), (std::vector<double>{1.0, 2.5, -30.0}));
  EXPECT_TRUE(finiteNumbers(" ,\n").empty());
  const std::pair<std::string, std::string> refusals[] = {
      {"1 inf", "\"inf\""},
      {"1;2", "\"1;2\""},
      {std::string(30, 'a') + "b", "\"" + std::string(30, 'a') + "\""}};
  for (const auto& refusal : refusals)
    EXPECT_THAT(
        [&] { finiteNumbers(refusal.first); },
        testing::ThrowsMessage<std::invalid_argument>(refusal.second + " is not a finite number"));
}

TEST(Text, FormatsAsTheCLocaleDoesWhateverTheLocale) {
  std::setlocale(LC_NUMERIC, "de_DE.UTF-8");  // takes effect only where it is installed
  EXPECT_EQ(formatFixed(-2.5, 1), "-2.5");
  EXPECT_EQ(formatFixed(2.5, 0), "2");
  EXPECT_EQ(formatGeneral(37.304871), "37.3049");
  EXPECT_EQ(formatGeneral(1e-7), "1e-07");
  EXPECT_EQ(formatFixed(1e300, 0).size(), 301u);
  std::setlocale(LC_NUMERIC, "C");
}

TEST(Files, AFailedWriteLeavesTheOldFileAndNoOther) {
  const fs::path folder = fs::path(testing::TempDir()) / "greycard files \xc3\xa9";
  fs::remove_all(folder);
  fs::create_directories(folder / "taken");
  writeWholeFile(folder / "a", std::string("x\0y", 3));
  EXPECT_EQ(readWholeFile(folder / "a").size(), 3u);
  EXPECT_THROW(writeWholeFile(folder / "taken", "over a folder"), FileError);
  EXPECT_THROW(readWholeFile(folder / "taken"), FileError);
  EXPECT_THROW(writeWholeFile(folder / "no such folder" / "a", ""), FileError);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 2);
  fs::permissions(folder / "a", fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink("a", folder / "link");
  fs::create_symlink("taken/new", folder / "dangling");
  for (const char* name : {"link", "dangling"}) {
    writeWholeFile(folder / name, "z");
    EXPECT_TRUE(fs::is_symlink(folder / name));
  }
  EXPECT_EQ(readWholeFile(folder / "a"), "z");
  EXPECT_EQ(fs::status(folder / "a").permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(readWholeFile(folder / "taken" / "new"), "z");
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);  // as of a shell's >(...)
  writeWholeFile("/dev/fd/" + std::to_string(ends[1]), "p");
  char received = ' ';
  EXPECT_EQ(::read(ends[0], &received, 1), 1);
  EXPECT_EQ(received, 'p');
  ::close(ends[0]);
  ::close(ends[1]);
  try {
    readWholeFile(folder / "missing");
    FAIL();
  } catch (const FileError& error) {
    EXPECT_EQ(error.what(),
              "can't read " + quoted(folder / "missing") + ": No such file or directory");
  }
}

TEST(ConvexQuad, TurnsOneWayAtEveryCorner) {
  const PatchQuad square{{{0, 0}, {4, 0}, {4, 3}, {0, 3}}};
  const PatchQuad concave{{{0, 0}, {4, 0}, {1, 1.5}, {0, 4}}};
  const std::pair<PatchQuad, bool> cases[] = {
      {square, true},
      {{{{0, 0}, {0, 3}, {4, 3}, {4, 0}}}, true},  // the other way round
      {concave, false},
      {{{{0, 0}, {2, 0}, {4, 0}, {0, 3}}}, false},  // straight
      {{{{0, 0}, {4, 0}, {std::nan(""), 3}, {0, 3}}}, false},
      {{{{0, 0}, {4, -1}, {HUGE_VAL, 5}, {0, 6}}}, false}};
  for (const auto& [quad, convex] : cases) EXPECT_EQ(isConvex(quad), convex) << quad[2].x;
  PatchQuads patches;
  patches.fill(square);
  patches[4] = concave;
  EXPECT_THAT([&] { requireConvex(patches); },
              testing::ThrowsMessage<std::invalid_argument>(
                  testing::StartsWith("patch 5: its corners 0,0 4,0 1,1.5 0,4 are not those")));
}

TEST(Diagnostics, ReachTheirListeners) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  writeOutput("out");
  writeError("err");
  EXPECT_EQ(testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr(),
            "outerr");
  std::string heard;
  setOutputChannel([&](std::string_view text) { heard += text; });
  writeOutput("to the host");
  EXPECT_EQ(std::exchange(heard, ""), "to the host");
  setOutputChannel({});
  EXPECT_FALSE(outputHasListener() || debugLogHasListener());
  setErrorChannel([&](std::string_view text) { heard += text; });
  printError("%d %s", 7, std::string(600, 'x').c_str());
  EXPECT_EQ(std::exchange(heard, ""), "7 " + std::string(509, 'x'));  // as long as its buffer
  EXPECT_THROW(nrerror("no luck"), NumericError);
  EXPECT_EQ(heard, "Numerical Recipes run-time error...\nno luck\n...now exiting to system...\n");
  setDebugLog([&](int level, std::string_view category, std::string_view text) {
    heard = std::to_string(level) + std::string(category) + std::string(text);
  });
  writeDebug(3, "DebugPrint", "hello");
  EXPECT_EQ(heard, "3DebugPrinthello");
  setDebugLog({});
  setErrorChannel({});
  EXPECT_FALSE(debugLogHasListener());
  printError("%s", "nobody hears this");
  EXPECT_EQ(heard, "3DebugPrinthello");
}

}  // namespace
}  // namespace greycard
