#include "sample_measures.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "formats/kelvin.h"

namespace tessa::tools {

Span Extremes(std::span<const Scene> frames) {
  Span span{std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()};
  for (const Scene& frame : frames) {
    const auto [low, high] = std::minmax_element(frame.Celsius.begin(), frame.Celsius.end());
    span.Low = std::min(span.Low, static_cast<double>(*low));
    span.High = std::max(span.High, static_cast<double>(*high));
  }
  return span;
}

Span MeasuringRange(std::span<const Scene> frames, const SampleFacts& facts) {
  const Span needed = Extremes(frames);
  return {std::min(facts.RangeLow, std::floor(needed.Low)),
          std::max(facts.RangeHigh, std::ceil(needed.High))};
}

Span WholeDegrees(std::span<const Scene> frames, double outliers) {
  std::vector<float> all;
  for (const Scene& frame : frames) {
    all.insert(all.end(), frame.Celsius.begin(), frame.Celsius.end());
  }
  const auto last = static_cast<double>(all.size() - 1);
  const auto at = [&](double share) {
    const auto place = all.begin() + static_cast<std::ptrdiff_t>(share * last);
    std::nth_element(all.begin(), place, all.end());
    return static_cast<double>(*place);
  };
  const double low = std::floor(at(outliers));
  return {low, std::max(std::ceil(at(1.0 - outliers)), low + 1.0)};
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

std::vector<std::int16_t> TenthsOfKelvin(const Scene& scene) {
  std::vector<std::int16_t> tenths;
  tenths.reserve(scene.Celsius.size());
  for (const float celsius : scene.Celsius) {
    const double value = std::round((static_cast<double>(celsius) + kKelvinOffset) * 10.0);
    if (value < 0.0 || value > std::numeric_limits<std::int16_t>::max()) {
      throw std::runtime_error("a temperature does not fit tenths of a kelvin");
    }
    tenths.push_back(static_cast<std::int16_t>(value));
  }
  return tenths;
}

}  // namespace tessa::tools
