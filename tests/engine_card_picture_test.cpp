#include <gmock/gmock.h>

#include <QGuiApplication>
#include <cmath>

#include "camera/conversion.h"
#include "core/units.h"
#include "test_files.h"
#include "view/jpeg_picture.h"

namespace tessa::testing {
namespace {

constexpr std::size_t kPixels = std::size_t{320} * 240;

QString Degrees(const char* number, const char* unit) {
  return QString::fromLatin1(number) + QStringLiteral(" \u00B0") + QString::fromLatin1(unit);
}

/// Pixel i has (i % 400) / 10 - 10 degrees: -10.0 to 29.9.
SitFields Waves() {
  SitFields fields;
  fields.Offset = -10.0;
  fields.Gain = 0.1015625;  // No rounding in the file.
  fields.ScaleCenter = 12.5;
  fields.ScaleStep = 2.25;
  for (std::size_t i = 0; i < kPixels; ++i) {
    fields.Counts.push_back(static_cast<std::int16_t>(i % 400));
  }
  fields.Memo = std::string("Boi\0ler", 7);
  return fields;
}

/// A photograph whose columns tell where they are, and its last one that it must not be seen.
Bytes Photograph(int width = 640, int height = 480) {
  QImage picture(width, height, QImage::Format_RGB888);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      picture.setPixelColor(x, y, QColor(x * 255 / width, y * 255 / height, 60));
    }
  }
  return EncodeJpeg(picture, 95);
}

SitFields WithPhotograph(SitFields fields, char version = 2, const Bytes& jpeg = Photograph()) {
  fields.SoundExt = {'\0', '\0', version};
  fields.Attachment = Joined(Bytes(8), jpeg);
  return fields;
}

class CardPicture : public ::testing::Test {
 protected:
  CardPicture() {
    for (std::size_t palette = 0; palette < palettes_.PaletteTable.size(); ++palette) {
      for (std::uint32_t i = 0; i < 256; ++i) {
        palettes_.PaletteTable[palette][i] =
            Rgb(static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(palette), 200);
      }
    }
  }
  void Convert(const SitFields& fields) { Load(EncodeSit(fields)); }
  void Load(const Bytes& file) {
    made_.dwnLoadThumbSIT(folder_.Write(QStringLiteral("a.sit"), file));
    EXPECT_TRUE(folder_.Names() == QStringList(QStringLiteral("a.sit"))) << "files left behind";
  }
  DownloadOptions& Options() { return made_.Options; }
  void Want(std::initializer_list<int> overlays) {
    Options().Overlay.fill(0);
    for (const int overlay : overlays) {
      Options().Overlay.at(static_cast<std::size_t>(overlay)) = 1;
    }
  }
  std::vector<std::uint8_t> Indices() const {
    EXPECT_EQ(made_.PicBuf2.BufDepth(), 8);
    return {made_.PicBuf2.Pixels().begin(), made_.PicBuf2.Pixels().end()};
  }
  void ExpectScale(const QString& low, const QString& high) const {
    EXPECT_EQ(made_.DwnScaleMinText.toStdString(), low.toStdString());
    EXPECT_EQ(made_.DwnScaleMaxText.toStdString(), high.toStdString());
  }

  TestFolder folder_;
  Strings words_;
  Palettes palettes_;
  DownloadConversion made_{words_, palettes_};

 private:
  int count_ = 1;
  std::array<char, 2> name_ = {"t"};
  std::array<char*, 2> arguments_ = {name_.data(), nullptr};
  QGuiApplication application_{count_, arguments_.data()};
};

TEST_F(CardPicture, EachScaleMapsDegreesToTheNearestIndex) {
  SitFields fields = Waves();
  const auto expectIndices = [&](double low, double high) {
    std::vector<std::uint8_t> expected;
    for (const std::int16_t count : fields.Counts) {
      const auto degrees = static_cast<float>(fields.Offset + fields.Gain * count);
      const double gain = 255.0 / (high - low);
      expected.push_back(static_cast<std::uint8_t>(
          std::nearbyint(std::clamp(gain * degrees + -gain * low, 0.0, 255.0))));
    }
    EXPECT_EQ(Indices(), expected) << low << ' ' << high;
  };
  Convert(fields);
  ExpectScale(Degrees("3.5", "C"), Degrees("21.5", "C"));
  expectIndices(3.5, 21.5);
  Options().Scale = DownloadOptions::kAutoScale;
  Options().Unit = 1;
  Convert(fields);
  ExpectScale(Degrees("14.0", "F"), Degrees("86.9", "F"));
  expectIndices(-10.0, static_cast<float>(-10.0 + 399 * fields.Gain));
  Options().Scale = DownloadOptions::kCustomScale;
  Options().MinTemp = QStringLiteral("23 \u00B0F");
  Options().MaxTemp = QStringLiteral("68,0");
  Convert(fields);
  ExpectScale(Degrees("23.0", "F"), Degrees("68.0", "F"));
  expectIndices(-5.0, 20.0);
}

