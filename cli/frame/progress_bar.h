#pragma once

#include <chrono>
#include <string>

#include "greycard/types.h"

namespace greycard::cli {

/// A bar on standard error for a job that takes more than a second, and only on a terminal. The
/// destructor wipes it, so that an error message or the results start on a clean line.
class ProgressBar {
 public:
  explicit ProgressBar(std::string what);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// Shows the fraction done, 0..1; cheap to call often.
  /// \param note  a few words behind it, as the time left
  void show(double fraction, const std::string& note = {});
  /// For the library's long searches: shows the fraction and goes on. Not to outlive the bar.
  ProgressCallback callback();

 private:
  using Clock = std::chrono::steady_clock;
  std::string m_what;
  bool m_onTerminal;
  bool m_drawn = false;
  Clock::time_point m_next;
};

}  // namespace greycard::cli
