#include <algorithm>
#include <cstddef>

#include "formats/bmp.h"

namespace tessa {
namespace {

constexpr std::uint32_t kInfoHeaderSize = 40;

/// Both headers of an uncompressed bitmap whose pixels start at `offBits`.
void WriteHeaders(ByteWriter& writer, int width, int height, std::uint16_t bits,
                  std::uint32_t offBits, std::uint32_t pixelBytes, std::int16_t reservedLow,
                  std::int16_t reservedHigh) {
  writer.U16Le(kBmpType);
  writer.U32Le(offBits + pixelBytes);
  writer.U16Le(static_cast<std::uint16_t>(reservedLow));
  writer.U16Le(static_cast<std::uint16_t>(reservedHigh));
  writer.U32Le(offBits);
  writer.U32Le(kInfoHeaderSize);
  writer.I32Le(width);
  writer.I32Le(height);
  writer.U16Le(1);
  writer.U16Le(bits);
  writer.U32Le(0);
  writer.U32Le(pixelBytes);
  writer.I32Le(0);
  writer.I32Le(0);
  writer.U32Le(0);
  writer.U32Le(0);
}

}  // namespace

Bytes EncodeBmp8(int width, int height, std::span<const std::uint8_t> indices, std::size_t stride,
                 const ColourTable& palette, std::int16_t reservedLow, std::int16_t reservedHigh) {
  constexpr std::uint32_t kOffBits = kBmpFileHeaderSize + kInfoHeaderSize + 256 * 4;
  const std::size_t rowBytes = (static_cast<std::size_t>(width) + 3) / 4 * 4;
  const std::size_t pixelBytes = rowBytes * static_cast<std::size_t>(height);
  ByteWriter writer;
  writer.Reserve(kOffBits + pixelBytes);
  WriteHeaders(writer, width, height, 8, kOffBits, static_cast<std::uint32_t>(pixelBytes),
               reservedLow, reservedHigh);
  for (const Colour colour : palette) {
    writer.U8(BlueOf(colour));
    writer.U8(GreenOf(colour));
    writer.U8(RedOf(colour));
    writer.U8(0);
  }
  for (int row = height - 1; row >= 0; --row) {
    writer.Append(
        indices.subspan(static_cast<std::size_t>(row) * stride, static_cast<std::size_t>(width)));
    writer.PadTo(kOffBits + rowBytes * static_cast<std::size_t>(height - row));
  }
  return writer.Take();
}

Bytes EncodeBmp24(int width, int height, std::span<const std::uint8_t> pixels, std::size_t stride) {
  constexpr std::uint32_t kOffBits = kBmpFileHeaderSize + kInfoHeaderSize;
  const std::size_t rowBytes = (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4;
  const std::size_t pixelBytes = rowBytes * static_cast<std::size_t>(height);
  ByteWriter writer;
  WriteHeaders(writer, width, height, 24, kOffBits, static_cast<std::uint32_t>(pixelBytes), 0, 0);
  Bytes file = writer.Take();
  file.resize(kOffBits + pixelBytes);
  for (int row = 0; row < height; ++row) {
    const std::uint8_t* from = pixels.data() + static_cast<std::size_t>(row) * stride;
    std::uint8_t* to =
        file.data() + kOffBits + rowBytes * static_cast<std::size_t>(height - 1 - row);
    for (int column = 0; column < width; ++column, from += 3, to += 3) {
      to[0] = from[2];
      to[1] = from[1];
      to[2] = from[0];
    }
  }
  return file;
}

}  // namespace tessa
