#include "test_files.h"
#include "view/palettes.h"

namespace tessa::testing {
namespace {

/// Bytes of a palette file in which colour `entry` of palette p is p x 1000 + entry.
Bytes PaletteFile() {
  ByteWriter writer;
  for (std::uint32_t p = 0; p < 18; ++p) {
    for (std::uint32_t entry = 0; entry < 256; ++entry) {
      writer.U32Le(p * 1000 + entry);
    }
  }
  return writer.Take();
}

class PaletteTables : public ::testing::Test {
 protected:
  PaletteTables() {
    folder_.Write(u"palette.dta"_s, PaletteFile());
    Load();
  }
  void Load() {
    faults_.clear();
    LoadPalettes(palettes_, view_, session_.Folder, faults_);
  }
  void OpenImageFile() {
    SitFields fields;
    fields.Counts.assign(76800, 2000);
    OpenPath(folder_.Write(u"p.sit"_s, EncodeSit(fields)), session_, progress_);
  }
  void Select(int position) {
    SelectPalette(position, session_.Image, view_, palettes_, session_.Buffers);
  }
  void Reverse() { ReversePalette(session_.Image, view_, palettes_, session_.Buffers); }
  void ExpectEverywhere(Colour first, Colour last) {
    for (const Picbuf* buffer : {&session_.Buffers.Picbuf1, &session_.Buffers.PicBuf2,
                                 &session_.Buffers.Picbuf7, &session_.Buffers.Picbuf3}) {
      EXPECT_EQ(buffer->GetPaletteColor(0), first);
      EXPECT_EQ(buffer->GetPaletteColor(255), last);
    }
    EXPECT_EQ(palettes_.CurrentPalette[0], first);
    EXPECT_EQ(palettes_.CurrentPaletteCopy, palettes_.CurrentPalette);
  }

  TestFolder folder_;
  Session session_{ApplicationFolder(folder_.Path({}), u"/nowhere"_s)};
  Progress progress_;
  Palettes& palettes_ = session_.Palettes;
  ViewState& view_ = session_.View;
  Problems faults_;
};

TEST_F(PaletteTables, TheListOffersEighteenNamesAndKeepsItsSelection) {
  EXPECT_EQ(view_.PaletteList.size(), 18);
  EXPECT_EQ(view_.PaletteList[0].toStdString(), "GRAY SCALE");
  EXPECT_EQ(view_.PaletteList[10].toStdString(), "HOT IRON");
  EXPECT_EQ(view_.PaletteList[17].toStdString(), "MEDICAL1");
  EXPECT_EQ(view_.PaletteSelection, 0);
  Select(5);
  FillPaletteList(view_);
  EXPECT_EQ(view_.PaletteSelection, 5);
  EXPECT_EQ(view_.PaletteList.size(), 18);
  EXPECT_EQ(FindPalette(u"hot iron 2"_s), 11);
  EXPECT_EQ(FindPalette(u"17"_s), 17);
  for (const char* name : {"18", "-1", "ISOTHERM", "HOT", ""}) {
    EXPECT_EQ(FindPalette(QString::fromLatin1(name)), -1) << name;
  }
}

TEST_F(PaletteTables, AMissingFileLeavesTheTableAsItWas) {
  EXPECT_TRUE(faults_.empty());
  EXPECT_EQ(palettes_.PaletteTable[17][3], 17003U);
  EXPECT_EQ(palettes_.PaletteTable[18], palettes_.PaletteTable[0]);
  ASSERT_TRUE(QFile::remove(folder_.Path(u"palette.dta"_s)));
  Load();
  EXPECT_EQ(faults_.at(0).Kind, ProblemKind::kUnreadable);
  EXPECT_EQ(palettes_.PaletteTable[17][0], 17000U);
}

TEST_F(PaletteTables, WithNoImageASelectionOnlyMovesTheList) {
  Select(4);
  EXPECT_EQ(view_.PaletteSelection, 4);
  EXPECT_EQ(palettes_.PaletteIndex, 0);
  Reverse();
  EXPECT_EQ(palettes_.PaletteTable[4][0], 4000U);
  EXPECT_FALSE(view_.TrendSaysWhiteHot);
  OpenImageFile();  // An image opens in what the list shows.
  EXPECT_EQ(palettes_.PaletteIndex, 4);
  EXPECT_EQ(session_.Buffers.Picbuf1.GetPaletteColor(1), 4001U);
  CloseImage(session_, progress_);
  Select(6);
  EXPECT_EQ(palettes_.PaletteIndex, 4);
}

TEST_F(PaletteTables, ASelectionRecoloursEveryBufferAndTouchesNoPixel) {
  OpenImageFile();
  const auto indices = session_.Buffers.Picbuf1.Pixels();
  const std::vector<std::uint8_t> before(indices.begin(), indices.end());
  Select(9);
  ExpectEverywhere(9000, 9255);
  EXPECT_EQ(palettes_.PaletteIndex, 9);
  EXPECT_THAT(session_.Buffers.Picbuf1.Pixels(), ::testing::ElementsAreArray(before));
  for (const int none : {-1, 18, 99}) {
    Select(none);
    EXPECT_EQ(view_.PaletteSelection, 9);
  }
  ExpectEverywhere(9000, 9255);
}

TEST_F(PaletteTables, AReversalStaysInTheTableAndTwoOfThemRestoreIt) {
  OpenImageFile();
  const auto original = palettes_.PaletteTable;
  Reverse();
  ExpectEverywhere(255, 0);
  EXPECT_EQ(palettes_.CurrentPalette[127], 128U);
  EXPECT_TRUE(view_.TrendSaysWhiteHot);
  EXPECT_EQ(palettes_.PaletteTable[18], original[18]);
  Select(3);
  ExpectEverywhere(3000, 3255);
  EXPECT_TRUE(view_.TrendSaysWhiteHot);  // One state for all palettes.
  Select(0);
  ExpectEverywhere(255, 0);
  OpenImageFile();
  EXPECT_EQ(session_.Buffers.Picbuf1.GetPaletteColor(0), 255U);
  Reverse();
  EXPECT_FALSE(view_.TrendSaysWhiteHot);
  EXPECT_EQ(palettes_.PaletteTable, original);
}

}  // namespace
}  // namespace tessa::testing
