#include "scenes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace tessa::tools {
namespace {

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

double Mean(const Scene& scene) {
  return Mean(scene, 0, 0, 1, 1);
}

double Deviation(const Scene& scene) {
  const double mean = Mean(scene);
  double sum = 0;
  for (const float celsius : scene.Celsius) {
    sum += (static_cast<double>(celsius) - mean) * (static_cast<double>(celsius) - mean);
  }
  return std::sqrt(sum / static_cast<double>(scene.Celsius.size()));
}

std::ptrdiff_t CountBetween(const Scene& scene, float low, float high) {
  return std::count_if(scene.Celsius.begin(), scene.Celsius.end(),
                       [=](float celsius) { return celsius >= low && celsius <= high; });
}

Scene Flat(int width, int height, float celsius) {
  return {width, height, std::vector<float>(static_cast<std::size_t>(width * height), celsius)};
}

TEST(Scenes, TheSameCallGivesTheSamePicture) {
  EXPECT_EQ(HouseInWinter(160, 120).Celsius, HouseInWinter(160, 120).Celsius);
  EXPECT_EQ(CircuitBoard(160, 120).Celsius, CircuitBoard(160, 120).Celsius);
  EXPECT_EQ(WarmingCup(160, 120, 3, 10).Celsius, WarmingCup(160, 120, 3, 10).Celsius);
}

TEST(Scenes, HouseRunsFromTheColdSkyToTheWalkersSkin) {
  for (const auto& [width, height] :
       {std::pair{160, 120}, std::pair{320, 240}, std::pair{480, 384}}) {
    const Scene scene = HouseInWinter(width, height);
    ASSERT_EQ(scene.Celsius.size(), static_cast<std::size_t>(width * height));
    const auto pixels = static_cast<std::ptrdiff_t>(scene.Celsius.size());
    EXPECT_EQ(CountBetween(scene, -15.0F, 34.0F), pixels) << width;
    EXPECT_LT(Mean(scene, 0.6, 0.0, 1.0, 0.15), -10.0) << width;           // sky
    EXPECT_GT(Mean(scene, 0.28, 0.42, 0.7, 0.7), 0.0) << width;            // front
    EXPECT_GT(CountBetween(scene, 27.0F, 34.0F), pixels / 4000) << width;  // faces, hands
    EXPECT_LT(CountBetween(scene, 27.0F, 34.0F), pixels / 100) << width;
  }
}

TEST(Scenes, BoardIsHottestAtItsRegulator) {
  for (const int width : {160, 320, 640}) {
    const Scene scene = CircuitBoard(width, width * 3 / 4);
    const auto hottest = std::max_element(scene.Celsius.begin(), scene.Celsius.end());
    EXPECT_NEAR(*hottest, 92.0F, 2.0F) << width;
    EXPECT_GT(*std::min_element(scene.Celsius.begin(), scene.Celsius.end()), 22.0F) << width;
    const auto index = static_cast<int>(hottest - scene.Celsius.begin());
    EXPECT_NEAR((index % width) / static_cast<double>(width), 0.30, 0.02) << width;
    EXPECT_NEAR((index / width) / (width * 0.75), 0.265, 0.02) << width;
    // The heat spreads into the copper, and the far corner stays cool.
    EXPECT_GT(Mean(scene, 0.20, 0.15, 0.38, 0.36), Mean(scene, 0.70, 0.70, 0.88, 0.80) + 20);
  }
}

TEST(Scenes, MugWarmsAndHandPrintFades) {
  constexpr int kFrames = 12;
  double lastMug = 0;
  double lastHand = 100;
  for (int frame = 0; frame < kFrames; ++frame) {
    const Scene scene = WarmingCup(160, 120, frame, kFrames);
    const double mug = Mean(scene, 0.35, 0.45, 0.54, 0.75);
    const double hand = Mean(scene, 0.12, 0.72, 0.20, 0.82);
    EXPECT_GT(mug, lastMug) << frame;
    EXPECT_LT(hand, lastHand) << frame;
    lastMug = mug;
    lastHand = hand;
  }
  EXPECT_NEAR(lastMug, 55.0, 8.0);
  EXPECT_NEAR(Mean(WarmingCup(160, 120, 0, kFrames), 0.35, 0.45, 0.54, 0.75), 22.0, 2.0);
}

TEST(Scenes, SensorNoiseIsAsStrongAsAskedAndItsPatternStays) {
  SensorModel model{.NetdKelvin = 0.06,
                    .RowNoiseKelvin = 0,
                    .ColumnNoiseKelvin = 0,
                    .VignetteKelvin = 0,
                    .BlurPixels = 0.6,
                    .Seed = 5,
                    .Frame = 0};
  Scene first = Flat(160, 120, 20.0F);
  AddSensorNoise(first, model);
  EXPECT_NEAR(Deviation(first), 0.06, 0.003);
  EXPECT_NEAR(Mean(first), 20.0, 0.003);
  model.Frame = 1;
  Scene second = Flat(160, 120, 20.0F);
  AddSensorNoise(second, model);
  for (std::size_t i = 0; i < first.Celsius.size(); ++i) {
    first.Celsius[i] -= second.Celsius[i];
  }
  EXPECT_NEAR(Deviation(first), 0.06 * std::sqrt(2.0), 0.005);  // independent of each other

  model.NetdKelvin = 0;
  model.ColumnNoiseKelvin = 0.05;
  Scene third = Flat(160, 120, 20.0F);
  AddSensorNoise(third, model);
  EXPECT_NEAR(Deviation(third), 0.05, 0.012);
  model.Frame = 2;
  Scene fourth = Flat(160, 120, 20.0F);
  AddSensorNoise(fourth, model);
  EXPECT_EQ(third.Celsius, fourth.Celsius);
}

TEST(Scenes, ResampleKeepsTheMeanAndCropsAboutTheCentre) {
  const Scene house = HouseInWinter(320, 240);
  EXPECT_NEAR(Mean(Resample(house, 160, 120)), Mean(house), 1e-4);
  EXPECT_NEAR(Mean(Resample(house, 96, 72)), Mean(house), 1e-4);  // no whole number of pixels
  EXPECT_NEAR(Mean(Resample(house, 500, 375)), Mean(house), 0.05);
  EXPECT_EQ(Resample(house, 320, 240).Celsius, house.Celsius);

  // Of 4 x 2 pixels a square shows the middle two columns.
  const Scene steps{4, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
  EXPECT_EQ(Resample(steps, 2, 2).Celsius, (std::vector<float>{2, 3, 6, 7}));
  EXPECT_EQ(Resample(steps, 1, 1).Celsius, (std::vector<float>{4.5F}));
}

}  // namespace
}  // namespace tessa::tools