TEST_F(CardPicture, AScaleWithoutWidthOrTooWideForALineGivesIndexZero) {
  Options().Scale = DownloadOptions::kCustomScale;
  for (const char* limit : {"5", "9e307"}) {
    Options().MinTemp = QString::fromLatin1(*limit == '5' ? "5" : "-9e307");
    Options().MaxTemp = QString::fromLatin1(limit);
    Convert(Waves());
    EXPECT_THAT(Indices(), ::testing::Each(0)) << limit;
  }
}

TEST_F(CardPicture, ExtremesCountBorderPixelsAndEachLimitGuardsItsOwnSide) {
  Options().Scale = DownloadOptions::kAutoScale;
  SitFields fields;
  fields.Gain = 1.0;
  fields.RangeLow = 0.0;
  fields.RangeHigh = 50.0;
  fields.Counts.assign(kPixels, 20);
  fields.Counts.front() = 5;
  fields.Counts.back() = 45;
  fields.Counts[1000] = 60;   // Too hot for the maximum; no minimum either.
  fields.Counts[2000] = -10;  // Too cold for the minimum.
  Convert(fields);
  ExpectScale(Degrees("5.0", "C"), Degrees("45.0", "C"));
  // All below the lower limit: the maximum is taken, the minimum is not.
  fields.Counts.assign(kPixels, -7);
  Convert(fields);
  ExpectScale(Degrees("9999.0", "C"), Degrees("-7.0", "C"));
}

TEST_F(CardPicture, HeaderTextsFollowTheCardsOwnRules) {
  using Case = std::array<const char*, 3>;  // Digits, time, date.
  for (const Case& test :
       {Case{"000507", "12:05:07 AM", "05/07/2000"}, Case{"120000", "12:00:00 PM", "00/00/2012"},
        Case{"131159", "1:11:59 PM", "11/59/2013"}, Case{"801231", "68:12:31 PM", "12/31/1980"},
        Case{"x\n1\x01 2", "12:1 : 2 AM", "1 / 2/20x "}}) {
    SitFields fields = Waves();
    fields.TimeText = fields.DateText = test[0];
    fields.EmissivityX100 = -3;
    Convert(fields);
    EXPECT_EQ(made_.DwnTimeText.toStdString(), test[1]);
    EXPECT_EQ(made_.DwnDateText.toStdString(), test[2]);
    EXPECT_EQ(made_.DwnEmissivityText.toStdString(), "-0.03");
    EXPECT_EQ(made_.DwnMemoText.toStdString(), "Memo : Boiler");
  }
}

TEST_F(CardPicture, AnUnreadableFileKeepsTheHeaderBeforeAndACutOneWhatItHas) {
  Options().Scale = DownloadOptions::kAutoScale;
  Convert(Waves());
  made_.dwnLoadThumbSIT(folder_.Path(QStringLiteral("missing.sit")));
  EXPECT_EQ(made_.DwnMemoText.toStdString(), "Memo : Boiler");
  ExpectScale(Degrees("-10.0", "C"), Degrees("-10.0", "C"));
  EXPECT_THAT(Indices(), ::testing::Each(0));
  EXPECT_NE(FindNoImage(made_.Faults), nullptr);
  // Behind the end of the file every count is 0.
  Load(First(EncodeSit(Waves()), 1024 + 2 * 320));
  ExpectScale(Degrees("-10.0", "C"), Degrees("22.4", "C"));
  EXPECT_EQ(Indices()[319], 255);
  EXPECT_EQ(Indices()[320], 0);
  EXPECT_EQ(made_.Faults.size(), 1U);
}

