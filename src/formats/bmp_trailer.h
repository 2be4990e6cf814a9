#pragma once

#include <cstdint>
#include <optional>

#include "formats/byte_reader.h"
#include "formats/byte_writer.h"

namespace tessa {

inline constexpr std::int16_t kBmpTrailerMark = 28013;  // "mm" in the low reserved word.
inline constexpr std::size_t kBmpTrailerSize = 18;

/// The end of a radiometric bitmap: two palette indices and their temperatures.
struct BmpTrailer {
  std::uint16_t IndexHigh = 0;
  std::uint16_t IndexLow = 0;
  std::uint16_t KelvinHigh = 0;  // Tenths of a kelvin at IndexHigh.
  std::uint16_t KelvinLow = 0;   // Tenths of a kelvin at IndexLow.
};

/// Byte position of a trailer `distance` bytes before the end of a file; nothing when its 18 bytes
/// do not all lie inside the file.
std::optional<std::uint64_t> BmpTrailerPosition(std::uint64_t fileSize, std::int16_t distance);

/// Decodes the 18 bytes of a trailer.
BmpTrailer DecodeBmpTrailer(ByteSpan bytes);

Bytes EncodeBmpTrailer(const BmpTrailer& trailer);

}  // namespace tessa
