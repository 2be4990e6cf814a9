#include <array>

#include "test_files.h"

namespace tessa::testing {
namespace {

using Pixels = std::vector<std::uint8_t>;

Bytes Bitmap8(int width, int height, const Pixels& indices, const ColourTable& palette) {
  return EncodeBmp8(width, height, indices, static_cast<std::size_t>(width), palette);
}

/// A one-strip TIFF of 8-bit samples. `photometric`: 0 white is zero, 1 black is zero, 2 red,
/// green, blue.
Bytes Tiff8(std::uint32_t width, std::uint32_t height, std::uint32_t photometric,
            const Pixels& samples) {
  return Tiff(TiffTags(width, height, 8, photometric == 2 ? 3 : 1, photometric), {samples});
}

Bytes Jpeg(const QImage& picture) {
  return EncodedJpeg(picture, 100);
}

class PictureLoad : public LoadTest {
 protected:
  void OpenSit() {
    SitFields fields = PlainSit();
    fields.Comment = "OLD";
    Open("before.sit", EncodeSit(fields));
  }
};

TEST_F(PictureLoad, ABitmapKeepsItsIndicesAndShowsThemInTheSelectedPalette) {
  OpenSit();
  ColourTable palette = Ramp(false);
  palette[7] = 0x123456;
  Open("small.bmp", Bitmap8(5, 2, {0, 1, 2, 7, 255, 9, 8, 7, 6, 5}, palette));
  EXPECT_THAT(Row(0), ElementsAre(0, 1, 2, 7, 255));
  EXPECT_THAT(Row(1), ElementsAre(9, 8, 7, 6, 5));
  EXPECT_EQ(picture_.Palette(), session_.Palettes.PaletteTable[0]);
  EXPECT_EQ(image_.ImageKind, KindBmp);
  EXPECT_EQ(image_.PreviousKindIndex, 1);
  EXPECT_EQ(image_.ImageWidth, 5);
  EXPECT_EQ(image_.BufferHeight(), 2);
  EXPECT_FALSE(image_.HasTemperature || image_.PaletteReversed);
  EXPECT_TRUE(image_.ImageDate.isEmpty() && view_.Comment.isEmpty());
  EXPECT_TRUE(view_.StatusPanel[4].isEmpty() && view_.StatusPanel[5].isEmpty());
  EXPECT_FALSE(view_.RangeSliderVisible || view_.RangeEntryVisible || view_.RangeToggleVisible ||
               view_.AutoUpdateVisible || view_.LimitBoxesVisible || view_.ExtremesLine.Visible);
  EXPECT_EQ(LoadButtonTip(image_, session_.Words).toStdString(), "Load Image BMP Images");
}

TEST_F(PictureLoad, AReversedPaletteTurnsTheValuesRound) {
  Open("dark.bmp", Bitmap8(4, 1, {0, 1, 100, 255}, Ramp(true)));
  EXPECT_TRUE(image_.PaletteReversed);
  EXPECT_THAT(Row(0), ElementsAre(255, 254, 155, 0));
  // Colours are compared as numbers with red in the low byte: this blue is above this yellow.
  ColourTable blue = Ramp(false);
  blue[0] = 0xFF0000;
  blue[255] = 0x00FFFF;
  Open("blue.bmp", Bitmap8(2, 1, {3, 4}, blue));
  EXPECT_TRUE(image_.PaletteReversed);
  EXPECT_THAT(Row(0), ElementsAre(252, 251));
  // The view's own reversed palette says nothing about the next picture.
  ReverseTable(session_.Palettes.PaletteTable[0]);
  Open("light.bmp", Bitmap8(2, 1, {3, 4}, Ramp(false)));
  EXPECT_FALSE(image_.PaletteReversed);
  EXPECT_THAT(Row(0), ElementsAre(3, 4));
  Open("white.tif", Tiff8(2, 1, 0, {10, 255}));
  EXPECT_EQ(image_.ImageKind, KindTiff);
  EXPECT_THAT(Row(0), ElementsAre(245, 0));
}

TEST_F(PictureLoad, ColoursBecomeTheirLuminance) {
  // (299 R + 587 G + 114 B + 500) / 1000
  Open("colours.tif", Tiff8(5, 1, 2, {255, 0, 0, 0, 255, 0, 0, 0, 255, 10, 20, 30, 2, 0, 0}));
  EXPECT_THAT(Row(0), ElementsAre(76, 150, 29, 18, 1));
  EXPECT_FALSE(image_.PaletteReversed);
  Bytes bytes = Bitmap8(3, 1, {0, 0, 0}, {});
  bytes.resize(54);
  bytes.insert(bytes.end(), {0, 0, 255, 255, 0, 0, 30, 20, 10, 0, 0, 0});  // Blue first.
  bytes[10] = 54;
  bytes[11] = 0;
  bytes[28] = 24;
  Open("colours.bmp", bytes);
  EXPECT_THAT(Row(0), ElementsAre(76, 29, 18));
  EXPECT_EQ(picture_.BufDepth(), 8);
}

TEST_F(PictureLoad, GreyPicturesKeepTheirLevels) {
  Open("grey.tif", Tiff8(3, 2, 1, {0, 100, 255, 5, 6, 7}));
  EXPECT_THAT(Row(0), ElementsAre(0, 100, 255));
  EXPECT_THAT(Row(1), ElementsAre(5, 6, 7));
  QImage grey(16, 8, QImage::Format_Grayscale8);
  grey.fill(QColor(200, 200, 200));
  OpenSit();
  Open("grey.jpg", Jpeg(grey));
  EXPECT_EQ(image_.ImageKind, KindJpeg);
  EXPECT_THAT(Row(7), ElementsAreArray(Pixels(16, 200)));
  EXPECT_TRUE(view_.StatusPanel[5].isEmpty() && view_.Memo.isEmpty());
  QImage red(16, 8, QImage::Format_RGB32);
  red.fill(Qt::red);
  Open("red.jpg", Jpeg(red));
  EXPECT_NEAR(Row(3)[5], 76, 2);
}

TEST_F(PictureLoad, APlainPictureHasAScaleOfPaletteEntriesInEitherUnit) {
  for (const char unit : {'C', 'F'}) {
    session_.Image.DisplayUnits = unit;
    for (const auto& [name, content] :
         {std::pair{"p.bmp", Bitmap8(2, 1, {1, 2}, Ramp(false))},
          std::pair{"p.tif", Tiff8(2, 1, 1, {1, 2})},
          std::pair{"p.jpg", Jpeg(QImage(8, 8, QImage::Format_Grayscale8))}}) {
      OpenSit();
      ASSERT_EQ(view_.RangeHighText.toStdString(), unit == 'F' ? "104.0" : "40.0");
      Open(name, content);
      EXPECT_EQ(image_.ScaleLowText.toStdString(), "0");
      EXPECT_EQ(image_.ScaleHighText.toStdString(), "255");
      EXPECT_EQ(view_.RangeHighText.toStdString(), "255.0");
      EXPECT_TRUE(view_.ScaleStrokesVisible);
      EXPECT_THAT(QStringList(view_.ScaleLabel.begin(), view_.ScaleLabel.end())
                      .join(QLatin1Char(' '))
                      .toStdString(),
                  "0.0 127.5 255.0 153.0 178.5 204.0 229.5 25.5 51.0 76.5 102.0");
    }
  }
}

TEST_F(PictureLoad, AWidePictureIsMeasuredToItsLastColumn) {
  const auto wide = Raster<std::uint8_t>(
      1602, 2, [](int column, int row) { return (1602 * row + column) % 251; });
  Open("wide.bmp", Bitmap8(1602, 2, wide, Ramp(false)));
  ExpectNoFaults();
  EXPECT_THAT(Row(1), ElementsAreArray(std::span(wide).subspan(1602)));
  Open("wide.txi", EncodeBmp8(1602, 2, wide, 1602, Ramp(false), 100, 200));
  ASSERT_EQ(image_.RowBuffers.CellCount(), 1602);
  for (const int column : {0, 1501, 1601}) {
    const double level = wide[1602 + static_cast<std::size_t>(column)] / 255.0;
    const double span = static_cast<double>(image_.ScaleMax - image_.ScaleMin);
    EXPECT_FLOAT_EQ(image_.TempGrid.At(column, 1),
                    static_cast<float>(span * level + static_cast<double>(image_.ScaleMin)));
  }
}

TEST_F(PictureLoad, OnlyTheLastThreeCharactersDecideAndTheirCaseDoesNotMatter) {
  for (const char* name : {"a.bmp", "A.BMP", "a.Bmp", "abmp", "a.png", "a.bmp2", "a.peg", "bm"}) {
    const bool isBitmap = QString::fromLatin1(name).toLower().endsWith(Name("bmp"));
    Open("before.tif", Tiff8(2, 1, 1, {11, 12}));
    Open(name, Bitmap8(3, 1, {1, 2, 3}, Ramp(false)));
    EXPECT_EQ(image_.ImageKind, isBitmap ? KindBmp : KindTiff) << name;
    EXPECT_EQ(FactsOf(session_.Faults).empty(), isBitmap) << name;
    if (isBitmap) {
      EXPECT_EQ(Row(0), (Pixels{1, 2, 3})) << name;
    } else {
      EXPECT_EQ(session_.Faults[0].Kind, ProblemKind::kWrongKind) << name;
      EXPECT_NE(FindNoImage(session_.Faults), nullptr) << name;
    }
    EXPECT_EQ(image_.CurrentFilePath, folder_.Path(Name(name)));
  }
}

TEST_F(PictureLoad, ZoomStartsByWidth) {
  using Case = std::tuple<int, int, float, double>;
  for (const auto& [width, level, factor, scale] :
       {Case{320, 2, 1.0F, 2.0}, Case{321, 2, 0.5F, 1.0}, Case{640, 2, 0.5F, 1.0},
        Case{641, 1, 0.5F, 0.5}}) {
    picture_.ScrollView(5, 6);
    Open("w.bmp", Bitmap8(width, 1, Pixels(static_cast<std::size_t>(width)), Ramp(false)));
    EXPECT_EQ(view_.Zoom.ZoomLevel, level) << width;
    EXPECT_EQ(view_.Zoom.ZoomFactor, factor) << width;
    EXPECT_EQ(view_.Zoom.ZoomMin, 1);
    EXPECT_EQ(view_.Zoom.ZoomMax, 15);
    EXPECT_EQ(picture_.ZoomNumerator / picture_.ZoomDenominator, scale) << width;
    EXPECT_EQ(picture_.Xpan + picture_.Ypan, 0);
  }
}

TEST_F(PictureLoad, AFailingLoadLeavesNoPictureAndKeepsTheKindItReached) {
  const Bytes bitmap = Bitmap8(4, 3, Pixels(12, 50), Ramp(false));
  Bytes huge = bitmap;
  std::fill(huge.begin() + 18, huge.begin() + 26, std::uint8_t{0x7F});
  using Case = std::tuple<const char*, Bytes, std::int16_t>;
  // A bitmap that does not begin as one keeps even the kind.
  for (const auto& [name, file, kind] :
       {Case{"cut.bmp", First(bitmap, 1), KindTiff}, Case{"cut.bmp", First(bitmap, 53), KindBmp},
        Case{"cut.bmp", First(bitmap, 1085), KindBmp}, Case{"huge.bmp", huge, KindBmp},
        Case{"other.bmp", Jpeg(QImage(8, 8, QImage::Format_Grayscale8)), KindTiff},
        Case{"broken.jpg", bitmap, KindJpeg}, Case{"broken.tif", Bytes(300, 0xFF), KindTiff},
        Case{"empty.jpg", {}, KindJpeg}}) {
    SCOPED_TRACE(name + std::to_string(file.size()));
    Open("good.tif", Tiff8(2, 2, 1, {11, 12, 21, 22}));
    Open(name, file);
    EXPECT_EQ(image_.ImageKind, kind);
    EXPECT_FALSE(image_.PaletteReversed);
    EXPECT_NE(FindNoImage(session_.Faults), nullptr);
  }
  Open("good.bmp", bitmap);
  ExpectNoFaults();
  EXPECT_THAT(Row(2), ElementsAre(50, 50, 50, 50));
}

TEST_F(PictureLoad, CodedPicturesCutAnywhereDoNoHarm) {
  QImage picture(40, 24, QImage::Format_RGB32);
  for (int i = 0; i < 40 * 24; ++i) {
    picture.setPixel(i % 40, i / 40, qRgb(i % 256, i * 7 % 256, i * 13 % 256));
  }
  for (const auto& [name, whole] : {std::pair{"cut.jpg", Jpeg(picture)},
                                    std::pair{"cut.tif", Tiff8(40, 24, 2, Pixels(2880, 77))}}) {
    const auto open = [&, file = name](const Bytes& cut) {
      Open(file, cut);
      EXPECT_EQ(image_.RowBuffers.Rows(), picture_.BufHeight());
    };
    AtEveryCut(whole, open, 160, 61);
    Open(name, whole);
    EXPECT_TRUE(session_.Faults.empty()) << name;
    EXPECT_EQ(image_.ImageWidth, 40);
  }
}

}  // namespace
}  // namespace tessa::testing
