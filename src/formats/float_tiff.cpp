#include "formats/float_tiff.h"

#include <bit>

namespace tessa {
namespace {

// Field types of TIFF 6.0.
constexpr std::uint16_t kAscii = 2;
constexpr std::uint16_t kShort = 3;
constexpr std::uint16_t kLong = 4;

constexpr std::uint32_t kDescriptionSize = kDegreesDescription.size() + 1;  // A zero ends it.
constexpr std::uint32_t kHeaderSize = 8;
constexpr std::uint16_t kEntryCount = 11;
constexpr std::uint32_t kDirectorySize = 2 + kEntryCount * 12 + 4;
constexpr std::uint32_t kDescriptionAt = kHeaderSize + kDirectorySize;
constexpr std::uint32_t kPixelsAt = kDescriptionAt + 34;  // A multiple of four.
static_assert(kPixelsAt % 4 == 0 && kPixelsAt >= kDescriptionAt + kDescriptionSize);

}  // namespace

Bytes EncodeFloatTiff(int width, int height, std::span<const float> degrees) {
  const auto columns = static_cast<std::uint32_t>(width);
  const auto rows = static_cast<std::uint32_t>(height);
  ByteWriter writer;
  writer.Reserve(kPixelsAt + degrees.size() * sizeof(float));
  const auto entry = [&](std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                         std::uint32_t value) {
    writer.U16Le(tag);
    writer.U16Le(type);
    writer.U32Le(count);
    writer.U32Le(value);
  };
  writer.U8('I');
  writer.U8('I');
  writer.U16Le(42);
  writer.U32Le(kHeaderSize);
  writer.U16Le(kEntryCount);
  entry(256, kLong, 1, columns);  // ImageWidth
  entry(257, kLong, 1, rows);     // ImageLength
  entry(258, kShort, 1, 32);      // BitsPerSample
  entry(259, kShort, 1, 1);       // Compression: none
  entry(262, kShort, 1, 1);       // PhotometricInterpretation: black is zero
  entry(270, kAscii, kDescriptionSize, kDescriptionAt);
  entry(273, kLong, 1, kPixelsAt);  // StripOffsets
  entry(277, kShort, 1, 1);         // SamplesPerPixel
  entry(278, kLong, 1, rows);       // RowsPerStrip
  entry(279, kLong, 1, static_cast<std::uint32_t>(degrees.size() * sizeof(float)));
  entry(339, kShort, 1, 3);  // SampleFormat: IEEE floating point
  writer.U32Le(0);           // No further directory.
  writer.Text(kDegreesDescription, kDescriptionSize);
  writer.PadTo(kPixelsAt);
  for (const float value : degrees) {
    writer.U32Le(std::bit_cast<std::uint32_t>(value));
  }
  return writer.Take();
}

}  // namespace tessa
