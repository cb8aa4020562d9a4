#pragma once
/// \file
/// \ingroup contract own

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "greycard/control_point.h"
#include "greycard/export.h"
#include "greycard/text_view.h"

namespace greycard {

/// \ingroup contract
/// All and Red name the same storage.
enum class ColorChannel : std::int32_t { All = 0, Red = 0, Green = 1, Blue = 2 };

/// \ingroup contract
/// Output codes by input index, normally 1024 of them, in units of the model's GammaBitSize bits
/// (0..16383 at its default of 14).
using GammaTable = std::vector<std::int32_t>;
/// Shared between a curve and its host; null means absent.
using GammaTablePtr = std::shared_ptr<GammaTable>;

class GammaCurveModel;
struct GammaModelState;

/// \ingroup contract
/// One named tone curve: a table for all channels together (unified) or one per channel, each
/// optionally backed by control points from which the table is recomputed.
///
/// Tables and point lists are shared: SetGammaTable and SetControlPoints(color, list) keep the
/// caller's own object, and the readers give the curve's own. A curve keeps its model's settings
/// and spline work area alive, so it stays usable after the model is gone. Not for use from two
/// threads at once, nor together with another curve of the same model.
///
/// A curve marked immutable ignores what its mutators say they refuse; nothing reports a refusal
/// except by its result.
class GREYCARD_EXPORT GammaCurve {
 public:
  /// A mutable, unified, clean curve of 1024 zeros without control points.
  GammaCurve(TextView name, GammaCurveModel& parent);
  /// A built-in curve: immutable and clean, its table converted from `data` by MakeGammaTable.
  GammaCurve(TextView name, GammaCurveModel& parent, std::span<const std::int32_t> data);
  /// A mutable, dirty copy with tables and lists of its own.
  GammaCurve(TextView name, const GammaCurve& source);
  GammaCurve(const GammaCurve&) = delete;
  GammaCurve& operator=(const GammaCurve&) = delete;
  ~GammaCurve();

  const std::string& Name() const { return m_name; }

  /// Whether one table serves all channels; always true while the model's RGBGamma is false.
  bool IsUnified() const;
  /// Refused when immutable or while RGBGamma is false. Going per-channel clones the red table and
  /// list into each absent green or blue one; going back keeps those unused.
  void SetIsUnified(bool unified);

  bool IsImmutable() const { return m_bImmutable; }
  /// One way: false is ignored.
  void SetIsImmutable(bool immutable) { m_bImmutable = m_bImmutable || immutable; }

  /// Changed since the last commit.
  bool IsDirty() const { return m_isDirty; }
  void SetIsDirty(bool dirty) { m_isDirty = dirty; }

  /// Mutable, and made by AddGammaCurve(name, source) or holding at least one (red) control point.
  bool IsEditable() const;

  const GammaTablePtr& Data() const { return m_slots[0].data; }
  const GammaTablePtr& DataR() const { return m_slots[0].data; }
  const GammaTablePtr& DataG() const { return source(ColorChannel::Green).data; }
  const GammaTablePtr& DataB() const { return source(ColorChannel::Blue).data; }
  /// Entries of the red table; 0 when absent.
  std::int32_t DataSize() const;

  const ControlPointListPtr& ControlPoints() const { return m_slots[0].points; }
  const ControlPointListPtr& ControlPointsR() const { return m_slots[0].points; }
  const ControlPointListPtr& ControlPointsG() const { return source(ColorChannel::Green).points; }
  const ControlPointListPtr& ControlPointsB() const { return source(ColorChannel::Blue).points; }

  /// Converts the numbers of the text (StringToIntArray) into the channel's table by
  /// MakeGammaTable; what that refuses changes nothing. Refused when immutable. Does not mark the
  /// curve dirty.
  void SetCurveData(ColorChannel color, OptionalText sgamma);
  void SetCurveData(ColorChannel color, std::nullptr_t) { SetCurveData(color, OptionalText()); }
  /// The same with a copy of `data`, even into an immutable curve (deliberate).
  void SetCurveData(ColorChannel color, std::span<const std::int32_t> data);
  void SetCurveData(std::span<const std::int32_t> data) { SetCurveData(ColorChannel::All, data); }
  /// The same with the caller's table, which MakeGammaTable may rescale in place.
  void SetCurveData(ColorChannel color, const GammaTablePtr& aCurveData);
  void SetCurveData(const GammaTablePtr& curveData) { SetCurveData(ColorChannel::All, curveData); }
  /// Makes the caller's table itself the channel's: no copy, no check, no conversion.
  void SetGammaTable(ColorChannel color, GammaTablePtr curveData);

  /// Makes the caller's list itself the channel's. Like the next two: refused when immutable,
  /// otherwise the curve is dirty and the next CalculateCurve recomputes its tables.
  void SetControlPoints(ColorChannel color, ControlPointListPtr points);
  void SetControlPoints(ColorChannel color, std::nullptr_t) {
    SetControlPoints(color, ControlPointListPtr());
  }
  /// Stores the list of the text's numbers (CreatePointArray); absent when there is none.
  void SetControlPoints(ColorChannel color, OptionalText scp);
  /// Clears the channel's list in place and refills it with the points (px[i], py[i]).
  /// \throws std::invalid_argument when px and py differ in length
  void SetControlPoints(ColorChannel color, std::span<const std::int32_t> px,
                        std::span<const std::int32_t> py);

