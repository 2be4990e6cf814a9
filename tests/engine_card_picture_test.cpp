#include <gmock/gmock.h>

#include <QGuiApplication>
#include <cmath>
#include <thread>

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

TEST_F(CardPicture, EachScaleMapsDegreesToTheNearestIndexWithHalvesToEven) {
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
  // One index a degree, every pixel between two of them.
  fields.Offset = 0.5;
  fields.Gain = 1.0;
  Options().Unit = 0;
  Options().MinTemp.clear();
  Options().MaxTemp = QStringLiteral("255");
  Convert(fields);
  EXPECT_THAT(First(Indices(), 5), ::testing::ElementsAre(0, 2, 2, 4, 4));
}

TEST_F(CardPicture, AScaleWithoutWidthGivesIndexZeroAndOneUpsideDownOnlyItsEnds) {
  Options().Scale = DownloadOptions::kCustomScale;
  Options().MinTemp = Options().MaxTemp = QStringLiteral("5");
  Convert(Waves());
  EXPECT_THAT(Indices(), ::testing::Each(0));
  Options().MinTemp = QStringLiteral("-9e307");
  Options().MaxTemp = QStringLiteral("9e307");
  Convert(Waves());
  EXPECT_THAT(Indices(), ::testing::Each(0)) << "too wide for a line";
  // No pixel inside the limits: the search keeps where it began, which stands upside down.
  Options().Scale = DownloadOptions::kAutoScale;
  SitFields outside = Waves();
  outside.RangeLow = 300.0;
  outside.RangeHigh = -300.0;
  Convert(outside);
  ExpectScale(Degrees("9999.0", "C"), Degrees("-9999.0", "C"));
  EXPECT_EQ(Indices()[0], 128);
  EXPECT_THAT(std::vector<float>({made_.DwnImageMin, made_.DwnImageMax}),
              ::testing::ElementsAre(9999.0F, -9999.0F));
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
       {Case{"000507", "12:05:07 AM", "05/07/2000"}, Case{"090507", "9:05:07 AM", "05/07/2009"},
        Case{"120000", "12:00:00 PM", "00/00/2012"}, Case{"131159", "1:11:59 PM", "11/59/2013"},
        Case{"791231", "67:12:31 PM", "12/31/2079"}, Case{"801231", "68:12:31 PM", "12/31/1980"},
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
  fields.Attachment[0] = 0xFF;
  expectVisible(fields, false);  // Far behind the end.
  expectVisible(WithPhotograph(Waves(), 1), false);
  expectVisible(WithPhotograph(Waves(), 2, Bytes(50, 9)), false);
  Options().Overlay.fill(2);  // Only 1 is a tick.
  expectVisible(WithPhotograph(Waves()), false);
  // A marker and nothing that follows: a black field, and the file's fault is told.
  Want({DownloadOptions::kVisible});
  expectVisible(WithPhotograph(Waves(), 2, {0xFF, 0xD8, 0xFF, 0}), true);
  EXPECT_EQ(made_.PicBuf2.ToImage().pixel(400, 100), qRgb(0, 0, 0));
  EXPECT_EQ(made_.Faults.size(), 1U);
}

Colour FromQt(QRgb pixel) {
  return static_cast<Colour>(qRed(pixel) | qGreen(pixel) << 8 | qBlue(pixel) << 16);
}

/// The picture drawn anew, from the height of a text alone.
class Drawn {
 public:
  Drawn(int width, int height) : cells_(static_cast<std::size_t>(width), 0xFFFFFF) {
    canvas_.CreateBuffer(kWhite, height, width, 24);
  }
  /// All pixels of a rectangle by a function of column and row in it.
  template <typename ColourOf>
  void Fill(int left, double top, int width, int height, ColourOf colour) {
    for (int y = 0; y < height; ++y) {
      const int row = Even(top) + y;
      canvas_.GetRow(cells_, row);
      for (int x = 0; x < width; ++x) {
        cells_.at(static_cast<std::size_t>(left + x)) = static_cast<std::int32_t>(colour(x, y));
      }
      canvas_.PutRow(cells_, row);
    }
  }
  void Text(int left, double top, const QString& text, int width = 0) {
    canvas_.SelLeft = left;
    canvas_.SelTop = Even(top);
    canvas_.SelWidth = width > 0 ? width : canvas_.BufWidth() - left;
    canvas_.SelHeight = TextHeight();
    canvas_.TextAlign = width > 0 ? 2 : 1;
    canvas_.Text = text;
    canvas_.DrawSelText();
  }
  void Block(int left, const QStringList& lines) {
    for (int i = 0; i < lines.size(); ++i) {
      Text(left, 241 + i * TextHeight(), lines[i]);
    }
  }
  void Bar(const ColourTable& palette, const QStringList& labels, const QString& unit) {
    const int th = TextHeight();
    const int height = Even(240 - th - th / 2.0);
    const double top = th / 2.0 - 2;
    const auto black = [](int, int) { return Colour{0}; };
    Fill(325, top, 15, height - 2, [&](int, int y) {
      return palette.at(255 - static_cast<std::size_t>(y * 256 / (height - 2)));
    });
    Fill(324, top - 1, 16, 1, black);
    Fill(324, Even(top - 1) + height - 3, 16, 1, black);
    Fill(324, top - 1, 1, height - 2, black);
    Fill(339, top - 1, 1, height - 2, black);
    const int middle = Even(height / 2.0 + top - 1);
    const int bottom = height - 1 + Even(top) - 2;
    for (int i = 0; i < 9; ++i) {
      const double y =
          i <= 4 ? bottom - i * (bottom - middle) / 4.0 : middle - (i - 4) * (middle - top) / 4.0;
      Fill(340, y, 6, 1, black);
      Text(345, i == 8 ? 0 : y - th / 2.0, labels[i]);
    }
    Text(325, 240 - th + 1, unit, 14);
  }
  void Photograph(int left, const Bytes& jpeg) {
    Problems faults;
    Picbuf whole;
    whole.Take(LoadJpegPicture(MemorySource(jpeg), PictureUse::kColours, faults));
    const QImage photo = whole.ToImage();
    Fill(left, 0, 320, 240, [&](int x, int y) {
      return FromQt(photo.pixel(2 * x * (photo.width() - 1) / 640, 2 * y * photo.height() / 480));
    });
  }
  /// The first pixel that differs is told.
  void ExpectSame(const Picbuf& picture) const {
    ASSERT_EQ(picture.BufWidth(), canvas_.BufWidth());
    ASSERT_EQ(picture.BufHeight(), canvas_.BufHeight());
    const auto differs = std::ranges::mismatch(canvas_.Pixels(), picture.Pixels());
    const auto offset = static_cast<std::size_t>(differs.in1 - canvas_.Pixels().begin());
    EXPECT_EQ(offset, canvas_.Pixels().size())
        << "column " << offset % canvas_.Stride() / 3 << ", row " << offset / canvas_.Stride();
  }
  static int Even(double value) { return static_cast<int>(std::nearbyint(value)); }
  static int TextHeight() { return MeasureText(QStringLiteral("20.0 ")).height(); }

 private:
  Picbuf canvas_;
  std::vector<std::int32_t> cells_;
};

QStringList Lines(const char* text) {
  return QString::fromUtf8(text).split(QLatin1Char('|'), Qt::SkipEmptyParts);
}

TEST_F(CardPicture, EveryPixelStandsWhereTheHeightOfATextPutsIt) {
  const Bytes jpeg = Photograph(800, 400);
  const SitFields fields = WithPhotograph(Waves(), 2, jpeg);
  Options().PaletteIndex = 3;
  Options().Scale = DownloadOptions::kCustomScale;
  Options().MinTemp = QStringLiteral("-11");
  Options().MaxTemp = QStringLiteral("20");
  const QStringList labels =
      Lines("-11.0 |-7.1 |-3.3 |0.6 |4.5 |8.4 |12.3 |16.1 |20.0 ");  // Halves away from zero.
  const int labelWidth = MeasureText(labels[0]).width();
  for (const int shown : {1, 2, 3}) {
    Options().Unit = shown == 3 ? 1 : 0;
    Options().PaletteBar = 0;
    Want({});
    Convert(fields);
    const std::vector<std::uint8_t> indices = Indices();
    const int bar = (shown & 1) != 0 ? 25 + labelWidth : 0;
    const int photo = (shown & 2) != 0 ? 325 : 0;
    Drawn expected(320 + bar + photo, 240);
    const ColourTable& palette = palettes_.PaletteTable[3];
    expected.Fill(0, 0, 320, 240, [&](int x, int y) {
      return palette.at(indices.at(static_cast<std::size_t>(y * 320 + x)));
    });
    if (bar > 0) {
      Options().PaletteBar = 1;
      expected.Bar(palette, labels,
                   shown == 3 ? QStringLiteral("\u00B0F") : QStringLiteral("\u00B0C"));
    }
    if (photo > 0) {
      Want({DownloadOptions::kVisible});
      expected.Photograph(320 + bar + 5, jpeg);
    }
    Convert(fields);
    SCOPED_TRACE(shown);
    expected.ExpectSame(made_.PicBuf2);
  }
}

TEST_F(CardPicture, TheBandHoldsTheChosenFactsInTheirBlocks) {
  using Overlay = DownloadOptions;
  struct Case {
    std::initializer_list<int> Wanted;
    int LineCount;
    const char* Left;
    const char* Right;
  };
  Options().PaletteBar = 1;
  for (const Case& test :
       {Case{{Overlay::kTime}, 1, "Time : 2:30:05 PM", ""},
        Case{{Overlay::kExtremes}, 1, "Min Temp : -10.0 \u00B0C", "Max Temp : 30.5 \u00B0C"},
        Case{{Overlay::kDate, Overlay::kTime}, 1, "Date : 01/15/2026", "Time : 2:30:05 PM"},
        Case{{Overlay::kEmissivity, Overlay::kDate}, 2, "Date : 01/15/2026|Emissivity : 0.95", ""},
        Case{{0, 1, 2, 3, 4},
             4,
             "Min Temp : -10.0 \u00B0C|Date : 01/15/2026|Emissivity : 0.95|Memo : Boiler",
             "Max Temp : 30.5 \u00B0C|Time : 2:30:05 PM"}}) {
    Want(test.Wanted);
    Convert(Waves());
    const QImage above = made_.PicBuf2.ViewPicture();
    made_.dwnBuildOvl(test.LineCount, 320);
    const int th = Drawn::TextHeight();
    Drawn expected(above.width(), 240 + th * test.LineCount + 2);
    expected.Fill(0, 0, above.width(), 240,
                  [&](int x, int y) { return FromQt(above.pixel(x, y)); });
    int left = 320;
    for (const QString& line : Lines(test.Right)) {
      left = std::min(left, 320 - MeasureText(line).width());
    }
    expected.Block(0, Lines(test.Left));
    expected.Block(left, Lines(test.Right));
    SCOPED_TRACE(test.Left);
    expected.ExpectSame(made_.PicBuf2);
  }
}

TEST_F(CardPicture, SeveralThreadsMakeTheSamePictures) {
  const QString path = folder_.Write(QStringLiteral("a.sit"), EncodeSit(WithPhotograph(Waves())));
  const auto make = [&](Bytes& pixels) {
    DownloadConversion conversion(words_, palettes_);
    conversion.Options.PaletteBar = 1;
    conversion.Options.Overlay.fill(1);
    for (int i = 0; i < 5; ++i) {
      conversion.dwnLoadThumbSIT(path);
      conversion.dwnBuildOvl(4, 320);
    }
    pixels.assign(conversion.PicBuf2.Pixels().begin(), conversion.PicBuf2.Pixels().end());
  };
  std::array<Bytes, 4> made;
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 1; i < made.size(); ++i) {
      threads.emplace_back(make, std::ref(made.at(i)));
    }
    make(made[0]);
  }
  EXPECT_THAT(made, ::testing::Each(made[0]));
}

}  // namespace
}  // namespace tessa::testing
