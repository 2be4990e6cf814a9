#include <array>

#include "test_files.h"
#include "view/picbuf.h"

namespace tessa::testing {
namespace {

constexpr Colour kRed = 0x0000FF;
constexpr Colour kGreen = 0x00FF00;
constexpr Colour kBlue = 0xFF0000;

/// A buffer of 8 bits that counts its pixels from `first`.
Picbuf Counting(int width, int height, int first = 0) {
  Picbuf buffer;
  buffer.CreateBuffer(0, height, width, 8);
  for (int row = 0; row < height; ++row) {
    for (std::uint8_t& pixel : buffer.IndexRow(row)) {
      pixel = static_cast<std::uint8_t>(first++);
    }
  }
  return buffer;
}

/// The row's cells: indices of an 8-bit buffer, colours of a 24-bit one.
std::vector<std::int32_t> Row(const Picbuf& buffer, int row) {
  std::vector<std::int32_t> cells(static_cast<std::size_t>(buffer.BufWidth()), -1);
  buffer.GetRow(cells, row);
  return cells;
}

void Select(Picbuf& buffer, int left, int top, int width, int height) {
  buffer.SelLeft = left;
  buffer.SelTop = top;
  buffer.SelWidth = width;
  buffer.SelHeight = height;
}

TEST(Picbuf, RowsAreReadAndWrittenInsideTheBufferOnly) {
  Picbuf buffer = Counting(3, 2);
  EXPECT_THAT(Row(buffer, 1), ElementsAre(3, 4, 5));
  std::array<std::int32_t, 5> wide{9, 9, 9, 9, 9};
  buffer.GetRow(wide, 0);
  EXPECT_THAT(wide, ElementsAre(0, 1, 2, 9, 9));
  std::array<std::int32_t, 2> narrow{9, 9};
  EXPECT_THROW(buffer.GetRow(narrow, 1), std::out_of_range);
  EXPECT_THAT(narrow, ElementsAre(3, 4));
  EXPECT_THROW(buffer.PutRow(narrow, 0), std::out_of_range);
  for (const int row : {-1, 2, 32767}) {
    EXPECT_THROW(buffer.GetRow(wide, row), std::out_of_range);
    EXPECT_THROW(buffer.PutRow(wide, row), std::out_of_range);
    EXPECT_THROW(buffer.IndexRow(row), std::out_of_range);
  }
  EXPECT_THAT(Row(buffer, 0), ElementsAre(0, 1, 2));
  buffer.PutRow(std::array<std::int32_t, 3>{256, 0x1FF, -1}, 0);  // The low 8 bits count.
  EXPECT_THAT(Row(buffer, 0), ElementsAre(0, 255, 255));
  EXPECT_THAT(Row(buffer, 1), ElementsAre(3, 4, 5));
  Picbuf colours;
  colours.CreateBuffer(kWhite, 1, 2, 24);
  colours.PutRow(std::array<std::int32_t, 2>{0x123456, 0}, 0);
  EXPECT_THAT(Row(colours, 0), ElementsAre(0x123456, 0));
  EXPECT_THROW(colours.IndexRow(0), std::out_of_range);
  EXPECT_THROW(Picbuf().GetRow(wide, 0), std::out_of_range);
}

TEST(Picbuf, OnlyBuffersThatCanExistAreMade) {
  Picbuf buffer = Counting(2, 1);
  for (const auto& [height, width, bits] : std::initializer_list<std::array<int, 3>>{
           {0, 5, 8}, {5, -1, 8}, {1, 32768, 8}, {5, 5, 16}, {5, 5, 0}}) {
    EXPECT_THROW(buffer.CreateBuffer(0, height, width, bits), StepFailure);
    EXPECT_THAT(Row(buffer, 0), ElementsAre(0, 1));
  }
  buffer.CreateBuffer(7, 2, 3, 8);
  EXPECT_EQ(buffer.BufHeight(), 2);
  EXPECT_THAT(Row(buffer, 1), Each(7));
  EXPECT_EQ(buffer.GetPaletteColor(100), 0x646464U);
  buffer.CreateBuffer(0x102030, 1, 3, 24);
  EXPECT_THAT(Row(buffer, 0), Each(0x102030));
  buffer.FreeBuffer();
  EXPECT_EQ(buffer.BufWidth() + buffer.BufHeight() + buffer.BufDepth(), 0);
  EXPECT_TRUE(buffer.ViewPicture().isNull());
}

TEST(Picbuf, DepthChangesKeepWhatIsSeen) {
  Picbuf buffer = Counting(2, 1, 4);
  buffer.SetPaletteColor(kRed, 4);
  buffer.SetPaletteColor(0x1E140A, 5);  // 10, 20, 30
  buffer.ConvertDepth(24);
  EXPECT_EQ(buffer.BufDepth(), 24);
  EXPECT_THAT(Row(buffer, 0), ElementsAre(kRed, 0x1E140A));
  EXPECT_THROW(buffer.ConvertDepth(8), StepFailure);
  buffer.ReduceTo8Bit();
  EXPECT_EQ(buffer.BufDepth(), 8);
  EXPECT_THAT(Row(buffer, 0), ElementsAre(76, 18));
  EXPECT_EQ(buffer.GetPaletteColor(76), 0x4C4C4CU);
  EXPECT_THROW(buffer.GetPaletteColor(256), std::out_of_range);
  EXPECT_THROW(buffer.SetPaletteColor(0, -1), std::out_of_range);
}

TEST(PicbufCopy, WithoutSelectionsTheDestinationBecomesTheSource) {
  Picbuf source = Counting(3, 2);
  source.SetPaletteColor(kBlue, 9);
  Select(source, 1, 1, 1, 1);
  Picbuf target;
  target.CopyFrom(false, source, false);
  EXPECT_THAT(Row(target, 1), ElementsAre(3, 4, 5));
  EXPECT_EQ(target.GetPaletteColor(9), kBlue);
  target.CreateBuffer(0, 7, 7, 24);
  target.CopyFrom(false, source, false);
  EXPECT_EQ(target.BufWidth(), 3);
  EXPECT_EQ(target.BufDepth(), 8);
  EXPECT_THROW(target.CopyFrom(false, Picbuf(), false), StepFailure);
  EXPECT_THAT(Row(target, 0), ElementsAre(0, 1, 2));
}

TEST(PicbufCopy, SelectionsAreStretchedToEachOther) {
  Picbuf source = Counting(4, 2, 10);  // 10 11 12 13 / 14 15 16 17
  source.SetPaletteColor(kRed, 15);
  Select(source, 1, 0, 2, 2);
  Picbuf target;
  EXPECT_THROW(target.CopyFrom(true, source, true), StepFailure);
  target.CreateBuffer(0, 4, 6, 8);
  Select(target, 1, 1, 4, 2);
  target.CopyFrom(true, source, true);
  EXPECT_THAT(Row(target, 0), Each(0));
  EXPECT_THAT(Row(target, 1), ElementsAre(0, 11, 11, 12, 12, 0));
  EXPECT_THAT(Row(target, 2), ElementsAre(0, 15, 15, 16, 16, 0));
  EXPECT_THAT(Row(target, 3), Each(0));
  EXPECT_EQ(target.GetPaletteColor(15), 0x0F0F0FU);  // Indices travel, the palette does not.
  // Source selection to the whole destination, whole source to a destination selection.
  target.CreateBuffer(0, 4, 4, 8);
  target.CopyFrom(true, source, false);
  EXPECT_THAT(Row(target, 1), ElementsAre(11, 11, 12, 12));
  EXPECT_THAT(Row(target, 2), ElementsAre(15, 15, 16, 16));
  Select(target, 0, 2, 4, 2);
  target.CopyFrom(false, source, true);
  EXPECT_THAT(Row(target, 1), ElementsAre(11, 11, 12, 12));
  EXPECT_THAT(Row(target, 3), ElementsAre(14, 15, 16, 17));
  // The last column left out, as the thumbnails do.
  Select(source, 0, 0, 3, 2);
  target.CreateBuffer(0, 2, 3, 8);
  target.CopyFrom(true, source, false);
  EXPECT_THAT(Row(target, 1), ElementsAre(14, 15, 16));
}

TEST(PicbufCopy, TheDepthOfTheDestinationStays) {
  Picbuf source = Counting(2, 1, 1);
  source.SetPaletteColor(kRed, 1);
  source.SetPaletteColor(kGreen, 2);
  Select(source, 0, 0, 2, 1);
  Picbuf colours;
  colours.CreateBuffer(kWhite, 1, 3, 24);
  Select(colours, 1, 0, 2, 1);
  colours.CopyFrom(true, source, true);
  EXPECT_THAT(Row(colours, 0), ElementsAre(kWhite, kRed, kGreen));
  EXPECT_EQ(colours.BufDepth(), 24);
  // Into indices the nearest colours of the palette that is there are taken.
  colours.PutRow(std::array<std::int32_t, 3>{kWhite, kRed, 0x640A0B}, 0);
  Picbuf palette = Counting(3, 1);
  palette.SetPaletteColor(kRed, 61);
  Select(palette, 0, 0, 3, 1);
  palette.CopyFrom(false, colours, true);
  EXPECT_THAT(Row(palette, 0), ElementsAre(255, 61, 40));
  EXPECT_EQ(palette.BufDepth(), 8);
}

TEST(PicbufCopy, WhatASelectionHasOutsideItsBufferIsPassedOver) {
  const Picbuf original = Counting(2, 2, 10);  // 10 11 / 12 13
  Picbuf source;
  source.CopyFrom(false, original, false);
  Picbuf target = Counting(3, 3);
  Select(target, -1, 2, 3, 9);  // Two of three columns and one of nine rows lie inside.
  Select(source, 0, 0, 3, 9);   // In the scale of the uncut selections: one to one.
  target.CopyFrom(true, source, true);
  EXPECT_THAT(Row(target, 1), ElementsAre(3, 4, 5));
  EXPECT_THAT(Row(target, 2), ElementsAre(11, 7, 8));
  Select(target, 0, 0, 3, 3);
  Select(source, -1, -1, 3, 3);
  target.CopyFrom(true, source, true);
  EXPECT_THAT(Row(target, 0), ElementsAre(0, 1, 2));
  EXPECT_THAT(Row(target, 1), ElementsAre(3, 10, 11));
  EXPECT_THAT(Row(target, 2), ElementsAre(11, 12, 13));
  Select(target, -2000000000, -3, 2000000000, 2);
  target.CopyFrom(true, source, true);
  EXPECT_THAT(Row(target, 0), ElementsAre(0, 1, 2));
}

TEST(PicbufDrawing, FramesAndLinesAreExactAndStayInside) {
  Picbuf buffer;
  buffer.CreateBuffer(0, 4, 5, 24);
  buffer.ForeColor = kGreen;
  Select(buffer, 1, 0, 4, 3);
  buffer.DrawSelFrame();
  EXPECT_THAT(Row(buffer, 0), ElementsAre(0, kGreen, kGreen, kGreen, kGreen));
  EXPECT_THAT(Row(buffer, 1), ElementsAre(0, kGreen, 0, 0, kGreen));
  EXPECT_THAT(Row(buffer, 2), ElementsAre(0, kGreen, kGreen, kGreen, kGreen));
  EXPECT_THAT(Row(buffer, 3), Each(0));

  Picbuf indices;
  indices.CreateBuffer(0, 4, 4, 8);
  indices.ForeColor = kWhite;
  indices.DrawPolyline(std::array<std::int32_t, 6>{0, 3, 3, 0, 3, 2});
  EXPECT_THAT(Row(indices, 0), ElementsAre(0, 0, 0, 255));
  EXPECT_THAT(Row(indices, 1), ElementsAre(0, 0, 255, 255));
  EXPECT_THAT(Row(indices, 2), ElementsAre(0, 255, 0, 255));
  EXPECT_THAT(Row(indices, 3), ElementsAre(255, 0, 0, 0));
  indices.CreateBuffer(0, 4, 4, 8);
  indices.DrawPolyline(std::array<std::int32_t, 5>{-2000000000, 1, 2000000000, 1, 3});
  EXPECT_THAT(Row(indices, 1), Each(255));
  EXPECT_THAT(Row(indices, 2), Each(0));
  EXPECT_THROW(Picbuf().DrawPolyline(std::array<std::int32_t, 4>{}), StepFailure);
}

TEST(PicbufSave, ABitmapKeepsWhatTheBufferHolds) {
  const TestFolder folder;
  Picbuf buffer = Counting(3, 2, 1);
  buffer.SetPaletteColor(0x123456, 2);
  buffer.FileName = folder.Path(u"p.bmp"_s);
  buffer.SaveFile();
  EXPECT_EQ(ReadBytes(buffer.FileName),
            EncodeBmp8(3, 2, buffer.Pixels(), buffer.Stride(), buffer.Palette()));
  Problems faults;
  Picbuf again;
  again.FileName = buffer.FileName;
  again.LoadFile(faults);
  EXPECT_TRUE(faults.empty());
  EXPECT_THAT(Row(again, 1), ElementsAre(4, 5, 6));
  EXPECT_EQ(again.Palette(), buffer.Palette());
  buffer.ConvertDepth(24);
  buffer.SaveFile();
  EXPECT_EQ(ReadBytes(buffer.FileName), EncodeBmp24(3, 2, buffer.Pixels(), buffer.Stride()));
  EXPECT_THROW(Picbuf().SaveFile(), StepFailure);
  buffer.FileType = Picbuf::kTiff;
  EXPECT_THROW(buffer.SaveFile(), StepFailure);
  buffer.FileName.clear();
  EXPECT_THROW(buffer.SaveFile(), StepFailure);
}

}  // namespace
}  // namespace tessa::testing
