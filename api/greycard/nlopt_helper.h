#pragma once
/// \file
/// \ingroup contract own

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "greycard/export.h"
#include "greycard/exposure_histogram.h"
#include "greycard/types.h"

namespace greycard {

/// \ingroup contract
/// The parameters of the luma-target rule, and the groups of them that can be held fixed.
inline constexpr std::size_t kGaParameters = 12, kGaEnableFlags = 9;
/// \ingroup contract
/// Most images of one GA run.
inline constexpr int kGaMaxImages = 299;

using GaParameters = std::array<double, kGaParameters>;

/// \ingroup contract
/// Where the design of the rule starts from:
///   0, 1    numerators of targets A (over the push-down statistic) and B (over the push-up one)
///   2, 3    numerators of the upper and the lower dark target
///   4, 8    the push-up statistic is the mean from percentile 1 - [4] to percentile 1 - [8]
///   5, 9    the push-down statistic likewise
///   6, 7    ceiling and floor of the safe target, as factors on the current target
///   10, 11  the dark statistic is the mean from percentile [10] to percentile [11]
inline constexpr GaParameters kGaReferenceParameters{180.0, 250.0, 50.0, 3.0,  0.08, 0.04,
                                                     2.0,   1.0,   0.02, 0.01, 0.0,  0.15};

/// \ingroup contract
/// The entry of parameters_enable that frees each parameter.
inline constexpr std::array<std::size_t, kGaParameters> kGaEnableFlagOf{0, 1, 2, 3, 6, 7,
                                                                        4, 5, 6, 7, 8, 8};

/// \ingroup own
/// When a search gives up, and what makes it repeatable.
///
/// The random numbers are NLopt's, whose generator belongs to the thread: each run seeds the one of
/// the calling thread before it starts, so that the same seed gives the same numbers whatever ran
/// before and whatever other threads do. A host that draws on NLopt in the same thread finds the
/// generator where the run left it and seeds it again. A run that the clock ends stops at another
/// evaluation each time; for the same bits every time, limit the evaluations below what the clock
/// allows.
struct SearchOptions {
  static constexpr std::uint32_t kDefaultSeed = 1;
  std::uint32_t seed = kDefaultSeed;
  double maxSeconds = 15.0;  ///< 0 = no limit
  int maxEvaluations = 0;    ///< of the objective; 0 = no limit
  /// Called every 64 evaluations with the fraction of the nearer limit that is used up (0 when
  /// there is none); false stops the search with result code -5.
  ProgressCallback progress;
};

/// \ingroup own
/// How a GA run went.
struct GaReport {
  /// The best point found, with the least error. GA itself gives the parameters of the last
  /// evaluation when the clock ended the search. In a manual run the parameters evaluated.
  GaParameters best{};
  /// Whether `best` keeps the constraints. A search that ends with false found no such point;
  /// `best` is then the one that breaks them least.
  bool bestKeepsConstraints = true;
  int evaluations = 0;
  double seconds = 0.0;
};

/// \ingroup own
/// What GA fits the rule to: N images, and the limits of the search. The arrays stay the caller's
/// for the length of the call; longer ones are read as far as needed.
struct GaTask {
  /// 12 each: the bounds and, within them, the start.
  std::span<const double> lowerBound, upperBound, initialBound;
  /// N, 1 to 299.
  int imageCount = 0;
  /// N: weight of each image, 0 or above, not all 0, with a finite sum.
  std::span<const double> Weight;
  /// N each: the luma target wanted, the luma measured now, the luma target set now.
  std::span<const double> newTarget, curr_luma, cur_target;
  /// Limit of the compression gain; not 0 = compression on.
  double max_drc_gain = 0.0, ADRC_Enable = 0.0;
  /// N each: see ExposureHistograms.
  std::span<const ChannelHistograms> hist_RGB, hist_CDF;
  /// 12: the value of each parameter whose group is not enabled.
  std::span<const double> initial_parameter;
  /// 9: not 0 = the group is fitted (kGaEnableFlagOf). With flag 4 set the ceiling of every image
  /// is [6] times the first image's current target (deliberate), without it [6] times its own.
  std::span<const double> parameters_enable;
  /// True: evaluates initial_parameter once, without a search.
  bool isManual = false;
};

/// \ingroup own
/// What the rule makes of one image.
struct GaImageResult {
  /// The larger and the smaller of the targets A and B, then the upper and the lower dark target.
  std::array<double, 4> fourTargets{};
  /// The targets of the rule; with the gain as it is defined, always equal.
  double safeTarget = 0.0, shortTarget = 0.0, longTarget = 0.0;
  double pushUp = 0.0, pushDown = 0.0, dark = 0.0;  ///< statistics: mean bins of 0.5 or above
};

/// \ingroup own
/// Results of a GA run. The images and the mean describe the last evaluation of the search, not the
/// best.
struct GaResult {
  /// The parameters NLopt found best; after the time limit (result 6) those of the last evaluation,
  /// deliberately; in a manual run, and at once with result 1 when no group is enabled, the start.
  GaParameters parameters{};
  std::optional<int> resultCode;  ///< NLopt's (see stopReason); absent in a manual run
  /// The least error that NLopt found (infinite when it found none), in a manual run the error of
  /// initial_parameter.
  double error = 0.0;
  double meanTargetError = 0.0;  ///< mean |target - wanted target|
  std::vector<GaImageResult> images;
  GaReport report;
};

/// \ingroup own
/// NLopt's result code in words, as in "the time limit was reached".
GREYCARD_EXPORT std::string_view stopReason(int resultCode);

/// \ingroup contract
/// Tunes an auto-exposure luma-target rule and matches lightness by a scale factor, both with
/// NLopt's improved stochastic ranking evolution strategy (ISRES: Runarsson and Yao, IEEE Trans.
/// Systems, Man and Cybernetics C 35 (2005) 233). Nothing is shared between calls: any number may
/// run at once, each in its thread.
///
/// An exception of the progress callback ends the search and reaches the caller unchanged.
class GREYCARD_EXPORT NLoptHelper {
 public:
  /// \ingroup own
  /// Fits the twelve parameters of the luma-target rule, so that the weighted mean square of
  /// (target of the rule - wanted target) over all images is least, with the ranges of percentiles
  /// kept open: [4] - [8] >= 0.005, [5] - [9] >= 0.005, [11] - [10] >= 0.08, and [2] - [3] >= 40.
  ///
  /// \throws std::invalid_argument naming the argument that is too short, out of its range or not
  ///         finite, before anything runs; and naming the two parameters when a statistic's range
  ///         of percentiles has no width
  GaResult GA(const GaTask& task, const SearchOptions& options = {}) const;

