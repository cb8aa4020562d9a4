#include "greycard/jobs/describe_photograph.h"

namespace greycard {

PhotographInfo describePhotograph(const Photograph& photograph) {
  const Picture& picture = photograph.picture;
  return {photograph.file,
          photograph.format,
          picture.width,
          picture.height,
          picture.channels,
          picture.bits,
          sampleLevels(picture, photograph.samples),
          photograph.capture,
          photograph.warnings};
}

}  // namespace greycard
