#pragma once

// One writer a format. Each sees material of the kinds that the list in formats.cpp grants it.

#include <string>
#include <string_view>
#include <vector>

#include "greycard/exchange/formats.h"

namespace greycard::exchange {

Exported writeCube1d(const Material& material, const ExportOptions& options);
/// \param size  nodes along each axis
Exported writeCube3d(const Material& material, const ExportOptions& options, int size);
Exported writeCsv(const Material& material, const ExportOptions& options);
Exported writeCHeader(const Material& material, const ExportOptions& options);
Exported writeRpi(const Material& material, const std::string& target);
Exported writeLibcamera(const Material& material);
Exported writeOpenCv(const Material& material, const ExportOptions& options);
/// \param version  2 or 4
Exported writeIcc(const FittedCamera& camera, const ExportOptions& options, int version);
Exported writeDcp(const FittedCamera& camera, const ExportOptions& options);

Exported updateRpi(std::string_view text, const Material& material);
Exported updateLibcamera(std::string_view text, const Material& material);

/// The camera's name from the options, or else the first photograph's, in printable ASCII.
std::string cameraName(const FittedCamera& camera, const ExportOptions& options);
/// What the material is, in printable ASCII, for a title.
std::string titleOf(const Material& material, const ExportOptions& options);

/// The lights from the warmest on. \throws JobError for one without a temperature and for two alike
std::vector<const FittedLight*> byTemperature(const FittedCamera& camera);

/// Exposure gain times white-balance gains.
Vector3 gainsOf(const ChartFit& fit);

}  // namespace greycard::exchange
