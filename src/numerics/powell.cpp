#include "powell.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "brent.h"
#include "numeric_error.h"
#include "text.h"

namespace greycard {
namespace {

constexpr double kTiny = 1e-25;           // lets a cost that reaches 0 count as converged
constexpr double kLineRelative = 1.5e-8;  // root of the double's epsilon

[[noreturn]] void failAt(std::span<const double> point, const char* what) {
  std::string text = "powell: the cost is ";
  text += what;
  const char* separator = " at (";
  for (const double x : point) {
    text += separator + formatGeneral(x, 10);
    separator = ", ";
  }
  nrerror(text + ")");
}

/// One run: the current point, the directions and the work vectors.
class Search {
 public:
  Search(CostFunction cost, std::span<const double> start, const PowellOptions& options)
      : cost_(cost),
        options_(options),
        size_(start.size()),
        point_(start.begin(), start.end()),
        trial_(size_),
        directions_(size_ * size_),
        steps_(size_, options.initialStep) {
    for (std::size_t i = 0; i < size_; ++i) directions_[i * size_ + i] = 1.0;
    value_ = evaluate(point_);
    if (std::isinf(value_)) failAt(point_, "infinite");
  }

  PowellResult run() {
    PowellResult result;
    result.firstValue = value_;
    std::vector<double> before(size_);
    for (int n = 1; n <= options_.maxIterations; ++n) {
      before = point_;
      const double valueBefore = value_;
      const LargestFall fall = searchAllDirections();
      const double lowered = valueBefore - value_;
      if (2.0 * lowered <=
          options_.tolerance * (std::abs(valueBefore) + std::abs(value_)) + kTiny) {
        result.point = point_;
        result.lastValue = value_;
        result.iterations = n;
        result.evaluations = evaluations_;
        result.stop = lowered > 0.0 ? PowellStop::Converged : PowellStop::AtMinimum;
        return result;
      }
      tryNetDisplacement(before, valueBefore, fall);
    }
    nrerror("powell exceeding maximum iterations.");
  }

 private:
  struct LargestFall {
    std::size_t direction = 0;
    double amount = 0.0;
  };

  double evaluate(std::span<const double> point) {
    ++evaluations_;
    const double value = cost_(point);
    if (std::isnan(value)) failAt(point, "not a number");
    if (value == -std::numeric_limits<double>::infinity()) failAt(point, "minus infinity");
    return value;
  }

  std::span<double> direction(std::size_t i) {
    return std::span(directions_).subspan(i * size_, size_);
  }

  // Moves the point to the minimum along direction i, or leaves it when nothing there is lower.
  void searchAlong(std::size_t i) {
    const std::span<const double> along = direction(i);
    const auto place = [&](double x) {
      for (std::size_t k = 0; k < size_; ++k) trial_[k] = point_[k] + x * along[k];
    };
    const auto valueAt = [&](double x) {
      place(x);
      return evaluate(trial_);
    };
    double& step = steps_[i];
    const Bracket bracket = bracketMinimum(valueAt, 0.0, value_, step);
    const LineMinimum minimum =
        brent(valueAt, bracket, {kLineRelative, options_.lineTolerance * step, 100});
    double moved = 0.0;
    if (minimum.value < value_) {
      moved = std::abs(minimum.x);
      place(minimum.x);
      point_.swap(trial_);
      value_ = minimum.value;
    }
    step = std::max(
        {moved, options_.maxStepShrink * step, options_.smallestStep * options_.initialStep});
  }

  LargestFall searchAllDirections() {
    LargestFall fall;
    for (std::size_t i = 0; i < size_; ++i) {
      const double before = value_;
      searchAlong(i);
      if (before - value_ > fall.amount) fall = {i, before - value_};
    }
    return fall;
  }

  // The net displacement becomes a direction, in place of the one of the largest fall, unless the
  // point as far again shows that the fall along it is used up or was due to that one direction.
  void tryNetDisplacement(std::span<const double> before, double valueBefore,
                          const LargestFall& fall) {
    for (std::size_t k = 0; k < size_; ++k) trial_[k] = 2.0 * point_[k] - before[k];
    const double beyond = evaluate(trial_);
    if (!(beyond < valueBefore)) return;
    const double rest = valueBefore - value_ - fall.amount;
    const double ahead = valueBefore - beyond;
    const double curvature = valueBefore - 2.0 * value_ + beyond;
    if (!(2.0 * curvature * rest * rest < fall.amount * ahead * ahead)) return;

    const std::span<double> replaced = direction(fall.direction), last = direction(size_ - 1);
    std::copy(last.begin(), last.end(), replaced.begin());
    steps_[fall.direction] = steps_[size_ - 1];
    double length = 0.0;
    for (std::size_t k = 0; k < size_; ++k) length = std::hypot(length, point_[k] - before[k]);
    for (std::size_t k = 0; k < size_; ++k) last[k] = (point_[k] - before[k]) / length;
    steps_[size_ - 1] = length;
    searchAlong(size_ - 1);
  }

  CostFunction cost_;
  const PowellOptions& options_;
  std::size_t size_;
  std::vector<double> point_, trial_;
  std::vector<double> directions_;  // row i is direction i
  std::vector<double> steps_;       // next trial step along each direction
  double value_ = 0.0;
  int evaluations_ = 0;
};

}  // namespace

std::string_view describe(PowellStop stop) {
  return stop == PowellStop::Converged
             ? "the last iteration lowered the cost by no more than the tolerance"
             : "nothing lower was found along any direction";
}

PowellResult powell(CostFunction cost, std::span<const double> start,
                    const PowellOptions& options) {
  return Search(cost, start, options).run();
}

}  // namespace greycard
