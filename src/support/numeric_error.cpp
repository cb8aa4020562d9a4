#include "numeric_error.h"

#include "channels.h"

namespace greycard {

void nrerror(const std::string& message) {
  if (errorHasListener())
    writeError("Numerical Recipes run-time error...\n" + message +
               "\n...now exiting to system...\n");
  throw NumericError(message);
}

}  // namespace greycard
