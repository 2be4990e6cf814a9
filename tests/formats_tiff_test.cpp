#include <array>
#include <bit>
#include <limits>

#include "formats/float_tiff.h"
#include "formats/palette_file.h"
#include "test_images.h"

namespace tessa::testing {
namespace {

TEST(FloatTiff, IsTheSameByteForByte) {
  Bytes expected =
      Hex("49492A00 08000000 0B00"
          "0001 0400 01000000 03000000"  // Width and height.
          "0101 0400 01000000 02000000"
          "0201 0300 01000000 20000000"  // 32 bits.
          "0301 0300 01000000 01000000"  // Not compressed.
          "0601 0300 01000000 01000000"  // Black is zero.
          "0E01 0200 20000000 92000000"  // 32 characters at 146.
          "1101 0400 01000000 B4000000"  // The strip at 180.
          "1501 0300 01000000 01000000"  // One sample a pixel.
          "1601 0400 01000000 02000000"  // Two rows in the strip.
          "1701 0400 01000000 18000000"  // Its 24 bytes.
          "5301 0300 01000000 03000000"  // Floating point.
          "00000000");
  expected = Joined(expected, ToBytes("temperatures in degrees Celsius\0\0\0"sv));
  const std::vector<float> degrees = {-40.0F, 0.1F,     36.65F,
                                      1e-30F, -273.15F, std::numeric_limits<float>::infinity()};
  for (const float celsius : degrees) {
    const auto bits = std::bit_cast<std::uint32_t>(celsius);
    for (const int shift : {0, 8, 16, 24}) {
      expected.push_back(static_cast<std::uint8_t>(bits >> shift));
    }
  }
  EXPECT_EQ(EncodeFloatTiff(3, 2, degrees), expected);
}

/// Entry i of palette p is p in the red, i in the green and 7 in the blue byte.
Bytes PaletteFile() {
  Bytes file;
  for (int palette = 0; palette < 18; ++palette) {
    for (int i = 0; i < 256; ++i) {
      file.insert(file.end(),
                  {static_cast<std::uint8_t>(palette), static_cast<std::uint8_t>(i), 7, 0});
    }
  }
  return file;
}

TEST(PaletteFile, ColoursBeyondAShortFileKeepTheirValue) {
  const Bytes whole = PaletteFile();
  for (const std::size_t length :
       std::initializer_list<std::size_t>{0, 3, 4, 1023, 1024, 5000, 18431, 18432}) {
    std::array<ColourTable, 19> tables;
    for (ColourTable& table : tables) {
      table.fill(0xABCDEF);
    }
    Problems faults;
    DecodePaletteFile(ByteSpan(whole).first(length), tables, faults);
    for (std::size_t i = 0; i < 19 * 256; ++i) {
      const Colour colour = tables[i / 256][i % 256];
      ASSERT_EQ(colour, i < length / 4 ? 0x070000U + i % 256 * 256 + i / 256 : 0xABCDEFU)
          << "colour " << i << " of a file of " << length << " bytes";
    }
    EXPECT_EQ(FactsOf(faults), length == 18432
                                   ? std::vector<FaultFacts>()
                                   : std::vector{Truncated(length, "palette.dta", false)});
  }
  std::array<ColourTable, 2> few{};
  Problems faults;
  DecodePaletteFile(whole, few, faults);
  EXPECT_EQ(few[1][255], Rgb(1, 255, 7));
  EXPECT_TRUE(faults.empty());
}

}  // namespace
}  // namespace tessa::testing
