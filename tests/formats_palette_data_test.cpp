#include <fstream>
#include <iterator>

#include "formats/palette_file.h"
#include "test_images.h"

namespace tessa::testing {
namespace {

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
  for (const std::size_t length : std::initializer_list<std::size_t>{0, 5000, 18431, 18432}) {
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
}

}  // namespace
}  // namespace tessa::testing