TEST_F(CardPicture, ThePhotographLiesWhereTheVersionSaysAndOnlyAJpegCounts) {
  Want({DownloadOptions::kVisible});
  const Bytes jpeg = Photograph();
  const auto expectVisible = [&](const SitFields& fields, bool there) {
    Convert(fields);
    EXPECT_EQ(made_.HasVisibleImage, there);
    EXPECT_EQ(made_.PicBuf2.BufWidth(), there ? 320 + 5 + 320 : 320);
  };
  SitFields fields = WithPhotograph(Waves());
  expectVisible(fields, true);
  fields.SoundExt[2] = 3;
  expectVisible(fields, false);  // Position 9 lies in the header.
  const Bytes sound(100, 7);
  fields.Attachment = Joined(Joined(Bytes{0, 2, 0x62, 0x64, 0, 0, 0, 0}, sound), jpeg);
  expectVisible(fields, true);
  EXPECT_TRUE(made_.Faults.empty());
  expectVisible(WithPhotograph(Waves(), 1), false);
  expectVisible(WithPhotograph(Waves(), 2, Bytes(50, 9)), false);
  // A marker and nothing that follows: a black field, and the file's fault is told.
  expectVisible(WithPhotograph(Waves(), 2, {0xFF, 0xD8, 0xFF, 0}), true);
  EXPECT_EQ(made_.PicBuf2.ToImage().pixel(400, 100), qRgb(0, 0, 0));
  EXPECT_EQ(made_.Faults.size(), 1U);
}

/// Draws a text alone and compares its place in the picture, if it has to stand there.
void ExpectText(const QImage& picture, int left, double top, const char* text, int width = 0) {
  const QSize size = MeasureText(QString::fromUtf8(text));
  Picbuf alone;
  alone.CreateBuffer(kWhite, size.height(), width > 0 ? width : size.width(), 24);
  alone.SelLeft = alone.SelTop = 0;
  alone.SelWidth = alone.BufWidth();
  alone.SelHeight = alone.BufHeight();
  alone.TextAlign = width > 0 ? 2 : 1;
  alone.Text = QString::fromUtf8(text);
  alone.DrawSelText();
  // A tick may reach into the first column.
  const QRect place =
      QRect(left + 1, static_cast<int>(std::nearbyint(top)), alone.BufWidth() - 1, size.height()) &
      picture.rect();
  EXPECT_EQ(picture.copy(place).convertToFormat(QImage::Format_RGB32),
            alone.ViewPicture()
                .copy(QRect(QPoint(1, 0), place.size()))
                .convertToFormat(QImage::Format_RGB32))
      << text;
}

class CardDrawing : public CardPicture {
 protected:
  CardDrawing() {
    Options().PaletteIndex = 3;
    Options().Scale = DownloadOptions::kCustomScale;
    Options().MinTemp = QStringLiteral("-11");
    Options().MaxTemp = QStringLiteral("20");
    Options().PaletteBar = 1;
  }
  QRgb Coloured(std::size_t index) const {
    const Colour colour = palettes_.PaletteTable[3].at(index);
    return qRgb(RedOf(colour), GreenOf(colour), BlueOf(colour));
  }
  const int textHeight_ = MeasureText(QStringLiteral("20.0 ")).height();
};

