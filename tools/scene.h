#pragma once

#include <QString>
#include <cstdint>
#include <vector>

namespace tessa::tools {

/// A scene in degrees Celsius, row by row from the top, column fastest.
struct Scene {
  int Width = 0;
  int Height = 0;
  std::vector<float> Celsius;
};

/// Reads a raster of 16-bit grey, twentieths of a kelvin above absolute zero (samples/README.md).
/// Throws std::runtime_error.
Scene ReadScene(const QString& path);

/// Adds what a middling uncooled microbolometer adds: noise of 60 mK a pixel, fixed offsets of rows
/// and columns, corners that read 0.15 K too cold. `detector` chooses the fixed pattern, `frame`
/// the noise over it; the same two give the same noise.
void AddSensorNoise(Scene& scene, std::uint32_t detector, std::uint32_t frame);

/// Crops the scene about its centre to the wanted aspect and scales it: area average downwards,
/// bilinear upwards.
Scene Resample(const Scene& scene, int width, int height);

}  // namespace tessa::tools
