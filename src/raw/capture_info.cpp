#include "greycard/capture_info.h"

#include "greycard/number_text.h"

namespace greycard {
namespace {

// One number where the three channels agree.
std::string channelsText(const Vector3& values) {
  const std::string first = general(values[0], 6);
  if (values[0] == values[1] && values[1] == values[2]) return first;
  return first + ", " + general(values[1], 6) + ", " + general(values[2], 6);
}

std::string exposureText(const CaptureInfo& info) {
  std::string text;
  if (info.iso) text = "ISO " + general(*info.iso, 6);
  if (!info.exposureSeconds) return text;
  const double seconds = *info.exposureSeconds;
  text += (text.empty() ? "" : ", ") +
          (seconds < 0.3 ? "1/" + fixed(1.0 / seconds, 0) : general(seconds, 3)) + " s";
  return text;
}

}  // namespace

std::vector<std::pair<std::string, std::string>> captureRows(const CaptureInfo& info) {
  std::vector<std::pair<std::string, std::string>> rows;
  const auto add = [&](const char* name, const std::string& value) {
    if (!value.empty()) rows.emplace_back(name, value);
  };
  add("Camera", info.camera);
  add("Sensor",
      std::to_string(info.sensorWidth) + " x " + std::to_string(info.sensorHeight) + " samples, " +
          info.mosaic +
          (info.orientation == 1 ? "" : ", orientation mark " + std::to_string(info.orientation)));
  add("Exposure", exposureText(info));
  if (info.asShotGains)
    add("As shot gains", fixed((*info.asShotGains)[0], 4) + ", " +
                             fixed((*info.asShotGains)[1], 4) + ", " +
                             fixed((*info.asShotGains)[2], 4));
  add("Levels",
      "black " + channelsText(info.blackLevel) + ", white " + channelsText(info.whiteLevel));
  return rows;
}

}  // namespace greycard
