#pragma once

#include <cstdint>
#include <vector>

#include "sample_encoders.h"

/// What the encoders of samples measure in a scene and share.
namespace tessa::tools {

struct Span {
  double Low = 0.0;
  double High = 0.0;
  double Middle() const { return (Low + High) / 2.0; }
};

/// Coldest and hottest pixel of all the frames, degrees Celsius.
Span Extremes(std::span<const Scene> frames);
inline Span Extremes(const Scene& scene) {
  return Extremes(std::span(&scene, 1));
}

/// The camera's calibrated range, widened to whole degrees that hold all the frames.
Span MeasuringRange(std::span<const Scene> frames, const SampleFacts& facts);

/// Whole degrees around all but the most extreme `outliers` (a share) of the pixels at each end; at
/// least one degree wide.
Span WholeDegrees(std::span<const Scene> frames, double outliers);

/// Indices of an 8-bit picture on the straight line from `line.Low` at 0 to `line.High` at 255.
std::vector<std::uint8_t> Levels(const Scene& scene, const Span& line);

/// Tenths of a kelvin as signed 16-bit values. Throws std::runtime_error for what does not fit.
std::vector<std::int16_t> TenthsOfKelvin(const Scene& scene);

}  // namespace tessa::tools
