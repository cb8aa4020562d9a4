#include "text_output.h"

#include <iostream>

#include "greycard/files.h"

namespace greycard::cli {

void writeText(const std::string& target, std::string_view text) {
  if (target == "-")
    std::cout << text;
  else
    writeWholeFile(target, text);
}

void printWarnings(const std::vector<std::string>& warnings) {
  for (const std::string& warning : warnings) std::cout << "Warning: " << warning << "\n";
}

}  // namespace greycard::cli
