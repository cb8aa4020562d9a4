#pragma once
/// \file
/// \ingroup contract own

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "greycard/export.h"
#include "greycard/gamma_curve.h"
#include "greycard/gamma_import.h"
#include "greycard/text_view.h"

namespace greycard {

/// \ingroup contract
/// One value per built-in curve, in catalogue order.
enum class GammaCurveID : std::int32_t {
  ID_GAMMA_NORMAL = 0,
  ID_GAMMA_LOWLIGHT,
  ID_GAMMA_OUTDOOR,
  ID_GAMMA_OUTDOOR_HIGH_CONTRAST,
  ID_GAMMA_OUTDOOR_MORE_DETAIL,
  ID_GAMMA_BACKLIGHT,
  ID_GAMMA_NORMAL_MEDIUM_DETAIL,
  ID_GAMMA_OUTDOOR_MEDIUM_DETAIL,
  ID_GAMMA_SRGB,
  ID_GAMMA_NEXUS5,
  ID_GAMMA_HDR,
};

class GammaCurveCollection;
class TokenStream;

/// \ingroup contract
/// The catalogue of named tone curves and the settings that give every curve its scale.
///
/// Names are unique, exact and case-sensitive; no curve has an absent one. Operations refuse
/// silently, by an absent curve (null) or false. A curve stays valid for whoever holds it, also
/// after its deletion or the model's end. A moved-from model may only be destroyed or assigned to.
class GREYCARD_EXPORT GammaCurveModel {
 public:
  /// The settings at their defaults; the catalogue holds the eleven built-in curves or nothing.
  explicit GammaCurveModel(bool bAutoPopulate);
  GammaCurveModel(const GammaCurveModel&) = delete;
  GammaCurveModel& operator=(const GammaCurveModel&) = delete;
  GammaCurveModel(GammaCurveModel&&) noexcept;
  GammaCurveModel& operator=(GammaCurveModel&&) noexcept;
  ~GammaCurveModel();

  /// Bit depth of table values. MakeGammaTable works at 0..31.
  std::int32_t GammaBitSize() const;
  void SetGammaBitSize(std::int32_t bits);
  /// Whether curves may be split into one table per channel.
  bool RGBGamma() const;
  void SetRGBGamma(bool perChannel);
  /// Table index per unit of a control point's X.
  std::int32_t XScale() const;
  void SetXScale(std::int32_t scale);
  /// Table value per unit of a control point's Y.
  std::int32_t YScale() const;
  void SetYScale(std::int32_t scale);
  /// Highest table value. The spline's ceiling stays what it was at construction (deliberate).
  std::int32_t MaxY() const;
  void SetMaxY(std::int32_t maxY);

  /// The curve at a catalogue position; absent outside 0..count - 1.
  GammaCurvePtr GetGammaCurveByIndex(std::int32_t index) const;
  GammaCurvePtr GetGammaCurveByName(OptionalText name) const;
  /// The names in catalogue order.
  std::vector<std::string> GetNames() const;
  /// Always absent: no light level has a name of its own.
  std::optional<std::string> GetCurrent(OptionalText lightLevel) const;
  /// The light level is used as a curve's name.
  GammaCurvePtr GetCurrentCurve(OptionalText lightLevel) const;

  /// Appends a mutable, dirty curve of zeros. Absent when the name is taken.
  GammaCurvePtr AddGammaCurve(TextView name);
  /// Appends a mutable, dirty power-law curve (GetReferenceCurve), editable once it has control
  /// points.
  GammaCurvePtr AddGammaCurve(TextView name, double denominator, std::int32_t maxY);
  /// Appends an editable copy of the curve named `source`. Absent when there is none or the name is
  /// taken.
  GammaCurvePtr AddGammaCurve(TextView name, OptionalText source);
  /// False when there is no such curve or it is immutable.
  bool DeleteGammaCurve(OptionalText name);
  /// Names deleted since the last commit.
  const std::vector<std::string>& DeletedNames() const { return m_DeletedNames; }

  /// Forgets the deleted names and makes every curve clean. Nothing is stored.
  void CommitSession();
  bool SaveGammaCurve(OptionalText name) const { return SaveGammaCurveAs(name, name); }
  /// Whether the curve exists and has a table that could be written; sectionName is not used.
  bool SaveGammaCurveAs(OptionalText name, OptionalText sectionName) const;
  /// Absent: the session store is empty.
  GammaCurvePtr LoadGammaCurve(TextView name);

  /// Hooks of a session store that isn't there: deliberately empty.
  std::optional<std::vector<std::string>> GetSectionNames() const;
  std::optional<std::string> GetFromSession(OptionalText sectionName, OptionalText itemName) const;
  void SaveToSession(OptionalText sectionName, OptionalText itemName, OptionalText data);
  void DeleteFromSession(OptionalText sectionName);

