#include <QImageWriter>
#include <algorithm>
#include <bit>
#include <limits>

#include "export/image_export.h"
#include "formats/float_tiff.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

Bytes ProgressiveJpeg(int width, int height) {
  QImage picture(width, height, QImage::Format_RGB32);
  picture.fill(QColor(90, 120, 30));
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, "jpeg");
  writer.setProgressiveScanWrite(true);
  EXPECT_TRUE(writer.write(picture));
  return {bytes.begin(), bytes.end()};
}

/// The same picture with its last scan repeated.
Bytes WithScans(const Bytes& jpeg, int count) {
  const Bytes mark = {0xFF, 0xDA};
  const auto scan = std::find_end(jpeg.begin(), jpeg.end(), mark.begin(), mark.end());
  Bytes file(jpeg.begin(), jpeg.end() - 2);
  for (int i = 0; i < count; ++i) {
    file.insert(file.end(), scan, jpeg.end() - 2);
  }
  file.insert(file.end(), {0xFF, 0xD9});
  return file;
}

class PictureBounds : public LoadTest {
 protected:
  void ExpectRefusal(const char* name, std::span<const std::uint8_t> content, const char* reason) {
    SCOPED_TRACE(reason);
    Open(name, content);
    const Problem* const problem = FindNoImage(session_.Faults);
    ASSERT_NE(problem, nullptr);
    EXPECT_THAT(problem->Text, HasSubstr(reason));
  }
};

TEST_F(PictureBounds, ATiffOfEachSampleKindIsReadOrRefusedByName) {
  Open("fax.tif", Tiff(TiffTags(10, 2, 1, 1, 0), {{0x80, 0x40, 0xFF, 0xC0}}));
  EXPECT_THAT(Row(0), ElementsAre(0, 255, 255, 255, 255, 255, 255, 255, 255, 0));
  EXPECT_THAT(Row(1), ::testing::Each(0));
  Open("four.tif", Tiff(TiffTags(3, 1, 4, 1, 1), {{0x0F, 0x80}}));
  EXPECT_THAT(Row(0), ElementsAre(0, 255, 136));
  TiffNumbers colours(12);
  colours[1] = colours[5] = colours[9] = 0xFFFF;  // Index 1 is white, 2 green.
  colours[6] = 0xFFFF;
  Open("palette.tif", Tiff(WithTag(TiffTags(4, 1, 2, 1, 3), 320, colours), {{0x1B}}));
  EXPECT_THAT(Row(0), ElementsAre(0, 255, 150, 0));
  Open("sixteen.tif", Tiff(TiffTags(3, 1, 16, 1, 1), {{0xE8, 3, 0xD0, 7, 0xB8, 0x0B}}));
  EXPECT_THAT(Row(0), ElementsAre(0, 128, 255));  // 1000, 2000, 3000
  Open("signed.tif", Tiff(WithTag(TiffTags(3, 1, 8, 1, 1), 339, {2}), {{0x80, 0, 0x7F}}));
  EXPECT_THAT(Row(0), ElementsAre(0, 128, 255));
  // Planes apart: red, green, blue of 16 bits each.
  Open("planes.tif", Tiff(WithTag(TiffTags(2, 1, 16, 3, 2), 284, {2}),
                          {{0xFF, 0xFF, 0, 0}, {0, 0, 0xFF, 0xFF}, {0, 0, 0, 0}}));
  EXPECT_THAT(Row(0), ElementsAre(76, 150));
  // Stored on its side: the rows are the columns.
  Open("side.tif", Tiff(WithTag(TiffTags(3, 2, 8, 1, 1), 274, {6}), {{1, 2, 3, 4, 5, 6}}));
  ASSERT_EQ(image_.ImageWidth, 2);
  EXPECT_THAT(Row(0), ElementsAre(4, 1));
  EXPECT_THAT(Row(2), ElementsAre(6, 3));

  const Bytes strip(64);
  ExpectRefusal("no.tif", Tiff(TiffTags(2, 2, 8, 1000, 1), {strip}), "1000 samples a pixel");
  ExpectRefusal("no.tif", Tiff(TiffTags(2, 2, 12, 1, 1), {strip}), "12 bits a sample");
  ExpectRefusal("no.tif", Tiff(WithTag(TiffTags(2, 2, 32, 3, 2), 339, {3, 3, 3}), {strip}),
                "floating point");
  ExpectRefusal("no.tif", Tiff(WithTag(TiffTags(2, 2, 32, 1, 1), 339, {6}), {strip}), "complex");
  ExpectRefusal("no.tif", Tiff(WithTag(TiffTags(2, 2, 8, 1, 1), 259, {50000}), {strip}),
                "Zstandard");
  ExpectRefusal("no.tif", Tiff(TiffTags(2, 2, 8, 3, 8), {strip}), "colour model 8");
  ExpectRefusal("no.tif", Tiff(TiffTags(20000, 20000, 1, 1, 1), {strip}), "100 million pixels");
}

