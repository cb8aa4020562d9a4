#include "matrix_option.h"

#include <stdexcept>

#include "command.h"
#include "greycard/present/measured_chart.h"

namespace greycard::cli {

Matrix3 matrixFromOption(const std::string& option, const std::string& text) {
  if (namesFile(text)) return present::readMatrix(text);
  try {
    return present::matrixFromNumbers(text);
  } catch (const std::invalid_argument& error) {
    throw UsageError(option + " " + text + " is neither a file nor a matrix: " + error.what());
  }
}

}  // namespace greycard::cli