  /// A mutable, dirty curve that is not in the catalogue, holding the caller's tables and lists
  /// themselves. Per-channel when green and blue are there (then points only when all three lists
  /// are), else unified. Absent without a red table.
  ///
  /// While RGBGamma is false all three tables go to the one slot and blue wins (deliberate).
  GammaCurvePtr CreateCurve(TextView name, const GammaTablePtr& gammaR, const GammaTablePtr& gammaG,
                            const GammaTablePtr& gammaB, const ControlPointListPtr& cpR,
                            const ControlPointListPtr& cpG, const ControlPointListPtr& cpB);
  /// The same from lists of numbers: tables by CreateGammaTable, points by CreatePointArray. An
  /// empty list counts as absent.
  GammaCurvePtr CreateCurve(TextView name, std::span<const std::int32_t> listR,
                            std::span<const std::int32_t> listG,
                            std::span<const std::int32_t> listB, std::span<const std::int32_t> cpR,
                            std::span<const std::int32_t> cpG, std::span<const std::int32_t> cpB);
  /// The same from texts.
  GammaCurvePtr CreateCurve(TextView name, OptionalText table, OptionalText tableG,
                            OptionalText tableB, OptionalText cp, OptionalText cpG,
                            OptionalText cpB);

  /// Reads a curve file (GammaCurve::GetFileText, or the older one-table form) into a new curve of
  /// the catalogue, named as the file without folder and extension, or with 1, 2, ... 998 behind
  /// when that name is taken. The curve is mutable and dirty, its tables are those of the file and
  /// the next CalculateCurve recomputes them from its control points, if it has any.
  ///
  /// The file is a sequence of words between blanks, commas and line ends: keywords, whole numbers,
  /// which belong to the keyword before them (to the red table before any keyword), and anything
  /// else, which is skipped.
  /// \return absent, with the catalogue as it was, when no name is free or the file gives no red
  ///         table (CreateCurve)
  /// \throws FileError when the file can't be read
  GammaCurvePtr ImportFromFile(const std::filesystem::path& fileName);
  /// \ingroup own
  /// The same, telling why there is no curve and what was left out.
  GammaImport ImportWithReport(const std::filesystem::path& fileName);
  /// \ingroup own
  /// The same from a text in memory; `name` is what the file name would be.
  GammaImport ImportText(TextView name, std::string text);

  /// The perceptual quantiser of SMPTE ST 2084 up to a peak luminance, as a clean unified curve
  /// "HDR10" that is not in the catalogue: 257 codes of 10 bits (not converted to 1024 entries of
  /// GammaBitSize bits, deliberately) for the linear inputs 0, 16, ... 4080, 4095 of 12 bits.
  /// \param MN  peak luminance in cd/m2, 1..10000; 10000 is taken for any other
  GammaCurvePtr GenerateHDRCurve(std::int32_t MN);
  /// The hybrid log-gamma curve of ITU-R BT.2100 (ARIB STD-B67) in the same form, named "HLG".
  GammaCurvePtr GenerateHLGCurve();

  /// A new table of 1024 entries by MakeGammaTable, which may rescale aSrc in place; absent when it
  /// fails.
  GammaTablePtr CreateGammaTable(const GammaTablePtr& aSrc) const;
  /// The same from a copy of the numbers.
  GammaTablePtr CreateGammaTable(std::span<const std::int32_t> list) const;
  /// The same from the numbers of a text (GammaCurve::StringToIntArray).
  GammaTablePtr CreateGammaTable(OptionalText sGamma) const;
  GammaTablePtr CreateGammaTable(std::nullptr_t) const { return nullptr; }

  /// Converts a table of 64, 256, 512 or 1024 entries of 8, 10, 12 or 14 bits into 1024 entries of
  /// GammaBitSize bits, joined by straight lines, the last with full scale. The depth is inferred
  /// from the last entry, and aSrc itself is rescaled in place when it differs (both deliberate).
  /// \return false, with nothing written, for any other length, or a GammaBitSize outside 0..31
  bool MakeGammaTable(std::span<std::int32_t> aSrc, std::span<std::int32_t> aDest) const;

  /// aDest[i] = trunc((i / (n - 1))^(1 / denominator) * maxY), n its length. What does not fit 32
  /// bits saturates, not-a-number gives 0, a single entry is that of i / (n - 1) = 0.
  void GetReferenceCurve(double denominator, std::span<std::int32_t> aDest,
                         std::int32_t maxY) const;

  /// Reduces control points to a subset whose spline stays within 4 units of the full set's at the
  /// abscissae 0 .. ninterp - 1. Outputs may be the inputs; with 5 or fewer points nothing is
  /// written, not even nout.
  /// \param ninterp  samples compared, 0..number of points
  /// \throws std::invalid_argument for arrays too short, more than 512 points, or ninterp out of
  ///         range
  /// \throws NumericError where the spline is evaluated between two points of equal x
  void FindMinimumControlPoints(int ninterp, std::span<const double> pinx,
                                std::span<const double> piny, std::span<double> poutx,
                                std::span<double> pouty, int& nout);

 private:
  friend class GammaCurve;  // keeps the state

  GammaCurvePtr append(GammaCurvePtr curve);
  std::optional<std::string> freeName(const std::string& base) const;
  GammaImport importCurve(const std::string& name, TokenStream& tokens);

  std::shared_ptr<GammaModelState> m_state;
  std::unique_ptr<GammaCurveCollection> m_Curves;
  std::vector<std::string> m_DeletedNames;
};

}  // namespace greycard
