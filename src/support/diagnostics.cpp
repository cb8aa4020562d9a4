#include "greycard/diagnostics.h"

#include <atomic>
#include <cstdarg>
#include <memory>
#include <mutex>
#include <utility>

#include "channels.h"

namespace greycard {
namespace {

// A replaceable listener. The lock covers the exchange only, never the call: a sink may itself
// call the library.
template <typename Sink>
class Channel {
 public:
  explicit Channel(Sink initial) { replace(std::move(initial)); }

  void replace(Sink sink) {
    auto next = sink ? std::make_shared<const Sink>(std::move(sink)) : nullptr;
    const std::lock_guard lock(mutex_);
    sink_ = std::move(next);
    listening_ = sink_ != nullptr;
  }

  bool listening() const { return listening_; }

  template <typename... Args>
  void send(const Args&... args) const {
    std::shared_ptr<const Sink> sink;
    {
      const std::lock_guard lock(mutex_);
      sink = sink_;
    }
    if (sink) (*sink)(args...);
  }

 private:
  mutable std::mutex mutex_;
  std::shared_ptr<const Sink> sink_;
  std::atomic<bool> listening_{false};
};

TextSink toStream(std::FILE* stream) {
  return [stream](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stream); };
}

Channel<TextSink>& output() {
  static Channel<TextSink> channel(toStream(stdout));
  return channel;
}
Channel<TextSink>& error() {
  static Channel<TextSink> channel(toStream(stderr));
  return channel;
}
Channel<DebugSink>& debugLog() {
  static Channel<DebugSink> channel(nullptr);
  return channel;
}

}  // namespace

void setOutputChannel(TextSink sink) {
  output().replace(std::move(sink));
}
void setErrorChannel(TextSink sink) {
  error().replace(std::move(sink));
}
void setDebugLog(DebugSink sink) {
  debugLog().replace(std::move(sink));
}

bool outputHasListener() {
  return output().listening();
}
bool errorHasListener() {
  return error().listening();
}
bool debugLogHasListener() {
  return debugLog().listening();
}
void writeOutput(std::string_view text) {
  output().send(text);
}
void writeError(std::string_view text) {
  error().send(text);
}
void writeDebug(int level, std::string_view category, std::string_view text) {
  debugLog().send(level, category, text);
}

void printError(const char* format, ...) {
  if (!errorHasListener()) return;
  char line[512];
  va_list args;
  va_start(args, format);
  std::vsnprintf(line, sizeof line, format, args);
  va_end(args);
  writeError(line);
}

}  // namespace greycard
