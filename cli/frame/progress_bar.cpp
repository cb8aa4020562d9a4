#include "progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace greycard::cli {
namespace {

constexpr std::chrono::milliseconds kPatience{1000}, kInterval{100};
constexpr int kWidth = 40;

}  // namespace

ProgressBar::ProgressBar(std::string what)
    : m_what(std::move(what)),
      m_onTerminal(::isatty(STDERR_FILENO) == 1),
      m_next(Clock::now() + kPatience) {}

ProgressBar::~ProgressBar() {
  if (m_drawn) std::fputs("\r\033[K", stderr);
}

void ProgressBar::show(double fraction, const std::string& note) {
  if (!m_onTerminal || !std::isfinite(fraction)) return;
  const auto now = Clock::now();
  if (now < m_next) return;
  m_next = now + kInterval;
  m_drawn = true;
  const double done = std::clamp(fraction, 0.0, 1.0);
  const auto filled = static_cast<std::size_t>(std::lround(done * kWidth));
  const std::string bar = std::string(filled, '#') + std::string(kWidth - filled, '.');
  std::fprintf(stderr, "\r%s [%s] %3.0f %%%s%s\033[K", m_what.c_str(), bar.c_str(), 100.0 * done,
               note.empty() ? "" : "  ", note.c_str());
  std::fflush(stderr);
}

ProgressCallback ProgressBar::callback() {
  return [this](double fraction) {
    show(fraction);
    return true;
  };
}

}  // namespace greycard::cli
