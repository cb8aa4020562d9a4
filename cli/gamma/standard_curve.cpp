#include "standard_curve.h"

#include <algorithm>
#include <iostream>

#include "greycard/files.h"
#include "greycard/number_text.h"
#include "text_table.h"
#include "transition.h"

namespace greycard::cli {
namespace {

constexpr int kInputMax = 4095, kInputStep = 16, kOutputMax = 1023;

int inputCode(std::size_t index) {
  return std::min(static_cast<int>(index) * kInputStep, kInputMax);
}

}  // namespace

void StandardCurveOptions::addTo(CLI::App& app) {
  app.add_option("-o,--output", output, "File for the 257 codes, one a line")->type_name("FILE");
  plot.addTo(app);
}

void deliverStandardCurve(const StandardCurveOptions& options, const GammaCurve& curve,
                          const std::string& title, const LightAxis& light) {
  JobFiles files;
  files.output("--output", options.output);
  options.plot.nameFiles(files);
  files.textOutput("--json", options.json);
  const GammaTable& codes = *curve.Data();
  TextTable text({{"input (12 bits)"}, {light.column}, {"output (10 bits)"}});
  std::string lines;
  std::vector<int> inputs;
  for (std::size_t i = 0; i < codes.size(); ++i) {
    inputs.push_back(inputCode(i));
    lines += std::to_string(codes[i]) + '\n';
    text.addRow({std::to_string(inputs[i]),
                 fixed(light.peak * inputs[i] / kInputMax, light.decimals),
                 std::to_string(codes[i])});
  }
  if (!options.output.empty()) writeWholeFile(options.output, lines);
  CurvePlot plot(title, {light.title, 0.0, light.peak}, {"Output (10-bit code)", 0.0, kOutputMax});
  plot.addTable(curve.Name(), codes, plotColour(0));
  plot.write(options.plot);
  writeJson(options.json, {{"name", curve.Name()},
                           {"peak", light.peak},
                           {"input_bits", 12},
                           {"output_bits", 10},
                           {"inputs", inputs},
                           {"table", codes}});
  if (options.printsText() && options.output.empty()) std::cout << text.text();
}

}  // namespace greycard::cli
