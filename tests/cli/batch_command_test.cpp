#include <gmock/gmock.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <map>

#include "greycard/files.h"
#include "run_command.h"

namespace greycard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Batch : public CommandTest {
 protected:
  void writeCharts(int count) const {
    for (int i = 1; i <= count; ++i)
      run({"simulate", "-o", "d65_" + std::to_string(i) + ".png", "--light", "D65", "--size",
           "320x240", "--noise", "0.004", "--seed", std::to_string(i)});
  }
  // The bytes of all files, by their path.
  std::map<std::string, std::string> all(const char* name) const {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder / name))
      if (entry.is_regular_file())
        files[entry.path().lexically_relative(folder / name)] = readWholeFile(entry.path());
    return files;
  }
  // Begins a run and ends it when so many results are there. Returns its wait status.
  int endedAfter(std::ptrdiff_t results, int signal) const {
    std::vector<std::string> words{
        GREYCARD_COMMAND, "batch",  folder / "list.txt", "-o", folder / "ended",
        "--resume",       "--quiet"};
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t child = 0;
    EXPECT_EQ(posix_spawn(&child, GREYCARD_COMMAND, nullptr, nullptr, arguments.data(), environ),
              0);
    int status = 0;
    bool sent = false;
    while (waitpid(child, &status, WNOHANG) == 0) {
      std::error_code ignored;
      using Entries = std::filesystem::directory_iterator;
      if (!sent && std::count_if(Entries(folder / "ended/photographs", ignored), Entries(),
                                 [](const auto& entry) {
                                   return entry.path().extension() == ".json";
                                 }) >= results)
        sent = kill(child, signal) == 0;
      usleep(500);
    }
    return status;
  }
};

TEST_F(Batch, GivesTheSameFolderHoweverManyWorkAndTellsWhatFailed) {
  writeCharts(4);
  run({"simulate", "-o", "wrong_D65.png", "--light", "A", "--size", "320x240"});
  writeWholeFile(folder / "broken.jpg", "junk");
  const Outcome one = run({"batch", ".", "-o", "one", "--jobs", "1", "--light", "D65"});
  EXPECT_EQ(one.status, 1);
  EXPECT_THAT(one.err, AllOf(HasSubstr("Failed: ./broken.jpg: can't read"),
                             HasSubstr("1 of 6 photographs failed")));
  EXPECT_THAT(one.out, AllOf(HasSubstr("./d65_4.png      D65"), HasSubstr("5 fits under D65"),
                             HasSubstr("\"./wrong_D65.png\" lies outside")));
  EXPECT_EQ(run({"batch", ".", "-o", "three", "--jobs", "3", "--light", "D65"}).status, 1);
  const auto files = all("one");
  EXPECT_EQ(files.size(), 6U + 3U);
  EXPECT_EQ(all("three"), files);

  const Outcome again = run({"batch", ".", "-o", "one", "--resume", "--light", "D65"});
  EXPECT_THAT(again.out, HasSubstr("6 from an earlier run"));
  EXPECT_EQ(all("one"), files);
}

TEST_F(Batch, EndedAtAnyMomentItGoesOnToTheSameFolder) {
  writeCharts(5);
  writeWholeFile(folder / "list.txt", "d65_1.png\nd65_2.png\nd65_3.png\nd65_4.png\nd65_5.png\n");
  const std::string list = folder / "list.txt";
  ASSERT_EQ(run({"batch", list, "-o", "whole"}).status, 0);
  for (const std::ptrdiff_t results : {0, 1, 3}) {
    const int killed = endedAfter(results, SIGKILL);
    EXPECT_TRUE(WIFSIGNALED(killed) || WEXITSTATUS(killed) == 0);
  }
  for (const char* name : {"d65_1", "d65_2", "d65_3", "d65_4"})
    std::filesystem::remove(folder / "ended/photographs" / (name + std::string(".png.json")));
  const int interrupted = endedAfter(2, SIGINT);
  EXPECT_TRUE(WIFEXITED(interrupted)) << "it puts half-done work away";
  for (const auto& [name, bytes] : all("ended"))
    EXPECT_THAT(name, Not(HasSubstr(".greycard-"))) << name;
  const Outcome rest = run({"batch", list, "-o", folder / "ended", "--resume"});
  ASSERT_EQ(rest.status, 0) << rest.err;
  EXPECT_EQ(all("ended"), all("whole"));
}

TEST_F(Batch, SettingsTellOptionsByName) {
  writeCharts(1);
  run({"simulate", "-o", "shelf_A_1.png", "--light", "A", "--size", "320x240"});
  writeWholeFile(folder / "s.json",
                 R"({"overrides": [{"pattern": "*_A_*", "options": {"light": "A"}}]})");
  const Outcome outcome = run({"batch", "d65_1.png", "shelf_A_1.png", "-o", "out", "--job",
                               "evaluate", "--settings", "s.json", "--json", "-"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("\"job\": \"evaluate\""), HasSubstr("\"command\":")));
  EXPECT_THAT(read("out/results.csv"),
              AllOf(HasSubstr("d65_1.png,done,D65,"), HasSubstr("shelf_A_1.png,done,A,")));

  struct Case {
    std::vector<std::string> words;
    int status;
    const char* told;
  };
  for (const Case& c :
       {Case{{"d65_1.png", "-o", "out"}, 1, "resume the run"},
        Case{{"d65_1.png", "-o", "new", "--job", "chart", "--light", "A"}, 2, "--light"},
        Case{{"d65_1.png", "-o", "new", "--jobs", "0"}, 2, "1 to 256"},
        Case{{"absent.txt", "-o", "new"}, 1, "absent.txt"},
        Case{{"d65_1.png", "-o", "s.json"}, 1, "s.json"}, Case{{"d65_1.png"}, 2, "--output"}}) {
    std::vector<std::string> words{"batch"};
    words.insert(words.end(), c.words.begin(), c.words.end());
    const Outcome refused = run(words);
    EXPECT_EQ(refused.status, c.status) << c.told;
    EXPECT_THAT(refused.err, HasSubstr(c.told));
    EXPECT_FALSE(std::filesystem::exists(folder / "new")) << c.told;
  }
}

}  // namespace
}  // namespace greycard
