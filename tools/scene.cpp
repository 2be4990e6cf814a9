#include "scene.h"

#include <QImage>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <random>
#include <stdexcept>

namespace tessa::tools {
namespace {

/// Mean of what lies between the edges, in pixels from the upper left corner; what juts out over
/// the border does not count.
double Mean(const Scene& scene, double left, double top, double right, double bottom) {
  double sum = 0;
  double area = 0;
  for (int row = std::max(0, static_cast<int>(top)); row < std::min<double>(bottom, scene.Height);
       ++row) {
    const double high = std::min(bottom, row + 1.0) - std::max(top, static_cast<double>(row));
    for (int column = std::max(0, static_cast<int>(left));
         column < std::min<double>(right, scene.Width); ++column) {
      const double wide =
          std::min(right, column + 1.0) - std::max(left, static_cast<double>(column));
      const int index = row * scene.Width + column;
      sum += wide * high * static_cast<double>(scene.Celsius[static_cast<std::size_t>(index)]);
      area += wide * high;
    }
  }
  return sum / area;
}

}  // namespace

Scene ReadScene(const QString& path) {
  constexpr double kStepsPerKelvin = 20.0;
  constexpr double kZeroCelsius = 273.15;
  const QImage raster(path);
  if (raster.format() != QImage::Format_Grayscale16) {
    throw std::runtime_error(path.toStdString() + " is no picture of 16-bit grey");
  }
  Scene scene{raster.width(), raster.height(), {}};
  for (int row = 0; row < scene.Height; ++row) {
    const auto* const steps = reinterpret_cast<const std::uint16_t*>(raster.constScanLine(row));
    std::transform(steps, steps + scene.Width, std::back_inserter(scene.Celsius), [](int step) {
      return static_cast<float>(step / kStepsPerKelvin - kZeroCelsius);
    });
  }
  return scene;
}

void AddSensorNoise(Scene& scene, std::uint32_t detector, std::uint32_t frame) {
  constexpr double kPixelKelvin = 0.06;
  constexpr double kRowKelvin = 0.02;
  constexpr double kColumnKelvin = 0.03;
  constexpr double kVignetteKelvin = 0.15;
  // The fixed pattern belongs to the detector: it must not change with the frame.
  std::mt19937_64 pattern(detector);
  std::mt19937_64 exposure((std::uint64_t{detector} << 32) + frame);
  std::normal_distribution<double> normal;
  std::vector<double> rows(static_cast<std::size_t>(scene.Height));
  std::vector<double> columns(static_cast<std::size_t>(scene.Width));
  std::generate(rows.begin(), rows.end(), [&] { return kRowKelvin * normal(pattern); });
  std::generate(columns.begin(), columns.end(), [&] { return kColumnKelvin * normal(pattern); });
  normal.reset();

  std::size_t index = 0;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const double y = (2.0 * static_cast<double>(row) + 1.0) / scene.Height - 1.0;
    for (std::size_t column = 0; column < columns.size(); ++column, ++index) {
      const double x = (2.0 * static_cast<double>(column) + 1.0) / scene.Width - 1.0;
      const double fromCentre = 0.5 * (x * x + y * y);  // 0 in the centre, 1 in the corners
      scene.Celsius[index] += static_cast<float>(rows[row] + columns[column] -
                                                 kVignetteKelvin * fromCentre * fromCentre +
                                                 kPixelKelvin * normal(exposure));
    }
  }
}

Scene Resample(const Scene& scene, int width, int height) {
  const double scale = std::min(static_cast<double>(scene.Width) / width,
                                static_cast<double>(scene.Height) / height);
  // A mean over one source pixel that lies across several is what lies on the line between them.
  const double reach = 0.5 * std::max(scale, 1.0);
  Scene result{width, height, {}};
  result.Celsius.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (int row = 0; row < height; ++row) {
    const double y = 0.5 * scene.Height + (row + 0.5 - 0.5 * height) * scale;
    for (int column = 0; column < width; ++column) {
      const double x = 0.5 * scene.Width + (column + 0.5 - 0.5 * width) * scale;
      result.Celsius.push_back(
          static_cast<float>(Mean(scene, x - reach, y - reach, x + reach, y + reach)));
    }
  }
  return result;
}

}  // namespace tessa::tools
