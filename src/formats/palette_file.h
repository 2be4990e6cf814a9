#pragma once

#include <span>

#include "formats/bmp.h"

namespace tessa {

inline constexpr std::size_t kStoredPalettes = 18;
inline constexpr std::size_t kPaletteFileSize = kStoredPalettes * 256 * 4;

/// Reads as many whole colours as `file` holds into `tables`, in order, little-endian; entries that
/// the file does not reach keep their value. Reports a file that is too short.
void DecodePaletteFile(ByteSpan file, std::span<ColourTable> tables, Problems& faults);

}  // namespace tessa
