// The frame of the command: help, exit statuses, messages, and what happens to files.

#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

#include "greycard/files.h"
#include "run_command.h"

namespace greycard {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST_F(CommandTest, HelpHasAnExampleEverywhere) {
  const std::vector<std::vector<std::string>> commands{{},
                                                       {"simulate"},
                                                       {"chart"},
                                                       {"ccm"},
                                                       {"evaluate"},
                                                       {"info"},
                                                       {"apply"},
                                                       {"gamma"},
                                                       {"gamma", "list"},
                                                       {"gamma", "show"},
                                                       {"gamma", "lut"},
                                                       {"lut2d"},
                                                       {"lut2d", "apply"},
                                                       {"ae"},
                                                       {"ae", "luma-match"},
                                                       {"wb-map"},
                                                       {"skin"}};
  for (auto words : commands) {
    SCOPED_TRACE(testing::PrintToString(words));
    words.push_back("--help");
    const auto outcome = run(words);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("Example:\n  greycard "));
    EXPECT_EQ(outcome.err, "");
  }
  EXPECT_THAT(run({"--version"}).out, testing::MatchesRegex("greycard [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

struct Failure {
  std::vector<std::string> words;
  int status;
  const char* says;
};

TEST_F(CommandTest, FailuresAreOneLineAndAStatus) {
  writeWholeFile(folder / "text.png", "not a picture");
  const Failure failures[] = {
      {{}, 2, "required"},
      {{"simulat"}, 2, "did you mean \"simulate\"?"},
      {{"--bogus"}, 2, "--bogus"},
      {{"gamma"}, 2, "a sub-command is required; known: list, show"},
      {{"gamma", "list", "more"}, 2, "\"more\" is one argument too many"},
      {{"gamma", "import", "a.txt", "--size", "64"}, 2, "--size requires --export"},
      {{"gamma", "shwo", "VNormal"}, 2, "did you mean \"show\"?"},
      {{"gamma", "show"}, 2, "curve is required"},
      {{"gamma", "--json", "a", "show", "VNormal"}, 2, "--json must stand behind show"},
      {{"gamma", "show", "vnormal"}, 2, "did you mean \"VNormal\"? Known: VNormal, VLowlight"},
      {{"gamma", "lut", "VNormal", "--kind", "13bit"}, 2, "--kind"},
      {{"simulate"}, 2, "--output is required"},
      {{"simulate", "-o", "a.png", "--rotat", "3"}, 2, "did you mean --rotate?"},
      {{"gamma", "show", "VNormal", "--channel", "gren"}, 2, "did you mean \"green\"?"},
      {{"simulate", "-o", "a.png", "--rotate", "x"}, 2, "--rotate"},
      {{"simulate", "-o", "a.png", "--size", "1600*1200"}, 2, "1600*1200"},
      {{"simulate", "-o", "a.png", "--size", "99999999999x2"}, 2, "--size"},
      {{"simulate", "-o", "a.png", "--light", "D66"}, 2, "did you mean \"D65\"?"},
      {{"simulate", "-o", "a.png", "--light", "LED"}, 2, "no spectrum"},
      {{"simulate", "-o", "a.png", "--truth", "./a.png"}, 2, "same file"},
      {{"simulate", "-o", "a.png", "--truth", "-", "--json", "-"}, 2, "same file"},
      {{"simulate", "-o", "a.png", "--linear", "--encoding", "srgb"}, 2, "excludes"},
      {{"simulate", "-o", "a.png", "--truth", ""}, 2, "after --truth is empty"},
      {{"simulate", "-o", "no/where/a.png"}, 1, "there is no folder"},
      {{"simulate", "-o", "no\033[31m/a.png"}, 1, "\"no?[31m\""},
      {{"simulate", "-o", "."}, 1, "it is a folder"},
      {{"simulate", "-o", "a.doc"}, 1, "a.doc"},
      {{"gamma", "show", "VNormal", "--plot", "a.gif"}, 2, "ends in .svg or .png"},
      {{"ccm", "text.png", "--report", "r.png"}, 2, "ends in .html or .htm"},
      {{"chart", "missing.png"}, 1, "missing.png"},
      {{"chart", "text.png"}, 1, "text.png"},
      {{"chart", "text.png", "--annotate", "text.png"}, 2, "same file"},
      {{"ae", "--white", "255", "fit.json"}, 2, "--white requires --image"},
      {{"ae", "fit.json", "luma-match", "1,2,3", "1,2,3"}, 2, "luma-match"},
      {{"lut2d", "new", "-o", "a.json", "--fade", "0,1,0.5,1"}, 2, "must not fall"},
  };
  for (const auto& [words, status, says] : failures) {
    SCOPED_TRACE(testing::PrintToString(words));
    const auto outcome = run(words);
    EXPECT_EQ(outcome.status, status);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr(says));
    EXPECT_THAT(outcome.err, StartsWith("greycard"));
    EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
  }
  EXPECT_EQ(read("text.png"), "not a picture");
}

// What reads and writes files reads and writes pipes; nothing else is then on standard output.
TEST_F(CommandTest, AMinusIsStandardInputOrOutput) {
  const std::string picture = run({"simulate", "-o", "-", "--size", "320x240"}).out;
  EXPECT_THAT(picture, StartsWith("\x89PNG"));
  writeWholeFile(folder / "c.png", picture);
  const std::string command = GREYCARD_COMMAND;
  const Outcome piped = runProgram("/bin/sh", folder,
                                   {"-c", command + " chart - --annotate a.png <c.png; " + command +
                                              " chart - -o - </dev/zero"});
  EXPECT_THAT(piped.out, HasSubstr("\"/dev/stdin\"\n"));
  EXPECT_THAT(piped.out, HasSubstr("Wrote \"a.png\"\n"));
  EXPECT_THAT(piped.err, HasSubstr("more than 1 GiB"));
  EXPECT_EQ(run({"chart", "c.png", "-o", "-", "--json", "-"}).status, 2);
  EXPECT_EQ(run({"chart", "c.png", "--quiet", "-o", "r.txt"}).out, "");
  EXPECT_EQ(run({"chart", "c.png", "-o", "-"}).out, read("r.txt"));
  for (const auto& words : {std::vector<std::string>{"evaluate", "c.png"}, {"ccm", "c.png"}}) {
    std::istringstream lines(run(words).out);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 100U) << line;
  }
}

TEST_F(CommandTest, APlotIsDrawnWhereItsNameIsAPictures) {
  ASSERT_EQ(run({"gamma", "show", "VNormal", "--plot", "a.svg"}).status, 0);
  ASSERT_EQ(run({"gamma", "show", "VNormal", "--plot", "a.PNG"}).status, 0);
  const std::string png = read("a.PNG");
  ASSERT_THAT(png, StartsWith("\x89PNG"));
  const int width =
      256 * static_cast<unsigned char>(png.at(18)) + static_cast<unsigned char>(png.at(19));
  EXPECT_THAT(read("a.svg"), HasSubstr("width=\"" + std::to_string(width / 2) + ".00\""));
}

TEST_F(CommandTest, AFailedRunLeavesOldFilesAndNoNewOnes) {
  writeWholeFile(folder / "old.png", "an older picture");
  std::filesystem::create_directory(folder / "taken");
  EXPECT_EQ(run({"simulate", "-o", "old.png", "--truth", "taken"}).status, 1);
  EXPECT_EQ(run({"simulate", "-o", "old.png", "--noise", "2"}).status, 2);
  EXPECT_EQ(read("old.png"), "an older picture");
  // The disk is full for one output: the picture stands, whole, and nothing half-written is left.
  EXPECT_EQ(run({"simulate", "-o", "new.png", "--size", "64x48", "--truth", "/dev/full"}).status,
            1);
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    names.push_back(entry.path().filename().string());
  EXPECT_THAT(names, testing::UnorderedElementsAre("new.png", "old.png", "taken"));
}

}  // namespace
}  // namespace greycard
