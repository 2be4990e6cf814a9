#include "sample_measures.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "formats/kelvin.h"
#include "formats/number_text.h"

namespace tessa::tools {
namespace {

/// The temperature below which `share` of the pixels lie.
double Percentile(const Scene& scene, double share) {
  std::vector<float> sorted = scene.Celsius;
  const auto at = static_cast<std::ptrdiff_t>(share * static_cast<double>(sorted.size() - 1));
  std::nth_element(sorted.begin(), sorted.begin() + at, sorted.end());
  return static_cast<double>(sorted[static_cast<std::size_t>(at)]);
}

}  // namespace

Span Extremes(std::span<const Scene> frames) {
  constexpr double kBeyond = std::numeric_limits<double>::max();
  Span span{kBeyond, -kBeyond};
  for (const Scene& frame : frames) {
    const auto [low, high] = std::minmax_element(frame.Celsius.begin(), frame.Celsius.end());
    span.Low = std::min(span.Low, static_cast<double>(*low));
    span.High = std::max(span.High, static_cast<double>(*high));
  }
  return span;
}

Span Widened(const Span& least, const Span& needed) {
  return {std::min(least.Low, std::floor(needed.Low)),
          std::max(least.High, std::ceil(needed.High))};
}

Span DisplayScale(const Scene& scene) {
  constexpr double kOutliers = 0.005;
  Span scale{std::floor(Percentile(scene, kOutliers)),
             std::ceil(Percentile(scene, 1.0 - kOutliers))};
  scale.High = std::max(scale.High, scale.Low + 1.0);
  return scale;
}

void RequireWithin(const Span& span, double low, double high, const std::string& kind) {
  if (span.Low < low || span.High > high) {
    throw std::runtime_error(kind + " holds " + FormatFixed(low, 1) + " to " +
                             FormatFixed(high, 1) + " degrees Celsius, but the scene has " +
                             FormatFixed(span.Low, 1) + " to " + FormatFixed(span.High, 1));
  }
}

std::vector<std::uint8_t> Levels(const Scene& scene, const Span& line) {
  const double span = std::max(line.High - line.Low, 1e-6);
  std::vector<std::uint8_t> levels;
  levels.reserve(scene.Celsius.size());
  for (const float celsius : scene.Celsius) {
    const double level = std::round((static_cast<double>(celsius) - line.Low) / span * 255.0);
    levels.push_back(static_cast<std::uint8_t>(std::clamp(level, 0.0, 255.0)));
  }
  return levels;
}

std::vector<std::int16_t> TenthsOfKelvin(const Scene& scene, const std::string& kind) {
  RequireWithin(Extremes(scene), -kKelvinOffset, 3276.7 - kKelvinOffset, kind);
  std::vector<std::int16_t> tenths;
  tenths.reserve(scene.Celsius.size());
  for (const float celsius : scene.Celsius) {
    tenths.push_back(static_cast<std::int16_t>(
        std::lround((static_cast<double>(celsius) + kKelvinOffset) * 10.0)));
  }
  return tenths;
}

}  // namespace tessa::tools
