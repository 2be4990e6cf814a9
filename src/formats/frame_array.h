#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "formats/byte_reader.h"
#include "formats/byte_writer.h"

namespace tessa {

// The self-describing array that holds one frame of a snapshot, a sequence or a frame file. The one
// place that knows its layout: a type word, the number of dimensions (2), two pairs of element
// count and lower bound, all little-endian, then the elements. The first index, the row, runs
// fastest: element [row, column] lies at column x rows + row.

inline constexpr std::size_t kFrameArrayHeaderSize = 20;

/// How a frame array begins.
struct FrameArrayHeader {
  enum class State {
    kPixels,   // A 2-D array of bytes or 16-bit values.
    kEmpty,    // An array without content: its type word alone.
    kForeign,  // Something else; where it ends is unknown.
  };
  State What = State::kForeign;
  std::uint64_t FirstCount = 0;
  std::uint64_t SecondCount = 0;
  int BytesPerElement = 0;  // 1 or 2.

  /// Bytes of the whole array, header included; 2 for an empty one, 0 for a foreign one.
  std::uint64_t ByteSize() const;
  /// True when the counts describe `width` x `height` pixels: the count that equals the height, the
  /// first if both do, counts the rows.
  bool Describes(int width, int height) const;
};

/// Reads the first min(remaining, kFrameArrayHeaderSize) bytes of an array.
FrameArrayHeader ReadFrameArrayHeader(ByteSpan start);

/// Pixels of one frame, row by row from the top. 16-bit pixels are tenths of a kelvin.
struct Frame {
  int Width = 0;
  int Height = 0;
  std::vector<std::int16_t> Pixels;
};

/// Decodes a whole array that must hold `width` x `height` elements; nothing when it is empty,
/// foreign, of another size, or longer than `bytes`.
std::optional<Frame> DecodeFrameArray(ByteSpan bytes, int width, int height);

/// The array of `height` rows of `width` pixels as 16-bit values, or as bytes.
Bytes EncodeFrameArray(int width, int height, std::span<const std::int16_t> pixels,
                       int bytesPerElement = 2);

/// The array without content.
Bytes EncodeEmptyFrameArray();

}  // namespace tessa
