#pragma once

// What raw files tell about themselves, as described in docs/ccm_json.md.

#include "describe.h"
#include "greycard/capture_info.h"

namespace greycard::present {

void describe(auto& fields, Like<CaptureInfo> auto& info) {
  fields("format", info.format);
  fields("camera", info.camera);
  fields("mosaic", info.mosaic);
  fields("sensor_width", info.sensorWidth);
  fields("sensor_height", info.sensorHeight);
  fields("orientation", info.orientation);
  fields.optional("iso", info.iso);
  fields.optional("exposure_seconds", info.exposureSeconds);
  fields.optional("as_shot_gains", info.asShotGains);
  fields("black_level", info.blackLevel);
  fields("white_level", info.whiteLevel);
}

}  // namespace greycard::present
