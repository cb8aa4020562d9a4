// Fits a colour-correction matrix to a photographed chart: fit_chart PHOTO
#include <greycard/diagnostics.h>
#include <greycard/jobs/fit_chart.h>
#include <greycard/number_text.h>

#include <cstdio>
#include <exception>
#include <string>

using namespace greycard;

std::string rowText(const Vector3& row) {
  return exact(row[0]) + " " + exact(row[1]) + " " + exact(row[2]) + "\n";
}

int main(int argc, char** argv) try {
  if (argc != 2) {
    std::fputs("usage: fit_chart PHOTO\n", stderr);
    return 2;
  }
  setErrorChannel({});  // the library's remarks on what it does

  ChartFitOptions options;
  options.light = illum_D65;
  options.gamma = "VGammaSRGB";
  const ChartFit fit = *fitChart(readPicture(argv[1]), options, argv[1]);

  std::string text;
  for (const Vector3& row : fit.matrix) text += rowText(row);
  text += "gains " + rowText(fit.whiteBalance) + "exposure " + exact(fit.exposure) + "\n";
  for (const std::string& warning : fit.warnings) text += "warning: " + warning + "\n";
  std::fputs(text.c_str(), stdout);
} catch (const std::exception& error) {
  std::fprintf(stderr, "fit_chart: %s\n", error.what());
  return 1;
}
