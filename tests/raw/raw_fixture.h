#pragma once

#include <gtest/gtest.h>
#include <libraw/libraw.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <random>
#include <string>

#include "greycard/errors.h"
#include "greycard/picture.h"

namespace greycard {

/// A test with an empty folder of its own.
class RawTest : public testing::Test {
 protected:
  RawTest() {
    auto name = (std::filesystem::temp_directory_path() / "greycard-raw-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
    folder = name;
  }
  ~RawTest() override { std::filesystem::remove_all(folder); }
  std::filesystem::path folder;
};

/// Codes of 0 to `most` by chance.
inline Picture randomCodes(int width, int height, int channels, unsigned most) {
  Picture picture(width, height, channels, 16);
  std::mt19937 random(7);
  for (auto& sample : picture.samples) sample = static_cast<std::uint16_t>(random() % (most + 1));
  return picture;
}

/// The bytes must outlive it.
inline std::unique_ptr<LibRaw> openedByLibRaw(const std::string& bytes) {
  auto raw = std::make_unique<LibRaw>();
  // It only reads; its parameter type has no const form.
  EXPECT_EQ(raw->open_buffer(const_cast<char*>(bytes.data()), bytes.size()), LIBRAW_SUCCESS);
  return raw;
}

template <typename Call>
std::string refusalOf(Call call) {
  try {
    call();
  } catch (const FileError& error) {
    return error.what();
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
  return "no refusal";
}

}  // namespace greycard
