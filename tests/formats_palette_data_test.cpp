#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <numeric>

#include "formats/palette_file.h"

namespace tessa::testing {
namespace {

/// The palettes whose lightness rises evenly from each entry to the next.
constexpr std::size_t kRising[] = {0, 1, 2, 7, 9, 10, 11, 12};

/// The lightness of a colour 0x00BBGGRR from 0 to 100 (CIE 15:2004, IEC 61966-2-1).
double Lightness(Colour colour) {
  const auto channel = [colour](unsigned index) {
    const double v = ((colour >> (8 * index)) & 0xFFU) / 255.0;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
  };
  const double y = 0.2126 * channel(0) + 0.7152 * channel(1) + 0.0722 * channel(2);
  return y > 216.0 / 24389.0 ? 116.0 * std::cbrt(y) - 16.0 : 24389.0 / 27.0 * y;
}

class PaletteData : public ::testing::Test {
 protected:
  PaletteData() {
    std::ifstream file(TESSA_SOURCE_FOLDER "/resources/palette.dta", std::ios::binary);
    const Bytes bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    size_ = bytes.size();
    DecodePaletteFile(bytes, tables_, faults_);
  }

  std::size_t size_ = 0;
  std::vector<ColourTable> tables_{kStoredPalettes};
  Problems faults_;
};

TEST_F(PaletteData, HoldsEighteenTablesOfWhichNoneCountsAsReversed) {
  ASSERT_EQ(size_, 18432U);
  ASSERT_EQ(tables_.size(), 18U);
  EXPECT_TRUE(faults_.empty());
  for (std::size_t p = 0; p < tables_.size(); ++p) {
    // A reversed palette is known by its first colour being the greater number.
    EXPECT_LT(tables_[p].front(), tables_[p].back()) << p;
    for (const Colour colour : tables_[p]) {
      EXPECT_EQ(colour >> 24U, 0U) << p;
    }
  }
}

TEST_F(PaletteData, GreysStandWhereTheyBelong) {
  for (std::uint32_t i = 0; i < 256; ++i) {
    const Colour grey = i * 0x010101U;
    EXPECT_EQ(tables_[0][i], grey);
    // GREYRAI2 to GREYRAI4: grey, with colours for the last half, third and quarter.
    for (std::uint32_t parts = 2; parts <= 4; ++parts) {
      const Colour colour = tables_[12 + parts][i];
      EXPECT_EQ(colour == (colour & 0xFFU) * 0x010101U, i < 256 - 256 / parts) << parts << ' ' << i;
    }
  }
  // Three quarters up, hot metal is an orange: the lowest byte is red.
  EXPECT_GT(tables_[9][192] & 0xFFU, 0xE0U);
  EXPECT_LT(tables_[9][192] >> 16U, 0x60U);
}

TEST_F(PaletteData, LightnessRisesWithoutPlateausOrKinks) {
  for (const std::size_t p : kRising) {
    const auto light = [&](std::size_t i) { return Lightness(tables_[p][i]); };
    const double even = (light(255) - light(0)) / 255.0;
    EXPECT_GT(even, 0.3) << p;  // at least three quarters of the whole lightness
    // Grey levels equal in code are not quite so in lightness, hence the wide bounds for them.
    const double tolerance = p == 0 ? 0.32 : 0.10;
    for (std::size_t i = 1; i < 256; ++i) {
      EXPECT_GT(light(i), light(i - 1)) << p << " entry " << i;
      if (i >= 8) {
        EXPECT_NEAR((light(i) - light(i - 8)) / (8.0 * even), 1.0, tolerance) << p << ' ' << i;
      }
    }
  }
}

TEST_F(PaletteData, NoTwoPalettesAreAlike) {
  const auto difference = [](Colour a, Colour b) {
    return std::abs(RedOf(a) - RedOf(b)) + std::abs(GreenOf(a) - GreenOf(b)) +
           std::abs(BlueOf(a) - BlueOf(b));
  };
  for (std::size_t p = 0; p < tables_.size(); ++p) {
    for (std::size_t q = 0; q < p; ++q) {
      EXPECT_GT(std::inner_product(tables_[p].begin(), tables_[p].end(), tables_[q].begin(), 0,
                                   std::plus<>(), difference),
                256 * 50)
          << p << ' ' << q;
    }
  }
}

}  // namespace
}  // namespace tessa::testing
