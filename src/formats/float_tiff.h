#pragma once

#include <span>

#include "formats/byte_writer.h"

namespace tessa {

/// A TIFF 6.0 file of one 32-bit IEEE float a pixel, degrees Celsius, one strip, uncompressed,
/// little-endian. `degrees`: width x height, row by row from the top.
Bytes EncodeFloatTiff(int width, int height, std::span<const float> degrees);

}  // namespace tessa
