#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string_view>

#include "palettes.h"

namespace tessa::tools {
namespace {

constexpr std::string_view kNames[] = {
    "GRAY SCALE", "TESSASCAN",  "SHINE",    "RAIN4402",  "RAIN",     "PRISM2",
    "SATURN",     "BRIGHTNESS", "FINE",     "HOT METAL", "HOT IRON", "HOT IRON 2",
    "FIRE",       "RAINBOW",    "GREYRAI2", "GREYRAI3",  "GREYRAI4", "MEDICAL1"};

// The palettes whose lightness rises from each entry to the next, and evenly.
constexpr std::size_t kRising[] = {0, 1, 2, 7, 9, 10, 11, 12};

using Lab = std::array<double, 3>;

// CIELAB under D65 of a colour 0x00BBGGRR.
Lab ToLab(std::uint32_t colour) {
  const auto channel = [colour](unsigned index) {
    const double v = ((colour >> (8 * index)) & 0xFFU) / 255.0;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
  };
  const double r = channel(0);
  const double g = channel(1);
  const double b = channel(2);
  const auto bend = [](double t) {
    return t > 216.0 / 24389.0 ? std::cbrt(t) : (24389.0 / 27.0 * t + 16.0) / 116.0;
  };
  const double x = bend((0.4124 * r + 0.3576 * g + 0.1805 * b) / 0.9505);
  const double y = bend(0.2126 * r + 0.7152 * g + 0.0722 * b);
  const double z = bend((0.0193 * r + 0.1192 * g + 0.9505 * b) / 1.0890);
  return {116.0 * y - 16.0, 500.0 * (x - y), 200.0 * (y - z)};
}

double Distance(std::uint32_t one, std::uint32_t other) {
  const Lab a = ToLab(one);
  const Lab b = ToLab(other);
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

TEST(PaletteDesign, NamesAreInFileOrder) {
  const auto palettes = MakePalettes();
  ASSERT_EQ(palettes.size(), std::size(kNames));
  for (std::size_t p = 0; p < palettes.size(); ++p) {
    EXPECT_EQ(palettes[p].Name, kNames[p]);
  }
}

TEST(PaletteDesign, GrayScaleIsExactlyLinear) {
  const auto palettes = MakePalettes();
  for (std::uint32_t i = 0; i < kPaletteColours; ++i) {
    EXPECT_EQ(palettes[0].Colours[i], i << 16U | i << 8U | i);
  }
}

TEST(PaletteDesign, FileHoldsLittleEndianColoursWithRedLowest) {
  auto palettes = MakePalettes();
  palettes[1].Colours[2] = 0x00332211;
  const auto bytes = EncodePaletteFile(palettes);
  ASSERT_EQ(bytes.size(), 18432U);
  const std::size_t at = (256 + 2) * 4;
  EXPECT_EQ(bytes[at], 0x11);
  EXPECT_EQ(bytes[at + 1], 0x22);
  EXPECT_EQ(bytes[at + 2], 0x33);
  EXPECT_EQ(bytes[at + 3], 0x00);
  // Three quarters up the hot metal palette is an orange, far redder than it is blue.
  const std::size_t orange = (9 * 256 + 192) * 4;
  EXPECT_GT(bytes[orange], 0xE0);
  EXPECT_LT(bytes[orange + 2], 0x60);
}

TEST(PaletteDesign, NoColourUsesTheTopByteAndNoPaletteCountsAsReversed) {
  for (const NamedPalette& palette : MakePalettes()) {
    EXPECT_LT(palette.Colours.front(), palette.Colours.back()) << palette.Name;
    for (const std::uint32_t colour : palette.Colours) {
      EXPECT_EQ(colour >> 24U, 0U) << palette.Name;
    }
  }
}

TEST(PaletteDesign, GreyRainbowsColourTheirShareOfTheHotEnd) {
  const auto palettes = MakePalettes();
  const auto isGrey = [](std::uint32_t c) { return c == (c & 0xFFU) * 0x010101U; };
  for (std::size_t parts = 2; parts <= 4; ++parts) {
    const auto& colours = palettes[12 + parts].Colours;
    const std::size_t grey = kPaletteColours - kPaletteColours / parts;
    for (std::size_t i = 0; i < kPaletteColours; ++i) {
      EXPECT_EQ(isGrey(colours[i]), i < grey) << palettes[12 + parts].Name << " entry " << i;
    }
  }
}

TEST(PaletteDesign, LightnessRisesWithoutPlateausOrKinks) {
  const auto palettes = MakePalettes();
  for (const std::size_t p : kRising) {
    std::array<double, kPaletteColours> light{};
    for (std::size_t i = 0; i < light.size(); ++i) {
      light[i] = ToLab(palettes[p].Colours[i])[0];
    }
    const double even = (light.back() - light.front()) / 255.0;
    EXPECT_GT(even, 0.3) << palettes[p].Name;  // at least three quarters of the whole lightness
    for (std::size_t i = 1; i < light.size(); ++i) {
      EXPECT_GT(light[i], light[i - 1]) << palettes[p].Name << " entry " << i;
    }
    // Grey levels equal in code are not quite so in lightness, hence the wide bounds for them.
    const double tolerance = p == 0 ? 0.32 : 0.10;
    for (std::size_t i = 8; i < light.size(); ++i) {
      EXPECT_NEAR((light[i] - light[i - 8]) / (8.0 * even), 1.0, tolerance)
          << palettes[p].Name << " entry " << i;
    }
  }
}

TEST(PaletteDesign, NoTwoPalettesAreAlike) {
  const auto palettes = MakePalettes();
  for (std::size_t p = 0; p < palettes.size(); ++p) {
    for (std::size_t q = 0; q < p; ++q) {
      double sum = 0.0;
      for (std::size_t i = 0; i < kPaletteColours; ++i) {
        sum += Distance(palettes[p].Colours[i], palettes[q].Colours[i]);
      }
      EXPECT_GT(sum / kPaletteColours, 15.0) << palettes[p].Name << ", " << palettes[q].Name;
    }
  }
}

}  // namespace
}  // namespace tessa::tools
