#pragma once

// The library's side of the diagnostics channels of greycard/diagnostics.h.

#include <string>
#include <string_view>

namespace greycard {

bool outputHasListener();
bool errorHasListener();
bool debugLogHasListener();
void writeOutput(std::string_view text);
void writeError(std::string_view text);
void writeDebug(int level, std::string_view category, std::string_view text);

/// printf to the error channel. Nothing is formatted when nobody listens.
#if defined(__GNUC__)
[[gnu::format(printf, 1, 2)]]
#endif
void printError(const char* format, ...);

}  // namespace greycard
