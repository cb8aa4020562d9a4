#pragma once

#include <exception>
#include <string>
#include <utility>

#include "uni_str.h"

namespace greycard::pxcore {

/// Base of what this library throws: a message and the name of the exception's type.
class Exception : public std::exception {
 public:
  explicit Exception(UniStr message, std::string typeName = "Exception");

  const char* what() const noexcept override { return m_narrow.c_str(); }  ///< UTF-8
  const std::wstring& GetErrMsg() const { return m_message.Text(); }
  const std::string& TypeName() const { return m_typeName; }

 private:
  UniStr m_message;
  std::string m_narrow, m_typeName;
};

/// A check on arguments failed.
class ExceptionCheck : public Exception {
 public:
  explicit ExceptionCheck(UniStr message) : Exception(std::move(message), "ExceptionCheck") {}
};
/// A file can't be read or written.
class ExceptionFile : public Exception {
 public:
  explicit ExceptionFile(UniStr message) : Exception(std::move(message), "ExceptionFile") {}
};
/// The platform refused: no memory, no such conversion.
class ExceptionRuntime : public Exception {
 public:
  explicit ExceptionRuntime(UniStr message) : Exception(std::move(message), "ExceptionRuntime") {}
};
/// The caller stopped the work.
class ExceptionAbort : public Exception {
 public:
  explicit ExceptionAbort(UniStr message) : Exception(std::move(message), "ExceptionAbort") {}
};

/// Throws ExceptionCheck with the text "FUNCTION (LINE): assertion (EXPRESSION) failed".
[[noreturn]] void checkFailed(const char* expression, const char* function, int line);

}  // namespace greycard::pxcore

/// A macro, since the message quotes the expression and names the function and line it stands in.
#define PXCORE_CHECK(expression) \
  ((expression) ? void() : ::greycard::pxcore::checkFailed(#expression, __func__, __LINE__))
