#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "formats/byte_reader.h"
#include "formats/byte_source.h"
#include "formats/byte_writer.h"
#include "formats/colour.h"
#include "formats/problem.h"

namespace tessa {

inline constexpr std::size_t kBmpFileHeaderSize = 14;
inline constexpr std::uint16_t kBmpType = 19778;  // "BM"
/// Widest and highest picture of the program: sizes are signed 16-bit values.
inline constexpr int kMaxPictureSide = 32767;
/// Most pixels of a picture file: room for the largest photographs, 11648 x 8736.
inline constexpr std::uint64_t kMaxPicturePixels = 100ULL << 20;

/// The 14 bytes at the start of a bitmap file. The reserved words can carry temperatures.
struct BmpFileHeader {
  std::uint16_t Type = 0;
  std::uint32_t Size = 0;
  std::int16_t ReservedLow = 0;
  std::int16_t ReservedHigh = 0;
  std::uint32_t OffBits = 0;
};

/// The 40 bytes behind it. Older, 12-byte headers are widened to this form.
struct BmpInfoHeader {
  std::uint32_t Size = 0;
  std::int32_t Width = 0;
  std::int32_t Height = 0;  // Negative: the top row comes first.
  std::uint16_t Planes = 0;
  std::uint16_t BitCount = 0;
  std::uint32_t Compression = 0;
  std::uint32_t SizeImage = 0;
  std::int32_t XPelsPerMeter = 0;
  std::int32_t YPelsPerMeter = 0;
  std::uint32_t ClrUsed = 0;
  std::uint32_t ClrImportant = 0;
};

struct BmpPicture {
  BmpFileHeader FileHeader;
  BmpInfoHeader InfoHeader;
  int Width = 0;  // 0 when the picture could not be read; `Faults` then says why.
  int Height = 0;
  int Depth = 0;                     // 8: one palette index a pixel. 24: red, green, blue bytes.
  std::vector<std::uint8_t> Pixels;  // Rows from the top, without padding.
  ColourTable Palette{};             // Entries that the file does not have are 0.
  int PaletteEntries = 0;            // How many of them it has.
  Problems Faults;
};

/// Reads the two headers; `faults` gains what is wrong with them. Fields whose bytes are missing
/// stay 0.
void ReadBmpHeaders(ByteSpan file, BmpFileHeader& fileHeader, BmpInfoHeader& infoHeader,
                    Problems& faults);

/// Decodes a whole bitmap file: 1, 2, 4 and 8 bits become 8-bit indices, 16, 24 and 32 bits become
/// 24-bit colours (alpha is ignored); RLE4, RLE8, bit fields, top-down rows and the older headers
/// are read. A picture whose bytes are not all there is refused: half a bitmap would show
/// temperatures that nobody measured. Only
/// headers, palette and pixels are read, a piece at a time, and no more work is done than the
/// pixels and their bytes stand for.
BmpPicture DecodeBmp(const ByteSource& file);
BmpPicture DecodeBmp(ByteSpan file);

/// The bytes of an 8-bit bitmap file. `indices` holds `height` rows of `stride` bytes from the top.
/// The reserved words go into the file header as they are.
Bytes EncodeBmp8(int width, int height, std::span<const std::uint8_t> indices, std::size_t stride,
                 const ColourTable& palette, std::int16_t reservedLow = 0,
                 std::int16_t reservedHigh = 0);

/// The same for 24-bit pixels stored as red, green, blue.
Bytes EncodeBmp24(int width, int height, std::span<const std::uint8_t> pixels, std::size_t stride);

}  // namespace tessa