  /// \ingroup contract
  /// The same one by one: GaTask and GaResult tell what each is.
  ///
  /// \param max_pushup_mean, max_pushdown_mean, max_dark_mean  N each: finite, not used
  /// \param fourTargets  receives N x 4
  /// \param histBasedSafeTarget, histBasedShortTarget, histBasedLongTarget  at least N each, filled
  ///                     in place, as are the next three
  /// \param final_sat_pushup_pos, final_sat_pushdown_pos, final_dark_pos  the statistics
  /// \param opt_endCond  receives the result code; untouched in a manual run
  /// \param avg_targeterror, errorValue  receive meanTargetError and error
  /// \throws std::invalid_argument as above, also for outputs too short; all are then untouched
  GaParameters GA(
      std::span<const double> lowerBound, std::span<const double> upperBound,
      std::span<const double> initialBound, int imageCount, std::span<const double> Weight,
      std::span<const double> newTarget, std::span<const double> curr_luma,
      std::span<const double> cur_target, double max_drc_gain, double ADRC_Enable,
      std::span<const ChannelHistograms> hist_RGB, std::span<const ChannelHistograms> hist_CDF,
      std::span<const double> max_pushup_mean, std::span<const double> max_pushdown_mean,
      std::span<const double> max_dark_mean, std::span<const double> initial_parameter,
      std::span<const double> parameters_enable, bool isManual,
      std::vector<std::array<double, 4>>& fourTargets, std::span<double> histBasedSafeTarget,
      std::span<double> histBasedShortTarget, std::span<double> histBasedLongTarget,
      std::span<double> final_sat_pushup_pos, std::span<double> final_sat_pushdown_pos,
      std::span<double> final_dark_pos, int& opt_endCond, double& avg_targeterror,
      double& errorValue, const SearchOptions& options = {}, GaReport* report = nullptr) const {
    return runInto(
        {lowerBound, upperBound, initialBound, imageCount, Weight, newTarget, curr_luma, cur_target,
         max_drc_gain, ADRC_Enable, hist_RGB, hist_CDF, initial_parameter, parameters_enable,
         isManual},
        {max_pushup_mean, max_pushdown_mean, max_dark_mean, fourTargets, histBasedSafeTarget,
         histBasedShortTarget, histBasedLongTarget, final_sat_pushup_pos, final_sat_pushdown_pos,
         final_dark_pos, opt_endCond, avg_targeterror, errorValue, report},
        options);
  }

  /// The factor, 0 to 10, on the encoded test colour that gives it the L* of the target colour.
  /// When none does, the one that comes nearest, at once: 10 when that leaves the colour too dark,
  /// 0 for a target darker than black. The search ends when the two L* agree to 1e-5; while NLopt
  /// gives up before that (the square of the difference no longer falls by 1e-8), it goes on from
  /// where it came, up to 20 times.
  ///
  /// Accuracy: within 1e-5 of the exact factor for 1400 random pairs. Of a test colour that is
  /// nearly black the L* hardly moves: below an L* of 1 the factor is good to 1e-5 over that L*,
  /// which is 2e-4 for (1, 0, 0) and 5e-4 for (0, 0, 1).
  ///
  /// \param testRGB, targetRGB  encoded sRGB, nominally 0..255
  /// \return the factor; 1 at once for a black test colour, which no factor can change
  /// \throws std::invalid_argument naming the argument that is not finite, or so large that its L*
  ///         is not
  double findMinSearch(const Vector3& testRGB, const Vector3& targetRGB,
                       const SearchOptions& options = {}) const;

  /// Solves x^2 + 3 y^2 + z = 100 with x >= y + 5 and z >= x + 10 in [1, 100] as a self-check of
  /// the library. The result goes to the debug log.
  void test() const;

 private:
  // What the long form has beside a task.
  struct LongForm {
    std::span<const double> max_pushup_mean, max_pushdown_mean, max_dark_mean;
    std::vector<std::array<double, 4>>& fourTargets;
    std::span<double> histBasedSafeTarget, histBasedShortTarget, histBasedLongTarget;
    std::span<double> final_sat_pushup_pos, final_sat_pushdown_pos, final_dark_pos;
    int& opt_endCond;
    double &avg_targeterror, &errorValue;
    GaReport* report;
  };
  GaParameters runInto(const GaTask& task, const LongForm& rest,
                       const SearchOptions& options) const;
};

}  // namespace greycard
