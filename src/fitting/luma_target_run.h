#pragma once

#include <array>
#include <vector>

#include "greycard/nlopt_helper.h"
#include "histogram_statistic.h"

namespace greycard {

/// The images and settings of one GA call, and what the latest evaluation made of them. NLopt's
/// callbacks get it through their data pointer.
struct LumaTargetRun {
  int m_imageCount = 0;
  double m_max_drc_gain = 0.0, m_ADRC_Enable = 0.0;
  std::vector<double> m_Weight, m_newTarget, m_curr_luma, m_cur_target;
  GaParameters m_initial_parameter{};
  std::array<double, kGaEnableFlags> m_parameters_enable{};
  GaParameters m_lowerBound{}, m_upperBound{};
  std::vector<ChannelHistograms> m_hist_RGB, m_hist_CDF;

  // The latest evaluation.
  std::vector<std::array<double, 4>> m_tempTarget;
  GaParameters m_xTmp{};
  std::vector<double> m_final_sat_pushup_pos, m_final_sat_pushdown_pos, m_final_dark_pos;
  std::vector<double> m_resHistBasedSafeTarget, m_resHistBasedShortTarget, m_resHistBasedLongTarget;
  double m_avgTargetError = 0.0;
  double ga_error = 0.0;

  /// Gives the tables of the latest evaluation their m_imageCount rows. To be called once the input
  /// tables are filled.
  void prepare();

  /// The weighted mean square error of the rule's targets with parameters x. Allocates nothing.
  /// \throws std::invalid_argument when a range of percentiles has no width
  double errorFunc_LumaTarget(const GaParameters& x);

  bool enabled(std::size_t parameter) const {
    return m_parameters_enable[kGaEnableFlagOf[parameter]] != 0.0;
  }

 private:
  struct PctRange {
    double start = 0.0, end = 0.0;  // no width: nothing was computed yet
    bool operator==(const PctRange&) const = default;
  };
  void updateStatistics(const GaParameters& parameters, const GaParameters& x);
  void updateStatistic(std::vector<double>& statistic, PctRange& known, const PctRange& wanted);
  [[noreturn]] void refuseRange(const char* statistic, std::size_t first, std::size_t second,
                                const GaParameters& x) const;
  double safeTarget(std::size_t image, const GaParameters& parameters, double lo, double hi) const;

  double m_weightSum = 0.0;
  std::vector<std::array<PercentileGuide, 3>> m_guides;  // of m_hist_CDF
  PctRange m_pushUpRange, m_pushDownRange, m_darkRange;
};

}  // namespace greycard
