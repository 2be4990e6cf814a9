#include "formats/frame_array.h"

#include <algorithm>

namespace tessa {
namespace {

constexpr std::uint16_t kTypeEmpty = 0;
constexpr std::uint8_t kTypeSigned16 = 2;
constexpr std::uint8_t kTypeByte = 17;
constexpr std::uint16_t kArrayFlag = 0x2000;
constexpr std::uint16_t kDimensions = 2;
constexpr std::uint64_t kTypeWordSize = 2;

}  // namespace

std::uint64_t FrameArrayHeader::ByteSize() const {
  switch (What) {
    case State::kPixels:
      // Counts are 32-bit values, so the product can wrap; no real file is that long.
      if (SecondCount != 0 && FirstCount > (std::uint64_t{1} << 60) / SecondCount) {
        return std::uint64_t{1} << 62;
      }
      return kFrameArrayHeaderSize +
             FirstCount * SecondCount * static_cast<std::uint64_t>(BytesPerElement);
    case State::kEmpty:
      return kTypeWordSize;
    case State::kForeign:
      break;
  }
  return 0;
}

bool FrameArrayHeader::Describes(int width, int height) const {
  if (What != State::kPixels || width <= 0 || height <= 0) {
    return false;
  }
  const auto rows = static_cast<std::uint64_t>(height);
  const auto columns = static_cast<std::uint64_t>(width);
  return FirstCount == rows ? SecondCount == columns : SecondCount == rows && FirstCount == columns;
}

FrameArrayHeader ReadFrameArrayHeader(ByteSpan start) {
  FrameArrayHeader header;
  ByteReader reader(start);
  const std::uint16_t type = reader.U16Le();
  if (reader.Failed()) {
    return header;
  }
  if (type == kTypeEmpty) {
    header.What = FrameArrayHeader::State::kEmpty;
    return header;
  }
  const auto element = static_cast<std::uint8_t>(type);
  const std::uint16_t dimensions = reader.U16Le();
  header.FirstCount = reader.U32Le();
  reader.Skip(4);
  header.SecondCount = reader.U32Le();
  reader.Skip(4);
  if (!reader.Failed() && dimensions == kDimensions &&
      (element == kTypeSigned16 || element == kTypeByte)) {
    header.What = FrameArrayHeader::State::kPixels;
    header.BytesPerElement = element == kTypeByte ? 1 : 2;
  }
  return header;
}

std::optional<Frame> DecodeFrameArray(ByteSpan bytes, int width, int height) {
  const FrameArrayHeader header = ReadFrameArrayHeader(bytes);
  if (!header.Describes(width, height) || header.ByteSize() > bytes.size()) {
    return std::nullopt;
  }
  Frame frame{width, height, {}};
  const auto rows = static_cast<std::size_t>(height);
  const auto columns = static_cast<std::size_t>(width);
  frame.Pixels.resize(rows * columns);
  const std::uint8_t* const elements = bytes.data() + kFrameArrayHeaderSize;
  std::int16_t* const pixels = frame.Pixels.data();
  // In tiles, because one side is read and the other written across the grain of memory.
  constexpr std::size_t kTile = 32;
  const bool isByte = header.BytesPerElement == 1;
  for (std::size_t firstRow = 0; firstRow < rows; firstRow += kTile) {
    const std::size_t lastRow = std::min(rows, firstRow + kTile);
    for (std::size_t firstColumn = 0; firstColumn < columns; firstColumn += kTile) {
      const std::size_t lastColumn = std::min(columns, firstColumn + kTile);
      for (std::size_t row = firstRow; row < lastRow; ++row) {
        for (std::size_t column = firstColumn; column < lastColumn; ++column) {
          const std::size_t element = column * rows + row;
          pixels[row * columns + column] =
              isByte ? elements[element]
                     : static_cast<std::int16_t>(elements[2 * element] | elements[2 * element + 1]
                                                                             << 8);
        }
      }
    }
  }
  return frame;
}

Bytes EncodeFrameArray(int width, int height, std::span<const std::int16_t> pixels,
                       int bytesPerElement) {
  ByteWriter writer;
  writer.U16Le(kArrayFlag | (bytesPerElement == 1 ? kTypeByte : kTypeSigned16));
  writer.U16Le(kDimensions);
  writer.U32Le(static_cast<std::uint32_t>(height));
  writer.U32Le(0);
  writer.U32Le(static_cast<std::uint32_t>(width));
  writer.U32Le(0);
  for (int column = 0; column < width; ++column) {
    for (int row = 0; row < height; ++row) {
      const std::int16_t pixel =
          pixels[static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
                 static_cast<std::size_t>(column)];
      if (bytesPerElement == 1) {
        writer.U8(static_cast<std::uint8_t>(pixel));
      } else {
        writer.U16Le(static_cast<std::uint16_t>(pixel));
      }
    }
  }
  return writer.Take();
}

Bytes EncodeEmptyFrameArray() {
  ByteWriter writer;
  writer.U16Le(kTypeEmpty);
  return writer.Take();
}

}  // namespace tessa