  /// Samples the channel's table into px.size() points in downsampled units, the last fixed at
  /// (255, MaxY / YScale).
  /// \return false, with nothing written, for fewer than 2 points, more points than the table has
  ///         entries, px and py of different lengths, or a YScale of 0
  bool GetDataDownsampled(ColorChannel color, std::span<std::int32_t> px,
                          std::span<std::int32_t> py) const;
  bool GetDataDownsampled(std::span<std::int32_t> px, std::span<std::int32_t> py) const {
    return GetDataDownsampled(ColorChannel::All, px, py);
  }

  /// The channel's table as the block of a curve file: every (1024 / tableSize)-th entry shifted to
  /// bitSize bits, right-aligned (5 characters for 14 bits, 4 for 12, else 3), 16 to a line.
  /// \return absent for an absent or empty table, a tableSize outside 1..1024, or a shift beyond 31
  ///         bits
  std::optional<std::string> GetDataAsString(ColorChannel color, std::int32_t tableSize,
                                             std::int32_t bitSize) const;
  /// Every entry as " value"; absent for an absent or empty table.
  std::optional<std::string> GetDataAsString(ColorChannel color) const;
  /// Every point as " X,Y"; absent for an absent or empty list.
  std::optional<std::string> GetControlPointsAsString(ColorChannel color) const;

  /// \ingroup own
  /// The curve as the text of a curve file: its table (or the three of a per-channel curve) as
  /// GetDataAsString gives it, each after its keyword, then the control points if every channel
  /// written has some. A per-channel curve with a table that can't be written counts as unified.
  /// Lines end in CR LF, those inside a table in LF.
  /// \return absent where GetDataAsString refuses the red table, and for a table of one entry
  std::optional<std::string> GetFileText(std::int32_t tableSize, std::int32_t bitSize) const;
  /// Writes that text to a file, which GammaCurveModel::ImportFromFile reads. On any failure an
  /// earlier file of that name is left as it was.
  /// \return false, without a message, where GetFileText refuses or the file can't be written
  bool ExportToFile(const std::filesystem::path& fileName, std::int32_t tableSize,
                    std::int32_t bitSize) const;

  /// Recomputes the tables from the control points, when editable and points have been set since.
  /// More than 512 points, or a table of other than 1024 entries, leave the table as it was.
  /// \throws NumericError("Bad xa input to routine splint") for a single point, or where the spline
  ///         is evaluated between two points of equal X; that channel's table stays as it was
  void CalculateCurve();
  /// Replaces the channel's points, unless immutable, by a few that reproduce its table's first
  /// stretch. The table is left to CalculateCurve. A table that can't be sampled changes nothing.
  void GenerateControlPoints(ColorChannel color);

  /// Hooks of a session store that isn't there: deliberately empty.
  void CommitHeader(std::int32_t id);
  void CommitHeader(std::int32_t idR, std::int32_t idG, std::int32_t idB);
  void CommitNameToSession(OptionalText lightLevel);

  /// The decimal 32-bit numbers (with an optional sign) between spaces and commas. Absent for an
  /// absent or empty text, or when any piece is no such number; present and empty for separators
  /// alone.
  static std::optional<std::vector<std::int32_t>> StringToIntArray(OptionalText s);
  /// The pairs X, Y, X, Y, ... as points; an odd last number is dropped. Absent for less than a
  /// pair.
  static ControlPointListPtr CreatePointArray(std::span<const std::int32_t> numbers);
  static ControlPointListPtr CreatePointArray(OptionalText s);
  /// A copy of the numbers; absent for none.
  static std::optional<std::vector<std::int32_t>> DataToArray(std::span<const std::int32_t> data);

 private:
  friend class GammaCurveModel;  // makes copies editable

  struct Slot {
    GammaTablePtr data;
    ControlPointListPtr points;
  };

  ColorChannel FixColor(ColorChannel color);
  const Slot& source(ColorChannel color) const;
  Slot& target(ColorChannel color);
  void UnUnify();
  void SetControlPointsInternal(ColorChannel color, std::span<const std::int32_t> px,
                                std::span<const std::int32_t> py);
  void pointsChanged();
  void calculate(ColorChannel color);

  std::shared_ptr<GammaModelState> m_parent;
  std::string m_name;
  bool m_bImmutable = false;
  bool m_bInterpolate = false;  // control points changed since the tables were computed
  bool m_bUnified = true;
  bool m_bCanEdit = false;  // editable even without control points
  bool m_isDirty = false;
  std::array<Slot, 3> m_slots;  // All and Red, Green, Blue
};

using GammaCurvePtr = std::shared_ptr<GammaCurve>;

}  // namespace greycard
