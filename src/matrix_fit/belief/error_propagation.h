#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "belief/fit_figures.h"
#include "fit_search.h"
#include "greycard/matrix_fit.h"

namespace greycard {

/// Standard errors by the measured noise. Every measured value is moved up and down by the standard
/// error of its mean, the minimum is followed there by Newton's steps, and the squares of the
/// shifts of each result are summed. Curve, light, gains and exposure that come from patches move
/// along.
class ErrorPropagation {
 public:
  ErrorPropagation(const FitContext& context, const FitEnd& end);

  /// Adds the noise of one photograph.
  /// \return false when the end of the search is no minimum that can be followed, as with fewer
  ///         colours than unknowns
  bool add(std::size_t photograph);
  FitUncertainty errors() const;

 private:
  /// What follows from photographs, changed or not.
  struct Outcome {
    std::vector<double> numbers;  // all that have slopes, in one row
    std::vector<ShownPhotograph> shown;
  };

  bool follow(Outcome& outcome) const;
  void addShift(const Outcome& up, const Outcome& down);
  FitCost costOf(const FitSetup& setup) const;

  const FitContext& context_;
  const FitEnd& end_;
  int rounds_;
  LocalModel atEnd_;
  std::vector<FitPhotograph> photographs_;
  Outcome still_;
  bool determined_;
  std::vector<double> variance_;
  std::vector<std::array<Matrix3, kPatchCount>> covariance_;  // of L*, a*, b*
};

}  // namespace greycard
