#include "scenes.h"

#include <algorithm>
#include <cmath>

#include "scene_paint.h"

namespace tessa::tools {
namespace {

/// The stretch of source pixels, with weights that add up to 1, that make up one pixel of a result.
struct Taps {
  int First = 0;
  std::vector<double> Weights;
};

/// Taps for every pixel of one axis: `origin` and `extent` say which part of the source is shown.
std::vector<Taps> AxisTaps(int source, double origin, double extent, int count) {
  std::vector<Taps> taps(static_cast<std::size_t>(count));
  const double scale = extent / count;
  for (int i = 0; i < count; ++i) {
    Taps& tap = taps[static_cast<std::size_t>(i)];
    if (scale >= 1) {
      const double from = origin + i * scale;
      const double to = std::min(from + scale, static_cast<double>(source));
      tap.First = std::min(static_cast<int>(from), source - 1);
      for (int k = tap.First; k < source && (k < to || tap.Weights.empty()); ++k) {
        tap.Weights.push_back(
            std::max(0.0, std::min(to, k + 1.0) - std::max(from, static_cast<double>(k))));
      }
    } else {
      const double centre =
          std::clamp(origin + (i + 0.5) * scale - 0.5, 0.0, static_cast<double>(source - 1));
      tap.First = std::min(static_cast<int>(centre), std::max(0, source - 2));
      const double t = centre - tap.First;
      tap.Weights = {1 - t};
      if (source > 1) {
        tap.Weights.push_back(t);
      }
    }
    double sum = 0;
    for (const double weight : tap.Weights) {
      sum += weight;
    }
    for (double& weight : tap.Weights) {
      weight /= sum;
    }
  }
  return taps;
}

std::uint64_t Mixed(std::uint32_t seed, std::uint32_t purpose, std::uint32_t frame) {
  return (static_cast<std::uint64_t>(seed) << 32) ^ (static_cast<std::uint64_t>(purpose) << 56) ^
         (static_cast<std::uint64_t>(frame) * 0x2545f4914f6cdd1dULL);
}

}  // namespace

void AddSensorNoise(Scene& scene, const SensorModel& model) {
  GaussianBlur(scene.Celsius, scene.Width, scene.Height, model.BlurPixels);

  // The fixed pattern belongs to the detector: it must not change with the frame.
  Random pattern(Mixed(model.Seed, 1, 0));
  std::vector<double> rows(static_cast<std::size_t>(scene.Height));
  std::vector<double> columns(static_cast<std::size_t>(scene.Width));
  for (double& offset : rows) {
    offset = model.RowNoiseKelvin * pattern.Normal();
  }
  for (double& offset : columns) {
    offset = model.ColumnNoiseKelvin * pattern.Normal();
  }

  Random noise(Mixed(model.Seed, 2, model.Frame));
  std::size_t index = 0;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const double y = (2.0 * static_cast<double>(row) + 1.0) / scene.Height - 1.0;
    for (std::size_t column = 0; column < columns.size(); ++column, ++index) {
      const double x = (2.0 * static_cast<double>(column) + 1.0) / scene.Width - 1.0;
      const double fromCentre = 0.5 * (x * x + y * y);  // 0 in the centre, 1 in the corners
      const double offset = rows[row] + columns[column] -
                            model.VignetteKelvin * fromCentre * fromCentre +
                            model.NetdKelvin * noise.Normal();
      scene.Celsius[index] += static_cast<float>(offset);
    }
  }
}

Scene Resample(const Scene& scene, int width, int height) {
  Scene result{width, height, {}};
  const double scale = std::min(static_cast<double>(scene.Width) / width,
                                static_cast<double>(scene.Height) / height);
  const double shownWidth = scale * width;
  const double shownHeight = scale * height;
  const std::vector<Taps> across =
      AxisTaps(scene.Width, 0.5 * (scene.Width - shownWidth), shownWidth, width);
  const std::vector<Taps> down =
      AxisTaps(scene.Height, 0.5 * (scene.Height - shownHeight), shownHeight, height);

  result.Celsius.reserve(across.size() * down.size());
  std::vector<double> line(static_cast<std::size_t>(scene.Width));
  for (const Taps& vertical : down) {
    std::fill(line.begin(), line.end(), 0.0);
    for (std::size_t k = 0; k < vertical.Weights.size(); ++k) {
      const std::size_t start =
          (static_cast<std::size_t>(vertical.First) + k) * static_cast<std::size_t>(scene.Width);
      for (std::size_t column = 0; column < line.size(); ++column) {
        line[column] += vertical.Weights[k] * static_cast<double>(scene.Celsius[start + column]);
      }
    }
    for (const Taps& horizontal : across) {
      double sum = 0;
      for (std::size_t k = 0; k < horizontal.Weights.size(); ++k) {
        sum += horizontal.Weights[k] * line[static_cast<std::size_t>(horizontal.First) + k];
      }
      result.Celsius.push_back(static_cast<float>(sum));
    }
  }
  return result;
}

}  // namespace tessa::tools
