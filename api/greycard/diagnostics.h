#pragma once
/// \file
/// \ingroup own

#include <functional>
#include <string_view>

#include "greycard/export.h"

namespace greycard {

/// The three channels that the library's diagnostics go through. They are for reading along, never
/// error reports. A host may replace each, from any thread; the replacement must itself be callable
/// from every thread that calls the library, and must not throw.
using TextSink = std::function<void(std::string_view text)>;
using DebugSink = std::function<void(int level, std::string_view category, std::string_view text)>;

/// Replaces the output channel (standard output until then). An empty sink silences it.
GREYCARD_EXPORT void setOutputChannel(TextSink sink);
/// Replaces the error channel (standard error until then). An empty sink silences it.
GREYCARD_EXPORT void setErrorChannel(TextSink sink);
/// Replaces the listener of the debugger log (none until then). An empty sink removes it.
GREYCARD_EXPORT void setDebugLog(DebugSink sink);

}  // namespace greycard
