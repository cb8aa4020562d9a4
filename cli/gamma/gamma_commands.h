#pragma once

// The sub-commands of greycard gamma, and what they share.

#include <CLI/CLI.hpp>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "greycard/gamma_curve.h"
#include "job_files.h"

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

/// Bits and largest value of the catalogue's tables.
inline constexpr int kCurveBits = 14, kCurveMax = (1 << kCurveBits) - 1;

/// The shape of a curve file, as options.
struct CurveFileForm {
  int size = 1024, bits = kCurveBits;

  void addTo(CLI::App& app);
  /// \throws JobError when the curve has no table, FileError when it can't be written
  void write(const GammaCurve& curve, const std::filesystem::path& path) const;
};

/// A curve of the catalogue or of a curve file, and one of its channels, as options.
struct CurveChoice {
  std::string name, channel = "all";

  void addTo(CLI::App& app);
  /// Names the curve file, if it is one, as an input of the job.
  void nameFile(JobFiles& files) const;
  /// \throws JobError that lists the names when there is no such curve, or tells what is wrong with
  ///         the file
  GammaCurvePtr curve() const;
  /// The chosen channel's table of the curve.
  std::span<const std::int32_t> table(const GammaCurve& curve) const;
  ColorChannel colorChannel() const;
};

}  // namespace greycard::cli
