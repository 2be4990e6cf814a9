#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tessa {

/// Sensor counts as a file stores them, row by row from the top, column fastest.
struct RawRaster {
  int Width = 0;
  int Height = 0;
  std::vector<std::int16_t> Counts;  // Width x Height; 0 where the file had no bytes.
  std::size_t Present = 0;           // Counts, from the first on, whose bytes were in the file.
};

/// The straight line from sensor counts to degrees Celsius.
struct LinearCalibration {
  float Gain = 0.0F;    // Degrees per count.
  float Offset = 0.0F;  // Degrees at count zero.

  /// Evaluated in double and rounded once.
  float Degrees(std::int16_t count) const {
    return static_cast<float>(count * static_cast<double>(Gain) + static_cast<double>(Offset));
  }
};

/// Turns counts into degrees Celsius; `degrees` holds at least as many cells as `counts`.
void Calibrate(std::span<const std::int16_t> counts, const LinearCalibration& line,
               std::span<float> degrees);

/// Big-endian signed 16-bit values from `bytes` (two for each count; a final odd byte is ignored).
void DecodeCountsBigEndian(std::span<const std::uint8_t> bytes, std::span<std::int16_t> counts);

struct CountExtremes {
  std::int16_t Low;
  std::int16_t High;
};

/// Lowest and highest of at least one count.
CountExtremes FindExtremes(std::span<const std::int16_t> counts);

}  // namespace tessa
