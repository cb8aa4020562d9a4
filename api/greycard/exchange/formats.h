#pragma once
/// \file
/// \ingroup own

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "greycard/exchange/export.h"
#include "greycard/exchange/material.h"

namespace greycard::exchange {

/// A format that other programs read. docs/exports.md tells what each holds.
struct FormatInfo {
  std::string name;                 ///< "cube", "icc", ...
  std::string holds;                ///< a few words for people
  std::vector<MaterialKind> kinds;  ///< what it can be made of
  std::size_t mostLights = 0;       ///< of a camera fitted under several; 0: any number
};
/// All formats in a fixed order.
GREYCARD_EXCHANGE_EXPORT std::vector<FormatInfo> formats();
/// The names of those that can be made of such material.
GREYCARD_EXCHANGE_EXPORT std::vector<std::string> formatNames(MaterialKind kind);

struct ExportOptions {
  /// A camera's RGB enters a 3D LUT or a profile as linear values; else through the sRGB transfer
  /// (IEC 61966-2-1).
  bool linearInput = false;
  /// The camera's name, as its raw files tell it; empty for the first photograph's file name. Of a
  /// C header, what its names begin with.
  std::string camera;
};

/// A file's bytes, and what its maker should know of it.
struct Exported {
  std::string bytes;
  std::vector<std::string> notes;  ///< accuracy, and what could not be kept; a sentence each
};

/// The material in a format; the same bytes for the same material.
/// \throws std::invalid_argument for a format that is unknown (its text lists the known ones) or
///         can't be made of such material, and for values that are not finite;
///         JobError for lights that the format can't hold
GREYCARD_EXCHANGE_EXPORT Exported exportAs(const std::string& format, const Material& material,
                                           const ExportOptions& options = {});
/// Before there is any material. \param lights  how many a camera will be fitted under
/// \throws std::invalid_argument and JobError as exportAs
GREYCARD_EXCHANGE_EXPORT void checkFormat(const std::string& format, MaterialKind kind,
                                          std::size_t lights = 1);

/// A tuning file with matrices and tone curve of its own put in place of those that it holds: JSON
/// with rpi.ccm and rpi.contrast (version 2, target bcm2835 or pisp), or YAML with Ccm and
/// GammaOutCorrection (version 1), told apart by content. Every other byte stays as it is.
/// \param text  the file as it is
/// \throws JobError, its text without the file's name, for another target or version, for a text
///         that can't be understood, and when there is nothing in it to replace;
///         std::invalid_argument and JobError as exportAs
GREYCARD_EXCHANGE_EXPORT Exported updatedTuning(std::string_view text, const Material& material);
}  // namespace greycard::exchange
