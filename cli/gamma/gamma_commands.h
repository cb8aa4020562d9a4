#pragma once

// The sub-commands of greycard gamma.

#include <CLI/CLI.hpp>

namespace greycard::cli {

void addGammaList(CLI::App& gamma);
void addGammaShow(CLI::App& gamma);
void addGammaLut(CLI::App& gamma);
void addGammaExport(CLI::App& gamma);
void addGammaImport(CLI::App& gamma);
void addGammaHdr10(CLI::App& gamma);
void addGammaHlg(CLI::App& gamma);
void addGammaPoints(CLI::App& gamma);
void addGammaDegamma(CLI::App& gamma);
void addGammaPower(CLI::App& gamma);
void addGammaMerge(CLI::App& gamma);
void addGammaInvert(CLI::App& gamma);

}  // namespace greycard::cli
