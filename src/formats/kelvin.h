#pragma once

namespace tessa {

/// Zero degrees Celsius in kelvin, as the cameras count it.
inline constexpr double kKelvinOffset = 273.2;

/// Degrees Celsius of tenths of a kelvin.
constexpr double TenthsOfKelvinToCelsius(double tenths) {
  return tenths / 10.0 - kKelvinOffset;
}

}  // namespace tessa
