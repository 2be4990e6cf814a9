#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "scenes.h"

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

/// `least`, widened to whole degrees around `needed`.
Span Widened(const Span& least, const Span& needed);

/// Whole degrees around all but the most extreme half percent of the pixels at each end; at least
/// one degree wide.
Span DisplayScale(const Scene& scene);

/// Throws std::runtime_error unless all of `span` lies within `low` to `high` degrees Celsius.
void RequireWithin(const Span& span, double low, double high, const std::string& kind);

/// Indices of an 8-bit picture on the straight line from `line.Low` at 0 to `line.High` at 255.
std::vector<std::uint8_t> Levels(const Scene& scene, const Span& line);

/// Tenths of a kelvin as signed 16-bit values. Throws for what does not fit.
std::vector<std::int16_t> TenthsOfKelvin(const Scene& scene, const std::string& kind);

}  // namespace tessa::tools
