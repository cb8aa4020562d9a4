#include "golden.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

void expectGolden(const std::string& file, const std::string& text) {
  const std::filesystem::path path = std::filesystem::path(GREYCARD_TESTS_DIR) / file;
  if (std::getenv("GREYCARD_REGENERATE") != nullptr) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << text;
  }
  std::ifstream golden(path);
  EXPECT_TRUE(golden) << path;
  std::istringstream found(text);
  std::string expected, line;
  for (int number = 1; std::getline(golden, expected); ++number) {
    line.clear();
    std::getline(found, line);
    if (line != expected) {
      FAIL() << file << ":" << number << "\nis   " << line << "\nwant " << expected;
    }
  }
  EXPECT_FALSE(std::getline(found, line)) << file << " ends before " << line;
}

std::string goldenLine(const std::string& name, std::span<const double> values, int digits) {
  std::string text = name;
  for (const double value : values) {
    char number[64];
    std::snprintf(number, sizeof number, " %.*g", digits, value == 0.0 ? 0.0 : value);
    text += number;
  }
  return text + "\n";
}
