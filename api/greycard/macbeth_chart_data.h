#pragma once
/// \file
/// \ingroup contract own

#include <filesystem>

#include "greycard/export.h"
#include "greycard/illum.h"
#include "greycard/patch_sampler.h"
#include "greycard/picture.h"
#include "greycard/types.h"

namespace greycard {

/// \ingroup own
/// Name of a patch ("dark skin" .. "black 2") by its 0-based row.
/// \throws std::out_of_range unless 0 <= patch < 24
GREYCARD_EXPORT const char* patchName(int patch);

/// \ingroup contract
/// One 24-patch chart: its reference colours, and what a camera measured.
///
/// A chart file is text of 24 lines in chart order, three decimal numbers with blanks between them
/// in each; a dot is the decimal sign whatever the locale.
class GREYCARD_EXPORT MacbethChartData {
 public:
  PatchTable m_RefLab{};  ///< reference L*, a*, b*
  PatchTable m_RGB{};     ///< measured camera R, G, B; linear, 0..1
  PatchTable m_Noise{};   ///< standard deviation of the measured R, G, B

  /// m_RefLab becomes the chart under the light, adapted to D65. \return true
  bool LoadMCCCIELAB(Illum illum);
  /// m_RefLab from a file of L*, a*, b*. Whatever follows the third number of a line is not read.
  /// \return false when the file can't be opened, or at the first line that yields fewer than three
  ///         numbers; the rows before it stay overwritten
  bool LoadMCCCIELAB(const std::filesystem::path& file);
  /// As above from 8-bit sRGB values, 0..255; converts them, clamps nothing.
  bool LoadMCCsRGB(const std::filesystem::path& file);
  /// Writes m_RefLab as a chart file with six significant digits. \return false when it can't
  bool WriteMCC_CIELAB(const std::filesystem::path& file) const;

  /// \ingroup own
  /// m_RefLab from a file of L*, a*, b*, which must be nothing but 24 lines of three finite numbers
  /// (blank lines may follow).
  /// \throws FileError that names file, line and text; m_RefLab is left as it was
  void readReferenceLab(const std::filesystem::path& file);
  /// \ingroup own
  /// As above from 8-bit sRGB values, which must lie in 0..255.
  void readReferenceSRgb(const std::filesystem::path& file);

  /// m_RefLab from m_RGB, taken as encoded sRGB in 0..1 here.
  void RefLabFromRGB();

  /// \ingroup own
  /// Samples the patches of a photograph into m_RGB (mean) and m_Noise (standard deviation, with
  /// divisor n - 1; 0 for a single pixel).
  ///
  /// A pixel belongs to a region when its centre does, left and top edge included, right and bottom
  /// edge not. Encoded pictures are decoded pixel by pixel before averaging. Values above the white
  /// level count as the white level; values below the black level stay negative, so that noise
  /// around black averages out. A one-channel picture gives R = G = B.
  /// \throws std::invalid_argument, tables untouched, when a region is not finite or has no pixel
  ///         inside the picture, for levels that make no scale, or an inconsistent picture
  SamplingReport CollectRGBData(const Picture& picture, const PatchRegions& regions,
                                const SampleLevels& levels);

  /// All three tables zero again.
  void Dispose() { *this = {}; }
};

}  // namespace greycard
