#pragma once

#include "formats/byte_writer.h"

/// The scenes as an ordinary camera beside the infrared one would see them: the same shapes in the
/// same places, as JPEG files.
namespace tessa::tools {

/// The house front at dusk, lamps burning behind the windows.
Bytes PhotoOfHouse(int width, int height);

/// The electronics board under a work lamp.
Bytes PhotoOfBoard(int width, int height);

}  // namespace tessa::tools
