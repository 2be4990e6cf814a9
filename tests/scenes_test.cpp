#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "scene.h"

namespace tessa::tools {
namespace {

double Mean(const Scene& scene) {
  return std::accumulate(scene.Celsius.begin(), scene.Celsius.end(), 0.0) /
         static_cast<double>(scene.Celsius.size());
}

TEST(Scenes, AreReadAndResampledAboutTheCentre) {
  const Scene house = ReadScene(QStringLiteral(TESSA_SCENE_FOLDER "/house.png"));
  const auto [coldest, hottest] = std::minmax_element(house.Celsius.begin(), house.Celsius.end());
  EXPECT_NEAR(*coldest, -15.0F, 1.0F);                            // sky
  EXPECT_NEAR(*hottest, 33.0F, 1.5F);                             // a walker's skin
  EXPECT_NEAR(Mean(Resample(house, 96, 72)), Mean(house), 1e-4);  // no whole pixels
  EXPECT_EQ(Resample(house, 320, 240).Celsius, house.Celsius);
  // Of 4 x 2 pixels a square shows the middle two columns.
  const Scene steps{4, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
  EXPECT_EQ(Resample(steps, 2, 2).Celsius, (std::vector<float>{2, 3, 6, 7}));
  EXPECT_EQ(Resample(steps, 1, 1).Celsius, (std::vector<float>{4.5F}));
  EXPECT_EQ(Resample({2, 1, {0, 8}}, 4, 2).Celsius, (std::vector<float>{0, 2, 6, 8, 0, 2, 6, 8}));
}

}  // namespace
}  // namespace tessa::tools
