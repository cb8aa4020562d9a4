#pragma once

#include <cstdio>
#include <memory>

namespace greycard {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// An open file that is closed when it goes; null where opening failed.
using FileHandle = std::unique_ptr<std::FILE, CloseFile>;

}  // namespace greycard