TEST_F(PictureBounds, ATiffThatAsksForMoreThanItsFileHoldsIsRefused) {
  ExpectRefusal("work.tif", Tiff(TiffTags(10000, 10000, 32, 1, 1), {Bytes(9)}), "far larger");
  // Each of these entries names the whole of a large file as its value.
  ByteWriter bomb;
  bomb.Text("II*", 4);
  bomb.U32Le(8);
  bomb.U16Le(100);
  for (int i = 0; i < 100; ++i) {
    bomb.U16Le(static_cast<std::uint16_t>(40000 + i));
    bomb.U16Le(1);
    bomb.U32Le(200000);
    bomb.U32Le(8);
  }
  bomb.PadTo(300000);
  ExpectRefusal("bomb.tif", bomb.Take(), "more values than the file can hold");
  auto tiled = TiffTags(64, 64, 8, 1, 1);
  tiled[322] = {1};
  tiled[323] = {1};
  tiled[324] = TiffNumbers(2);
  tiled[325] = TiffNumbers(2);
  ExpectRefusal("tiles.tif", Tiff(tiled, {Bytes(64)}), "tiles of 1 by 1");
  // Equal rows may share their bytes; each row naming the whole file would be read as often.
  const auto packed = [](std::uint32_t rows) {
    return WithTag(WithTag(TiffTags(64, rows, 8, 1, 1), 259, {32773}), 278, {1});
  };
  Open("twins.tif", Tiff(packed(2), {{0xC1, 7}}, 2));
  EXPECT_THAT(Row(1), ::testing::Each(7));
  ExpectRefusal("shared.tif", Tiff(packed(400), {Bytes(100000)}, 400), "claim more bytes");
}

TEST_F(PictureBounds, TheScansOfAJpegAreCounted) {
  const Bytes jpeg = ProgressiveJpeg(64, 64);
  Open("few.jpg", WithScans(jpeg, 50));
  EXPECT_EQ(FindNoImage(session_.Faults), nullptr);
  EXPECT_NEAR(Row(9)[9], 101, 2);
  ExpectRefusal("many.jpg", WithScans(jpeg, 100), "more than 100 scans");
  ExpectRefusal("work.jpg", WithScans(ProgressiveJpeg(4000, 3000), 90), "more work");
}

TEST_F(PictureBounds, LargePhotographsOpen) {
  Open("24.jpg", ProgressiveJpeg(6000, 4000));
  ExpectNoFaults();
  EXPECT_EQ(image_.ImageWidth, 6000);
  EXPECT_NEAR(Row(3999)[5999], 101, 2);
}

// The address sanitizer ends the process where memory runs out, so it has no such test.
#ifndef __SANITIZE_ADDRESS__
TEST_F(PictureBounds, WhatMemoryCannotHoldIsAFault) {
  const Bytes jpeg = ProgressiveJpeg(3000, 3000);
  const QString path = Write("large.jpg", jpeg);
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_DATA, &before), 0);
  rlimit tight = before;
  tight.rlim_cur = 1 << 20;
  ASSERT_EQ(::setrlimit(RLIMIT_DATA, &tight), 0);
  OpenPath(path, session_, plain_);
  ASSERT_EQ(::setrlimit(RLIMIT_DATA, &before), 0);
  ASSERT_NE(FindNoImage(session_.Faults), nullptr);
  EXPECT_EQ(FindNoImage(session_.Faults)->Kind, ProblemKind::kTooLarge);
}
#endif

TEST_F(PictureBounds, BitmapsOfFewColoursShowTheirLightness) {
  ColourTable palette{};
  palette[1] = kWhite;
  palette[2] = 0x0000FF;
  Bytes file = EncodeBmp8(4, 1, Bytes{0, 1, 2, 1}, 4, palette);
  Open("few.bmp", file);
  EXPECT_THAT(Row(0), ElementsAre(0, 255, 76, 255));
  file[46] = 3;  // Only three colours are there; a TXI image keeps its indices all the same.
  Open("few.txi", file);
  EXPECT_THAT(Row(0), ElementsAre(0, 1, 2, 1));
}

TEST_F(PictureBounds, AnExportedTiffIsMeasuredAgain) {
  const std::vector<float> degrees = {-40.0F, 0.1F,   36.65F,
                                      120.5F, 20.25F, std::numeric_limits<float>::quiet_NaN()};
  Open("t.tif", EncodeFloatTiff(3, 2, degrees));
  EXPECT_TRUE(image_.HasTemperature);
  EXPECT_EQ(image_.ImageKind, KindTiff);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(image_.TempGrid.At(i % 3, i / 3), degrees[static_cast<std::size_t>(i)]);
  }
  EXPECT_EQ(image_.TempMin, -40.0F);
  EXPECT_EQ(image_.TempMax, 120.5F);
  ExpectScaleTexts("-40.0", "120.5", "-80.0", "160.5");
  EXPECT_EQ(Row(0)[0], 0);
  EXPECT_EQ(Row(1)[0], 255);
  ExpectOneFault(ProblemKind::kBadValue, 0, "Pixels", false);  // One is no number.

  ShowInRange(0.0F, 40.5F, PiecesForRendering(session_, plain_));
  EXPECT_EQ(Row(1)[0], 255);
  EXPECT_EQ(Row(0)[2], 231);
  UpdateReadout(0, 0, image_, picture_, session_.Words, session_.Cursor, session_.View);
  EXPECT_THAT(view_.StatusPanel[3].toStdString(), HasSubstr("-40.0"));
  ExportOptions options;
  options.Unit = 'F';  // Celsius all the same.
  EXPECT_EQ(First(EncodeForExport(session_, Name("tif"), options), 200),
            First(EncodeFloatTiff(3, 2, degrees), 200));
}

}  // namespace
}  // namespace tessa::testing
