#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/pixel_stores.h"
#include "formats/bmp.h"
#include "formats/problem.h"

namespace tessa {

/// What a picture is read for.
enum class PictureUse {
  kColours,   // To be seen as it is: 8 bits with a full palette or in greys, 24 bits for all else.
  kView,      // For the main view: what would be 24 bits becomes luminance while it is read.
  kMeasured,  // The same, but indices stay as they are, since each stands for a temperature.
};

/// A picture file's content in the two depths of an image buffer.
struct LoadedPicture {
  int Width = 0;  // 0: nothing could be read.
  int Height = 0;
  int Depth = 0;                     // 8 or 24.
  std::size_t Stride = 0;            // Bytes from one row to the next, a multiple of 4.
  std::vector<std::uint8_t> Pixels;  // Rows from the top; 24: red, green, blue.
  ColourTable Palette{};
  /// Degrees Celsius of the pixels, for files that say so; empty for all others.
  TemperatureGrid Degrees;

  /// Makes room for a picture of that size; 8 bits get the grey palette.
  void Allocate(int width, int height, int depth);
  std::uint8_t* Row(int row) { return Pixels.data() + static_cast<std::size_t>(row) * Stride; }
};

/// Luminance of a colour, weights of ITU-R BT.601 in thousandths.
constexpr std::uint8_t Luminance(int red, int green, int blue) {
  return static_cast<std::uint8_t>((299 * red + 587 * green + 114 * blue + 500) / 1000);
}

/// Replaces `count` colours at `from` by their luminance at `to`, which may be the same place.
void ReduceRow(const std::uint8_t* from, std::size_t count, std::uint8_t* to);

/// Turns indices of a palette with `entries` colours into what `use` asks for. A palette is short
/// when it has fewer than 256 colours or nothing but black in its upper half; its indices say
/// nothing on a scale from 0 to 255.
void SettlePalette(PictureUse use, int entries, LoadedPicture& picture);

/// False, and a fault, when the program has no room for a picture of that size.
bool CheckPictureSize(std::uint64_t width, std::uint64_t height, Problems& faults);

}  // namespace tessa
