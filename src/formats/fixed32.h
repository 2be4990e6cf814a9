#pragma once

#include <cmath>
#include <cstdint>

namespace tessa {

/// The camera's 4-byte number: a big-endian signed whole part W, then a big-endian unsigned
/// fraction F in 1/65536. The fraction always moves the value away from zero: W = -1 with
/// F = 0x8000 is -1.5. Values between -1 and 0 cannot be written this way.
constexpr double DecodeFixed32(std::int16_t whole, std::uint16_t fraction) {
  const double part = fraction / 65536.0;
  return whole < 0 ? whole - part : whole + part;
}

struct Fixed32Parts {
  std::int16_t Whole;
  std::uint16_t Fraction;
};

/// The parts nearest to `value` in -32768..32767; what lies between -1 and 0 becomes 0 or -1.
inline Fixed32Parts EncodeFixed32(double value) {
  constexpr double kStepsPerUnit = 65536.0;
  if (value < 0.0 && value > -1.0) {
    value = value < -0.5 ? -1.0 : 0.0;
  }
  const double steps = std::nearbyint(std::fabs(value) * kStepsPerUnit);
  const double whole = std::floor(steps / kStepsPerUnit);
  const double fraction = steps - whole * kStepsPerUnit;
  const double clippedWhole = std::fmin(whole, value < 0.0 ? 32768.0 : 32767.0);
  return {static_cast<std::int16_t>(value < 0.0 ? -clippedWhole : clippedWhole),
          static_cast<std::uint16_t>(whole > clippedWhole ? 65535.0 : fraction)};
}

}  // namespace tessa
