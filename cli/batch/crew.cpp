#include "crew.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "greycard/batch/folder.h"
#include "greycard/errors.h"
#include "greycard/number_text.h"
#include "greycard/picture_threads.h"
#include "progress_bar.h"

namespace greycard::cli {
namespace {

using Clock = std::chrono::steady_clock;

// A signal handler reaches nothing but what is static.
std::atomic<bool> endAsked{false};
static_assert(std::atomic<bool>::is_always_lock_free);

void askForEnd(int /*signal*/) {
  endAsked = true;
}

// While it lives, the first signal to end lets half-done work be put away; the second one ends.
class EndSignals {
 public:
  EndSignals() {
    endAsked = false;
    struct sigaction action {};
    action.sa_handler = askForEnd;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &action, &m_before[i]);
  }
  ~EndSignals() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &m_before[i], nullptr);
  }
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

 private:
  static constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};
  std::array<struct sigaction, kSignals.size()> m_before{};
};

std::string durationText(double seconds) {
  const long whole = std::lround(std::max(seconds, 0.0));
  if (whole < 100) return std::to_string(whole) + " s";
  const long minutes = (whole + 30) / 60;
  if (minutes < 100) return std::to_string(minutes) + " min";
  return fixed(seconds / 3600.0, 1) + " h";
}

class Crew {
 public:
  explicit Crew(const CrewTask& task) : m_task(task) { m_work.results.resize(size()); }

  CrewWork work() {
    const EndSignals signals;
    setPictureThreads(1);  // the crew's own share the cores
    std::vector<std::jthread> threads;
    m_atWork = std::clamp<std::size_t>(m_task.threads, 1, std::max<std::size_t>(1, size()));
    for (std::size_t i = m_atWork; i > 0; --i) threads.emplace_back([this] { takeTurns(); });
    watch();
    threads.clear();  // waits for them
    if (m_failure) std::rethrow_exception(m_failure);
    if (endAsked)
      throw JobError("interrupted with " + std::to_string(m_done) + " of " +
                     std::to_string(size()) +
                     " photographs done; the same command with --resume goes on from there");
    return std::move(m_work);
  }

 private:
  std::size_t size() const { return m_task.files.size(); }
  bool goesOn() const { return !m_stops && !endAsked; }

  void takeTurns() {
    try {
      for (std::size_t i = m_next++; i < size() && goesOn(); i = m_next++) doOne(i);
    } catch (...) {
      const std::scoped_lock lock(m_mutex);
      m_failure = std::current_exception();
      m_stops = true;
    }
    const std::scoped_lock lock(m_mutex);
    --m_atWork;
    m_changed.notify_one();
  }

  void doOne(std::size_t i) {
    const batch::File& file = m_task.files[i];
    const auto place = batch::resultFile(m_task.folder, file);
    auto result = m_task.resume ? batch::doneResult(place, file, m_task.settings) : std::nullopt;
    const bool wasDone = result.has_value();
    if (!wasDone) {
      result = batch::doPhotograph(file, m_task.settings, [this](double) { return goesOn(); });
      if (!result) return;
      batch::writeResult(place, *result);
      // As a later run reads it: a name that is no UTF-8 is written otherwise than it is.
      result = batch::readResult(place);
    }
    result->options = result->result = {};
    const std::scoped_lock lock(m_mutex);
    m_work.results[i] = std::move(*result);
    ++m_done;
    if (wasDone) ++m_work.doneBefore;
  }

  // Until all threads are through.
  void watch() {
    ProgressBar bar(kJobTexts[static_cast<std::size_t>(m_task.settings.job)]);
    const auto begin = Clock::now();
    std::unique_lock lock(m_mutex);
    while (!m_changed.wait_for(lock, std::chrono::milliseconds(100),
                               [this] { return m_atWork == 0; })) {
      const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
      bar.show(static_cast<double>(m_done) / static_cast<double>(size()), paceText(seconds));
    }
  }

  // "12 of 64, 3.1 per second, 17 s left"; what was done already is no pace.
  std::string paceText(double seconds) const {
    std::string text = std::to_string(m_done) + " of " + std::to_string(size());
    const auto worked = static_cast<double>(m_done - m_work.doneBefore);
    if (worked < 1.0 || seconds <= 0.0) return text;
    const double perSecond = worked / seconds;
    text += perSecond < 1.0 ? ", " + general(60.0 * perSecond, 2) + " per minute"
                            : ", " + general(perSecond, 2) + " per second";
    return text + ", " + durationText(static_cast<double>(size() - m_done) / perSecond) + " left";
  }

  static constexpr std::array kJobTexts{"finding charts", "fitting", "evaluating"};

  const CrewTask& m_task;
  std::atomic<std::size_t> m_next{0};
  std::atomic<bool> m_stops{false};
  std::mutex m_mutex;  // of all that follows
  std::condition_variable m_changed;
  std::size_t m_atWork = 0, m_done = 0;
  CrewWork m_work;
  std::exception_ptr m_failure;
};

}  // namespace

CrewWork doAll(const CrewTask& task) {
  return Crew(task).work();
}

}  // namespace greycard::cli
