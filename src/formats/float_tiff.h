#pragma once

#include <span>
#include <string_view>

#include "formats/byte_writer.h"

namespace tessa {

/// The ImageDescription of a TIFF whose floats are temperatures. A file of one 32-bit float a pixel
/// that carries this text, whoever wrote it, is measured.
inline constexpr std::string_view kDegreesDescription = "temperatures in degrees Celsius";

/// A TIFF 6.0 file of one 32-bit IEEE float a pixel, degrees Celsius, one strip, uncompressed,
/// little-endian. `degrees`: width x height, row by row from the top.
Bytes EncodeFloatTiff(int width, int height, std::span<const float> degrees);

}  // namespace tessa
