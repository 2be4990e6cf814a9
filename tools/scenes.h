#pragma once

#include <cstdint>
#include <vector>

namespace tessa::tools {

/// A scene as a perfect radiometer would see it: degrees Celsius, row by row from the top, column
/// fastest.
struct Scene {
  int Width = 0;
  int Height = 0;
  std::vector<float> Celsius;
};

/// The detector and optics between a scene and its picture. The defaults are those of a middling
/// uncooled microbolometer.
struct SensorModel {
  double NetdKelvin = 0.06;         ///< Temporal noise of a single pixel, standard deviation.
  double RowNoiseKelvin = 0.02;     ///< Fixed offset of each row, standard deviation.
  double ColumnNoiseKelvin = 0.03;  ///< Fixed offset of each column, standard deviation.
  double VignetteKelvin = 0.15;     ///< How much colder the very corners read than the centre.
  double BlurPixels = 0.55;         ///< Optical blur, standard deviation.
  std::uint32_t Seed = 1;           ///< Which detector: chooses the fixed pattern.
  std::uint32_t Frame = 0;          ///< Which exposure: chooses the temporal noise.
};

/// A house front in winter at dusk, with people and a parked car before it. -15 to +34 °C, without
/// noise.
Scene HouseInWinter(int width, int height);

/// An electronics board under load in a room at 24 °C; its regulator reaches about 92 °C. Without
/// noise.
Scene CircuitBoard(int width, int height);

/// One picture of a sequence: hot tea is poured into a mug while a hand print on the table fades.
/// `frame` runs from 0 to `frameCount` - 1; the sensor's noise is already in, different in each
/// frame over a fixed pattern common to all.
Scene WarmingCup(int width, int height, int frame, int frameCount);

/// Blurs the scene as the optics would, then adds the detector's fixed pattern and noise.
void AddSensorNoise(Scene& scene, const SensorModel& model);

/// Crops the scene about its centre to the wanted aspect and scales it: area average downwards,
/// bilinear upwards.
Scene Resample(const Scene& scene, int width, int height);

}  // namespace tessa::tools
