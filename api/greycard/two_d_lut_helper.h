#pragma once
/// \file
/// \ingroup contract own

#include <cstdint>
#include <memory>
#include <span>

#include "greycard/diagnostics.h"
#include "greycard/export.h"
#include "greycard/lut2d_cfg.h"
#include "greycard/lut2d_config.h"
#include "greycard/types.h"

namespace greycard {

/// \ingroup own
/// One drag of a node.
struct NodeDrag {
  std::int32_t originalHue = 0;       ///< of the colour that is dragged, in degrees
  double deltaS = 0.0, deltaH = 0.0;  ///< in saturation units and degrees
  /// How many nodes to each side it reaches. The range grows towards the side of the drag, but a
  /// positive drag of the hue shrinks it by about as many rows as the drag is wide.
  std::int32_t rangeS = 0, rangeH = 0;
  std::int32_t hitH = 0, hitS = 0;  ///< row and column of the dragged node
  bool movesHitNode = true;         ///< whether the dragged node moves too
};

/// \ingroup own
/// Target tables of hue rows by saturation columns, row by row, in the caller's memory.
struct TargetTables {
  std::span<double> sat;        ///< 0..1
  std::span<std::int32_t> hue;  ///< whole degrees, 0..359
  std::int32_t rows = 0, columns = 0;
};

/// \ingroup contract
/// Edits and applies a hue/saturation table: a grid of hue rows by saturation columns that says how
/// far a colour at a node moves in hue and in saturation; in between, changes are interpolated.
///
/// SetConfig takes the table, ProcessImage applies it to pictures, CalInverseLut2dCfg turns it into
/// a table that undoes it. RGBtoHLS and Adjust are for the host that edits a table interactively.
class GREYCARD_EXPORT TwoDLutHelper {
 public:
  using Lut2DConfig = greycard::Lut2DConfig;

  /// A double hexcone colour: hue in degrees, 0 to below 360; saturation and lightness 0..1.
  struct HueSatLightness {
    double h = 0.0, s = 0.0, l = 0.0;
  };

  TwoDLutHelper();
  ~TwoDLutHelper();
  TwoDLutHelper(TwoDLutHelper&&) noexcept;
  TwoDLutHelper& operator=(TwoDLutHelper&&) noexcept;

  /// Fills the processing record; the first call creates it, later ones reuse it.
  /// Any finite number is taken; one beyond the largest float counts as that, and ProcessImage
  /// brings entries into their 10 bits.
  /// \throws std::invalid_argument that names the field and its value when a used number is not
  ///         finite, or a shift not within 0..24. The record stays as it was.
  void SetConfig(const Lut2DConfig& cfg);

  /// When the configuration's inverse_flag is not zero, replaces the changes by those that undo
  /// them, node by node (columns 0 to 14; column 15 copies 14). To first order in the changes: see
  /// UncoveredNodes and try a round trip. It reports to the output channel.
  /// \return false without a configuration
  bool CalInverseLut2dCfg();
  /// \ingroup own
  /// The same, reporting to `remarks` alone, piece by piece as it goes; an empty one hears nothing.
  bool CalInverseLut2dCfg(const TextSink& remarks);

  /// \ingroup own
  /// Nodes that the last inverse since SetConfig found outside every triangle of targets; they got
  /// no change.
  int UncoveredNodes() const { return m_uncoveredNodes; }

  /// Applies the table to w * h pixels, in place, bit for bit the same everywhere. Any number of
  /// threads may do so with one object at a time, each on planes of its own, as long as none sets
  /// or inverts the table meanwhile.
  ///
  /// \param r,g,b  one plane each, samples of 10 bits; larger ones count as 1023
  /// \param w,h    each cut to unsigned 16 bits
  /// \param bpp    ignored; processing always works on 10 bits
  /// \return false, the planes untouched, without a configuration or when a plane is shorter than
  ///         w * h samples; what a longer plane holds beyond stays as it is
  bool ProcessImage(std::span<std::uint16_t> r, std::span<std::uint16_t> g,
                    std::span<std::uint16_t> b, std::int32_t w, std::int32_t h,
                    std::int32_t bpp) const;

  /// From components of 0..1. Black, white and greys have hue and saturation 0.
  /// Source: A. R. Smith, Color gamut transform pairs, SIGGRAPH 1978, double hexcone form.
  static HueSatLightness RGBtoHLS(double r, double g, double b);

  /// To components of 0..1 (not clamped). A hue outside [60, 360) counts as of the first sextant.
  static Vector3 HLStoRGB(double h, double s, double l);

  /// \ingroup own
  /// Spreads the drag of one node over its neighbours, in place. Column 0 is never edited; the
  /// effect falls off with the distance, hue runs round the circle.
  /// \throws std::invalid_argument for a drag that is not finite, hue rows outside 1..360, no
  ///         columns or tables of another size; std::out_of_range for a node outside the tables.
  ///         The tables are left as they were.
  static void Adjust(const NodeDrag& drag, const TargetTables& tables);

  /// \ingroup contract
  /// The same one by one. m_original_s is not used.
  static void Adjust(double /*m_original_s*/, std::int32_t m_original_h, double deltaS,
                     double deltaH, std::int32_t m_nNodeRange_s, std::int32_t m_nNodeRange_h,
                     std::int32_t m_nHit_LUT_h, std::int32_t m_nHit_LUT_s,
                     std::span<double> m_LUT_sat, std::span<std::int32_t> m_LUT_hue,
                     std::int32_t m_nLUT_h, std::int32_t m_nLUT_s, bool bAdjustCenterNode) {
    Adjust({m_original_h, deltaS, deltaH, m_nNodeRange_s, m_nNodeRange_h, m_nHit_LUT_h,
            m_nHit_LUT_s, bAdjustCenterNode},
           {m_LUT_sat, m_LUT_hue, m_nLUT_h, m_nLUT_s});
  }

  /// Writes the changes and targets to the debugger log (level 0, categories "DebugPrint" and
  /// "Lut2D"); does nothing without a configuration.
  void DebugPrint() const;

  /// \ingroup own
  /// The processing record; null without a configuration.
  const lut2d_cfg* record() const { return m_cfg.get(); }

 private:
  std::unique_ptr<lut2d_cfg> m_cfg;
  int m_uncoveredNodes = 0;
};

}  // namespace greycard
