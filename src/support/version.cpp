#include "greycard/version.h"

namespace greycard {

const char* libraryVersion() {
  return GREYCARD_VERSION;
}

}  // namespace greycard
