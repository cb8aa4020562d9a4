#include "run_command.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "greycard/files.h"

namespace greycard {
namespace {

// Where nothing can collide with the folder's own files.
std::filesystem::path capture(const std::filesystem::path& folder, const char* what) {
  return folder.string() + what;
}

void redirect(int stream, const std::filesystem::path& file) {
  const int to = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (to < 0 || ::dup2(to, stream) < 0) std::_Exit(127);
}

}  // namespace

Outcome runProgram(const std::string& program, const std::filesystem::path& folder,
                   const std::vector<std::string>& words) {
  const auto out = capture(folder, ".out"), err = capture(folder, ".err");
  std::string name = program;
  std::vector<std::string> copy = words;
  std::vector<char*> arguments{name.data()};
  for (auto& word : copy) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  const pid_t child = ::fork();
  if (child == 0) {
    redirect(STDOUT_FILENO, out);
    redirect(STDERR_FILENO, err);
    if (::chdir(folder.c_str()) == 0) ::execvp(name.c_str(), arguments.data());
    std::_Exit(127);
  }
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status)) return {};
  Outcome outcome{WEXITSTATUS(status), readWholeFile(out), readWholeFile(err)};
  std::filesystem::remove(out);
  std::filesystem::remove(err);
  return outcome;
}

CommandTest::CommandTest() {
  auto name = (std::filesystem::temp_directory_path() / "greycard-test-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
  folder = name;
}

CommandTest::~CommandTest() {
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
}

std::string CommandTest::read(const std::string& name) const {
  return readWholeFile(folder / name);
}

}  // namespace greycard
