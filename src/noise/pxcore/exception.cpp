#include "exception.h"

#include <utility>

namespace greycard::pxcore {

Exception::Exception(UniStr message, std::string typeName)
    : m_message(std::move(message)),
      m_narrow(m_message.ToMBCS(UniStr::kUtf8)),
      m_typeName(std::move(typeName)) {}

void checkFailed(const char* expression, const char* function, int line) {
  const std::string location = std::string(function) + " (" + std::to_string(line) + "):";
  const std::string assertion = std::string("assertion (") + expression + ") failed";
  throw ExceptionCheck(UniStr(location + " " + assertion, UniStr::kUtf8));
}

}  // namespace greycard::pxcore
