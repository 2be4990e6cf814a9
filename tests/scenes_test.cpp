#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "scene.h"

namespace tessa::tools {
namespace {

Scene Read(const char* name) {
  return ReadScene(QStringLiteral(TESSA_SCENE_FOLDER "/") + QLatin1String(name));
}

/// Mean over a part of the scene; edges are shares of its sides.
double Mean(const Scene& scene, double left, double top, double right, double bottom) {
  double sum = 0;
  int count = 0;
  for (int row = static_cast<int>(top * scene.Height); row < bottom * scene.Height; ++row) {
    for (int column = static_cast<int>(left * scene.Width); column < right * scene.Width;
         ++column) {
      sum +=
          static_cast<double>(scene.Celsius[static_cast<std::size_t>(row * scene.Width + column)]);
      ++count;
    }
  }
  return sum / count;
}

double Deviation(const Scene& scene) {
  const double mean = Mean(scene, 0, 0, 1, 1);
  double sum = 0;
  for (const float celsius : scene.Celsius) {
    sum += (static_cast<double>(celsius) - mean) * (static_cast<double>(celsius) - mean);
  }
  return std::sqrt(sum / static_cast<double>(scene.Celsius.size()));
}

TEST(Scenes, ShowWhatTheirTextsSay) {
  const Scene house = Read("house.png");
  const auto [coldest, hottest] = std::minmax_element(house.Celsius.begin(), house.Celsius.end());
  EXPECT_NEAR(*coldest, -15.0F, 1.0F);
  EXPECT_NEAR(*hottest, 33.0F, 1.5F);                  // a walker's skin
  EXPECT_LT(Mean(house, 0.6, 0.0, 1.0, 0.15), -10.0);  // sky
  EXPECT_GT(Mean(house, 0.28, 0.42, 0.7, 0.7), 0.0);   // front
  for (const char* name : {"board.png", "board-large.png"}) {
    const Scene board = Read(name);
    const auto regulator = std::max_element(board.Celsius.begin(), board.Celsius.end());
    EXPECT_NEAR(*regulator, 92.0F, 2.0F) << name;
    const auto column = (regulator - board.Celsius.begin()) % board.Width;
    EXPECT_NEAR(static_cast<double>(column) / board.Width, 0.30, 0.02) << name;
  }
  double lastMug = 0;
  double lastHand = 100;
  for (const char* name :
       {"cup-1.png", "cup-2.png", "cup-3.png", "cup-4.png", "cup-5.png", "cup-6.png"}) {
    const Scene cup = Read(name);
    const double mug = Mean(cup, 0.35, 0.45, 0.54, 0.75);
    const double hand = Mean(cup, 0.12, 0.72, 0.20, 0.82);
    EXPECT_GT(mug, lastMug) << name;
    EXPECT_LT(hand, lastHand) << name;
    lastMug = mug;
    lastHand = hand;
  }
  EXPECT_NEAR(lastMug, 55.0, 8.0);
  EXPECT_THROW(Read("house-photo.jpg"), std::runtime_error);
}

TEST(Scenes, SensorNoiseIsAsStrongAsSaidAndItsPatternStays) {
  const Scene flat{160, 120, std::vector<float>(160 * 120, 20.0F)};
  Scene first = flat;
  AddSensorNoise(first, 5, 0);
  EXPECT_NEAR(Mean(first, 0.3, 0.3, 0.7, 0.7), 20.0, 0.02);
  EXPECT_LT(Mean(first, 0.0, 0.0, 0.05, 0.05), 19.93);  // the corners read too cold
  Scene again = flat;
  AddSensorNoise(again, 5, 0);
  EXPECT_EQ(first.Celsius, again.Celsius);
  // Of two frames of one detector the noise of the pixels is independent, all else is the same.
  Scene second = flat;
  AddSensorNoise(second, 5, 1);
  for (std::size_t i = 0; i < first.Celsius.size(); ++i) {
    second.Celsius[i] -= first.Celsius[i];
  }
  EXPECT_NEAR(Deviation(second), 0.06 * std::sqrt(2.0), 0.002);
  EXPECT_NEAR(Deviation(first), std::hypot(0.06, 0.02, 0.03), 0.02);
}

TEST(Scenes, ResampleKeepsTheMeanAndCropsAboutTheCentre) {
  const Scene house = Read("house.png");
  const double mean = Mean(house, 0, 0, 1, 1);
  EXPECT_NEAR(Mean(Resample(house, 160, 120), 0, 0, 1, 1), mean, 1e-4);
  EXPECT_NEAR(Mean(Resample(house, 96, 72), 0, 0, 1, 1), mean, 1e-4);  // no whole pixels
  EXPECT_NEAR(Mean(Resample(house, 500, 375), 0, 0, 1, 1), mean, 0.05);
  EXPECT_EQ(Resample(house, 320, 240).Celsius, house.Celsius);

  // Of 4 x 2 pixels a square shows the middle two columns.
  const Scene steps{4, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
  EXPECT_EQ(Resample(steps, 2, 2).Celsius, (std::vector<float>{2, 3, 6, 7}));
  EXPECT_EQ(Resample(steps, 1, 1).Celsius, (std::vector<float>{4.5F}));
  EXPECT_EQ(Resample({2, 1, {0, 8}}, 4, 2).Celsius, (std::vector<float>{0, 2, 6, 8, 0, 2, 6, 8}));
}

}  // namespace
}  // namespace tessa::tools
