#pragma once

#include <CLI/CLI.hpp>

namespace greycard::cli {

// One per sub-command, each in the file named after it.
void addSimulate(CLI::App& parent);
void addInfo(CLI::App& parent);
void addChart(CLI::App& parent);
void addCcm(CLI::App& parent);
void addEvaluate(CLI::App& parent);
void addCompare(CLI::App& parent);
void addApply(CLI::App& parent);
void addProfile(CLI::App& parent);
void addBatch(CLI::App& parent);
void addGamma(CLI::App& parent);
void addLut2d(CLI::App& parent);
void addSigma(CLI::App& parent);
void addAe(CLI::App& parent);
void addWbMap(CLI::App& parent);
void addSkin(CLI::App& parent);

}  // namespace greycard::cli
