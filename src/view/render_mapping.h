#pragma once

#include <cstdint>
#include <span>

namespace tessa {

/// The straight line from degrees Celsius to palette indices. Both numbers are single precision and
/// their rounding is part of every result.
struct RenderLine {
  float Gain = 0.0F;    // Indices per degree.
  float Offset = 0.0F;  // Index at 0 degrees.
};

/// Maps degrees to palette indices: round(Gain x T + Offset) to the nearest integer with ties to
/// even, as if evaluated in extended precision, then clipped to 0..255. A value that fits no 32-bit
/// integer fails and keeps `lastValue`, which is the value before it; `lastValue` carries over from
/// row to row. `indices` receives the values and is at least as long as `degrees`.
///
/// The product of two singles is exact in double, so the double sum rounds as the extended one does
/// unless it lands exactly on a half; only such sums are looked at again.
void MapToIndices(std::span<const float> degrees, const RenderLine& line, std::int32_t& lastValue,
                  std::span<std::uint8_t> indices);

/// One pixel in extended precision; false when the value fits no 32-bit integer.
bool MapToIndexExtended(float degrees, const RenderLine& line, std::int32_t& value);

}  // namespace tessa
