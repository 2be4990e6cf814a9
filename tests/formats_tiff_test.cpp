#include <array>
#include <bit>
#include <limits>
#include <map>

#include "formats/float_tiff.h"
#include "formats/palette_file.h"
#include "test_images.h"

namespace tessa::testing {
namespace {

std::uint32_t NumberAt(const Bytes& file, std::size_t at, std::size_t size) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < size; ++i) {
    value |= std::uint32_t{file.at(at + i)} << (8 * i);
  }
  return value;
}

TEST(FloatTiff, ItsDirectoryLeadsToEveryTemperature) {
  const std::vector<float> degrees = {-40.0F, 0.1F,     36.65F,
                                      1e-30F, -273.15F, std::numeric_limits<float>::infinity()};
  const Bytes file = EncodeFloatTiff(3, 2, degrees);
  ASSERT_EQ(std::string(file.begin(), file.begin() + 4), std::string("II*\0", 4));
  struct Entry {
    std::uint32_t Type;
    std::uint32_t Count;
    std::uint32_t Value;
  };
  std::map<std::uint32_t, Entry> directory;
  const std::size_t start = NumberAt(file, 4, 4);
  EXPECT_EQ(start % 2, 0U);
  const std::size_t count = NumberAt(file, start, 2);
  std::uint32_t lastTag = 0;
  for (std::size_t at = start + 2; at < start + 2 + 12 * count; at += 12) {
    const std::uint32_t tag = NumberAt(file, at, 2);
    EXPECT_GT(tag, lastTag) << "entries stand in rising order";
    lastTag = tag;
    const std::uint32_t type = NumberAt(file, at + 2, 2);
    directory[tag] = {type, NumberAt(file, at + 4, 4), NumberAt(file, at + 8, type == 3 ? 2 : 4)};
  }
  EXPECT_EQ(NumberAt(file, start + 2 + 12 * count, 4), 0U) << "a second picture";

  const std::pair<std::uint32_t, std::uint32_t> values[] = {
      {256, 3}, {257, 2}, {258, 32}, {259, 1}, {262, 1}, {277, 1}, {278, 2}, {279, 24}, {339, 3}};
  for (const auto& [tag, value] : values) {
    ASSERT_TRUE(directory.contains(tag)) << tag;
    EXPECT_EQ(directory[tag].Count, 1U) << tag;
    EXPECT_EQ(directory[tag].Value, value) << tag;
  }
  const Entry description = directory.at(270);
  EXPECT_EQ(description.Type, 2U);
  EXPECT_GE(description.Value, start + 2 + 12 * count + 4);
  const std::string text(reinterpret_cast<const char*>(file.data()) + description.Value,
                         description.Count);
  EXPECT_EQ(text, std::string("temperatures in degrees Celsius\0", 32));

  const std::size_t pixels = directory.at(273).Value;
  EXPECT_GE(pixels, description.Value + description.Count);
  ASSERT_EQ(file.size(), pixels + 24);
  for (std::size_t i = 0; i < degrees.size(); ++i) {
    EXPECT_EQ(std::bit_cast<float>(NumberAt(file, pixels + 4 * i, 4)), degrees[i]) << i;
  }
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
