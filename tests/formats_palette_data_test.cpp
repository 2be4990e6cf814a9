#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>

#include "formats/palette_file.h"

namespace tessa::testing {
namespace {

/// The palettes whose lightness rises evenly from each entry to the next.
constexpr std::size_t kRising[] = {0, 1, 2, 7, 9, 10, 11, 12};

using Lab = std::array<double, 3>;

/// CIELAB under D65 of a colour 0x00BBGGRR (CIE 15:2004, IEC 61966-2-1).
Lab ToLab(Colour colour) {
  const auto channel = [colour](unsigned index) {
    const double v = ((colour >> (8 * index)) & 0xFFU) / 255.0;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
  };
  const auto bend = [](double t) {
    return t > 216.0 / 24389.0 ? std::cbrt(t) : (24389.0 / 27.0 * t + 16.0) / 116.0;
  };
  const double r = channel(0);
  const double g = channel(1);
  const double b = channel(2);
  const double x = bend((0.4124 * r + 0.3576 * g + 0.1805 * b) / 0.9505);
  const double y = bend(0.2126 * r + 0.7152 * g + 0.0722 * b);
  const double z = bend((0.0193 * r + 0.1192 * g + 0.9505 * b) / 1.0890);
  return {116.0 * y - 16.0, 500.0 * (x - y), 200.0 * (y - z)};
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
    const auto light = [&](std::size_t i) { return ToLab(tables_[p][i])[0]; };
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
  for (std::size_t p = 0; p < tables_.size(); ++p) {
    for (std::size_t q = 0; q < p; ++q) {
      double sum = 0.0;
      for (std::size_t i = 0; i < 256; ++i) {
        const Lab a = ToLab(tables_[p][i]);
        const Lab b = ToLab(tables_[q][i]);
        sum += std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
      }
      EXPECT_GT(sum / 256.0, 15.0) << p << ' ' << q;
    }
  }
}

}  // namespace
}  // namespace tessa::testing
