#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "greycard/files.h"

namespace greycard::batch {

/// A test with an empty folder of its own.
class ScratchFolder : public testing::Test {
 protected:
  ScratchFolder() {
    auto name = (std::filesystem::temp_directory_path() / "greycard-batch-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
    folder = name;
  }
  ~ScratchFolder() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }
  std::filesystem::path write(const std::string& name, const std::string& bytes) const {
    std::filesystem::create_directories((folder / name).parent_path());
    writeWholeFile(folder / name, bytes);
    return folder / name;
  }

  std::filesystem::path folder;
};

}  // namespace greycard::batch