TEST_F(CardDrawing, TheBarStandsWhereTheHeightOfATextPutsIt) {
  Options().PaletteBar = 0;
  Convert(Waves());
  const std::size_t index = Indices()[100 * 320 + 200];
  Options().PaletteBar = 1;
  Convert(Waves());
  const QImage picture = made_.PicBuf2.ViewPicture();
  EXPECT_EQ(picture.size(), QSize(320 + 25 + MeasureText(QStringLiteral("-11.0 ")).width(), 240));
  EXPECT_EQ(picture.pixel(200, 100), Coloured(index));
  const auto pixel = [&](int x, double y) {
    return picture.pixel(x, static_cast<int>(std::nearbyint(y)));
  };
  const QRgb black = qRgb(0, 0, 0);
  const QRgb white = qRgb(255, 255, 255);
  const double top = textHeight_ / 2.0 - 2;
  const double height = std::nearbyint(240 - textHeight_ - textHeight_ / 2.0);
  // The frame, the colours in it, and nothing between the picture and them.
  EXPECT_EQ(pixel(323, 120), white);
  EXPECT_EQ(pixel(324, top - 1), black);
  EXPECT_EQ(pixel(339, std::nearbyint(top - 1) + height - 3), black);
  for (const int row : {2, 60, 150}) {
    const auto shade = static_cast<std::size_t>(255 - row * 256 / static_cast<int>(height - 2));
    EXPECT_EQ(pixel(325, std::nearbyint(top) + row), Coloured(shade)) << row;
  }
  // A tick and a number at each of nine heights.
  const int middle = static_cast<int>(std::nearbyint(height / 2.0 + top - 1));
  const int bottom = static_cast<int>(height + std::nearbyint(top)) - 3;
  const std::array labels = {"-11.0 ", "-7.1 ", "-3.3 ", "0.6 ", "4.5 ",
                             "8.4 ",   "12.3 ", "16.1 ", "20.0 "};
  for (int i = 0; i < 9; ++i) {
    const double y =
        i <= 4 ? bottom - i * (bottom - middle) / 4.0 : middle - (i - 4) * (middle - top) / 4.0;
    EXPECT_EQ(pixel(341, y), black) << i;
    EXPECT_EQ(pixel(341, y + 2), white) << i;
    ExpectText(picture, 345, i == 8 ? 0 : y - textHeight_ / 2.0, labels.at(i));
  }
  ExpectText(picture, 325, 240 - textHeight_ + 1, "\u00B0C", 14);
  Options().Unit = 1;
  Convert(Waves());
  ExpectText(made_.PicBuf2.ViewPicture(), 325, 240 - textHeight_ + 1, "\u00B0F", 14);
}

TEST_F(CardDrawing, ThePhotographFillsItsPlaceWithoutItsLastColumn) {
  Want({DownloadOptions::kVisible});
  for (const int hasBar : {0, 1}) {
    Options().PaletteBar = hasBar;
    const Bytes jpeg = Photograph(800, 400);
    Convert(WithPhotograph(Waves(), 2, jpeg));
    const QImage picture = made_.PicBuf2.ViewPicture();
    const int left = 320 + hasBar * (25 + MeasureText(QStringLiteral("-11.0 ")).width()) + 5;
    ASSERT_EQ(picture.size(), QSize(left + 320, 240));
    EXPECT_EQ(picture.pixel(left - 1, 120), qRgb(255, 255, 255));
    Problems faults;
    Picbuf whole;
    whole.Take(LoadJpegPicture(MemorySource(jpeg), PictureUse::kColours, faults));
    const QImage photograph = whole.ToImage();
    for (int i = 0; i < 320 * 240; ++i) {
      const QPoint at(i % 320, i / 320);
      ASSERT_EQ(picture.pixel(left + at.x(), at.y()),
                photograph.pixel(2 * at.x() * 799 / 640, 2 * at.y() * 400 / 480))
          << at.x() << ' ' << at.y();
    }
  }
}

TEST_F(CardDrawing, TheBandHoldsTheChosenFactsInTheirBlocks) {
  using Overlay = DownloadOptions;
  struct Case {
    std::initializer_list<int> Wanted;
    std::vector<const char*> Left;
    std::vector<const char*> Right;
  };
  const char* const date = "Date : 01/15/2026";
  const char* const time = "Time : 2:30:05 PM";
  for (const Case& test :
       {Case{{Overlay::kTime}, {time}, {}},
        Case{{0, 1, 2, 3, 4},
             {"Min Temp : -10.0 \u00B0C", date, "Emissivity : 0.95", "Memo : Boiler"},
             {"Max Temp : 30.5 \u00B0C", time}}}) {
    Want(test.Wanted);
    Convert(Waves());
    const QImage above = made_.PicBuf2.ViewPicture();
    made_.dwnBuildOvl(static_cast<int>(test.Left.size()), 320);
    const QImage picture = made_.PicBuf2.ViewPicture();
    EXPECT_EQ(picture.height(), 240 + textHeight_ * static_cast<int>(test.Left.size()) + 2);
    EXPECT_EQ(picture.copy(above.rect()), above.convertToFormat(picture.format()));
    int left = 320;
    for (const char* line : test.Right) {
      left = std::min(left, 320 - MeasureText(QString::fromUtf8(line)).width());
    }
    for (std::size_t i = 0; i < test.Left.size(); ++i) {
      const double top = 241.0 + static_cast<double>(i) * textHeight_;
      ExpectText(picture, 0, top, test.Left[i]);
      if (i < test.Right.size()) {
        ExpectText(picture, left, top, test.Right[i]);
      }
    }
  }
}

}  // namespace
}  // namespace tessa::testing
