#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace greycard {

struct Outcome {
  int status = -1;  ///< exit status; -1 when it could not be run or was killed
  std::string out, err;
};

/// Runs a program in `folder` with the words given, without a shell.
Outcome runProgram(const std::string& program, const std::filesystem::path& folder,
                   const std::vector<std::string>& words);

/// A test with an empty folder of its own.
class CommandTest : public testing::Test {
 protected:
  CommandTest();
  ~CommandTest() override;

  /// Runs the built command.
  Outcome run(const std::vector<std::string>& words) const {
    return runProgram(GREYCARD_COMMAND, folder, words);
  }
  std::string read(const std::string& name) const;

  std::filesystem::path folder;
};

}  // namespace greycard
