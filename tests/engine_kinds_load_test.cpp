#include <gmock/gmock.h>

#include <cmath>

#include "core/load_image.h"
#include "formats/bin_raster.h"
#include "formats/tmp_image.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

using Indices = std::vector<std::uint8_t>;

/// -10 degrees and a 64th more for each column and 7 for each row; 60 at one place, above the
/// calibrated range. The stored scale from -10 to 15.5 has ten indices a degree.
TmpFields Tmp() {
  TmpFields fields;
  fields.RangeHigh = 50.0;
  fields.Offset = -20.0;
  fields.Gain = 0.015625;
  fields.ScaleCenter = 2.75;
  fields.ScaleStep = 3.1875;
  fields.EmissivityX100 = 87;
  fields.DateText = "981207";
  fields.TimeText = "070809";
  fields.Comment = std::string("PUMP\0 \xB0", 7);
  fields.Memo = "EAST";
  for (int i = 0; i < 255 * 223; ++i) {
    fields.Counts.push_back(static_cast<std::int16_t>(640 + i % 255 + 7 * (i / 255)));
  }
  fields.Counts[50 * 255 + 100] = 5120;
  return fields;
}

/// A quarter of a degree for each raw step around 21.5; the stored scale from 13.5 to 29.5.
LegacyFields Legacy() {
  LegacyFields fields;
  fields.OffsetText = "  21.5";
  fields.GainCode = '7';
  fields.EmissivityText = "0.83";
  fields.StampText = "950630235901";
  fields.Comment = "OLD";
  fields.Memo = "M";
  for (int i = 0; i < 255 * 207; ++i) {
    fields.Values.push_back(static_cast<std::uint8_t>(3 * (i % 255) + 7 * (i / 255)));
  }
  return fields;
}

/// A tenth of a degree for each column, less one for each row, around 0.
Bytes Bin() {
  std::vector<std::int16_t> tenths;
  for (int i = 0; i < 320 * 240; ++i) {
    tenths.push_back(static_cast<std::int16_t>(2732 + i % 320 - i / 320));
  }
  return EncodeBin(tenths);
}

ColourTable Ramp(bool reversed) {
  ColourTable table{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    table[reversed ? 255 - i : i] = i | i << 8 | i << 16;
  }
  return table;
}

/// 4 x 3 indices.
const Indices kPicture = {100, 110, 120, 100, 0, 51, 85, 102, 255, 254, 127, 1};

Bytes Bitmap(int lowWord, int highWord, bool reversed = false) {
  return EncodeBmp8(4, 3, kPicture, 4, Ramp(reversed), static_cast<std::int16_t>(lowWord),
                    static_cast<std::int16_t>(highWord));
}

constexpr int kMark = 28013;
/// 40 degrees at index 230, 20 at index 30: 17 at 0 and a tenth more for each index.
const Bytes kTrailer = {0, 0,    0,    0,    0,    0,    0,    0,    0,
                        0, 0x00, 0xE6, 0x00, 0x1E, 0x0C, 0x3C, 0x0B, 0x74};

Bytes Measured(int distance = 18, const Bytes& end = kTrailer, bool reversed = false) {
  Bytes file = Bitmap(kMark, distance, reversed);
  file.insert(file.end(), end.begin(), end.end());
  return file;
}

/// Notes what the view shows whenever a load reports progress.
class Watch : public Progress {
 public:
  explicit Watch(Session& session) : session_(session) {}
  void Advance() override {
    Percent.push_back(session_.View.LoadProgress);
    Marks.emplace_back(session_.Range.MarkMinimum(), session_.Range.MarkMaximum());
  }
  std::vector<double> Percent;
  std::vector<std::pair<double, double>> Marks;

 private:
  Session& session_;
};

class KindsLoad : public ::testing::Test {
 protected:
  KindsLoad() { PrepareSession(session_); }

  void Open(const char* name, const Bytes& content) {
    OpenPath(folder_.Write(QString::fromLatin1(name), content), session_, progress_);
    EXPECT_TRUE(view_.PictureVisible && view_.HasImage);
    EXPECT_FALSE(view_.LoadProgressVisible || view_.LoadingTextVisible || image_.ImageBusy ||
                 view_.SuppressEvents || view_.BusyPointer);
    EXPECT_EQ(image_.ImageWidth, picture_.BufWidth());
    EXPECT_EQ(image_.ImageHeight, picture_.BufHeight());
  }
  void ExpectSize(int width, int height) const {
    EXPECT_EQ(image_.ImageWidth, width);
    EXPECT_EQ(image_.HeaderHeight, height);
    EXPECT_EQ(image_.TempGrid.Width(), width);
    EXPECT_EQ(image_.TempGrid.Height(), height);
    EXPECT_EQ(image_.RowBuffers.Rows(), height);
  }
  void ExpectRange(double limitMin, double limitMax, double markMin, double markMax, double low,
                   double high) const {
    EXPECT_NEAR(session_.Range.ScaleMinLimit(), limitMin, 1e-4);
    EXPECT_NEAR(session_.Range.ScaleMaxLimit(), limitMax, 1e-4);
    EXPECT_NEAR(session_.Range.MarkMinimum(), markMin, 1e-4);
    EXPECT_NEAR(session_.Range.MarkMaximum(), markMax, 1e-4);
    EXPECT_NEAR(session_.Range.RangeMinValue(), low, 1e-4);
    EXPECT_NEAR(session_.Range.RangeMaxValue(), high, 1e-4);
    EXPECT_EQ(view_.Source, RangeSource::kStored);
  }
  void ExpectTexts(const char* low, const char* high, const char* limitMin,
                   const char* limitMax) const {
    EXPECT_EQ(image_.ScaleLowText.toStdString(), low);
    EXPECT_EQ(image_.ScaleHighText.toStdString(), high);
    EXPECT_EQ(view_.RangeLowText.toStdString(), low);
    EXPECT_EQ(view_.RangeHighText.toStdString(), high);
    EXPECT_EQ(view_.LimitMinText.toStdString(), limitMin);
    EXPECT_EQ(view_.LimitMaxText.toStdString(), limitMax);
  }
  void ExpectRangeControls() const {
    EXPECT_TRUE(view_.RangeSliderVisible && view_.RangeEntryVisible && view_.AutoUpdateVisible &&
                view_.LimitBoxesVisible);
  }
  /// Row of the buffer; the row buffer is checked to hold the same.
  Indices Row(int row) {
    const auto indices = picture_.IndexRow(row);
    EXPECT_THAT(image_.RowBuffers.Row(row), ElementsAreArray(indices));
    return {indices.begin(), indices.end()};
  }
  /// What every other file must leave possible.
  void ExpectNextFileOpensNormally() {
    Open("next.tmp", EncodeTmp(Tmp()));
    EXPECT_TRUE(session_.Faults.empty() && session_.Steps.Failures().empty());
    EXPECT_EQ(image_.TempMax, 60.0F);
    EXPECT_EQ(Row(0)[254], 40);
    ExpectSize(255, 223);
    ExpectTexts("-10.0", "15.5", "-27.0", "77.0");
  }

  TestFolder folder_;
  Session session_{BuiltProgramFolder()};
  Watch progress_{session_};
  Picbuf& picture_ = session_.Buffers.Picbuf1;
  const OpenImage& image_ = session_.Image;
  const ViewState& view_ = session_.View;
};

TEST_F(KindsLoad, ATmpImageShows255OfItsColumnsInTheStoredScale) {
  Bytes file = EncodeTmp(Tmp());
  file[1024 + 255 * 2] = 0x7F;  // The dropped column is no hot spot.
  for (const bool fahrenheit : {false, true}) {
    session_.Image.DisplayUnits = fahrenheit ? 'F' : 'C';
    Open("pump.tmp", file);
    EXPECT_TRUE(session_.Faults.empty());
    ExpectSize(255, 223);
    for (int row = 0; row < 223; ++row) {
      for (int column = 0; column < 255; ++column) {
        const bool isHot = column == 100 && row == 50;
        const int steps = column + 7 * row;
        ASSERT_EQ(image_.TempGrid.At(column, row),
                  isHot ? 60.0F : -10.0F + static_cast<float>(steps) / 64.0F);
        // Ten indices a degree, ties to even, clipped.
        const double index = isHot ? 255.0 : std::min(255.0, std::nearbyint(5.0 * steps / 32.0));
        ASSERT_EQ(image_.RowBuffers.Row(row)[static_cast<std::size_t>(column)], index)
            << column << ", " << row;
      }
    }
    EXPECT_EQ(Row(0)[16], 2);  // 2.5
    EXPECT_EQ(image_.TempMin, -10.0F);
    EXPECT_EQ(image_.TempMax, 60.0F) << "neither border nor calibrated range count here";
    EXPECT_EQ(image_.ScaleMin, -10.0F);
    EXPECT_EQ(image_.ScaleMax, 15.5F);
    // Half the span is 35, half of that truncated 17.
    ExpectRange(-27.0, 77.0, -10.0, 60.0, -10.0, 15.5);
    if (fahrenheit) {
      ExpectTexts("14.0", "59.9", "-16.6", "170.6");
    } else {
      ExpectTexts("-10.0", "15.5", "-27.0", "77.0");
    }
    EXPECT_EQ(view_.StatusPanel[5].toStdString(),
              fahrenheit ? "Range: -40.0 to 122.0" : "Range: -40.0 to 50.0");
  }
}

TEST_F(KindsLoad, ATmpImageBringsItsHeaderIntoRecordAndPanels) {
  Open("pump.tmp", EncodeTmp(Tmp()));
  EXPECT_EQ(image_.ImageKind, KindTmp);
  EXPECT_EQ(image_.PreviousKindIndex, 6);
  EXPECT_TRUE(image_.HasTemperature);
  EXPECT_FALSE(image_.IsLegacy8Bit);
  EXPECT_EQ(image_.PixelGain, 0.015625F);
  EXPECT_EQ(image_.PixelOffset, -20.0F);
  EXPECT_EQ(image_.CalRangeMax, 50.0F);
  EXPECT_EQ(image_.ImageDate.toStdString(), "12/07/1998");
  EXPECT_EQ(image_.ImageTime.toStdString(), "7:08:09 AM");
  EXPECT_EQ(view_.Comment.toStdString(), "PUMP \u00B0");
  EXPECT_EQ(view_.Memo.toStdString(), "EAST");
  EXPECT_EQ(view_.StatusPanel[4].toStdString(), "Emissivity: 0.87");
  EXPECT_EQ(view_.LoadButtonTip.toStdString(), "Load Image TMP Images");
  EXPECT_TRUE(view_.RangeToggleVisible);
  ExpectRangeControls();
}

TEST_F(KindsLoad, AnEightBitTmpImageIsMeasuredFromItsTexts) {
  Open("old.tmp", EncodeLegacyTmp(Legacy()));
  EXPECT_TRUE(session_.Faults.empty());
  EXPECT_TRUE(image_.IsLegacy8Bit && image_.HasTemperature);
  EXPECT_EQ(image_.ImageKind, KindTmp);
  ExpectSize(255, 207);
  for (int row = 0; row < 207; ++row) {
    for (int column = 0; column < 255; ++column) {
      const int value = (3 * column + 7 * row) % 256;
      const float degrees = static_cast<float>(value - 128) / 4.0F + 21.5F;
      ASSERT_EQ(image_.TempGrid.At(column, row), degrees) << column << ", " << row;
      const double index = std::nearbyint(15.9375 * static_cast<double>(degrees) - 215.15625);
      ASSERT_EQ(image_.RowBuffers.Row(row)[static_cast<std::size_t>(column)],
                std::clamp(index, 0.0, 255.0));
    }
  }
  EXPECT_EQ(image_.TempMin, -10.5F);
  EXPECT_EQ(image_.TempMax, 53.25F);
  EXPECT_EQ(image_.ScaleMin, 13.5F);
  EXPECT_EQ(image_.ScaleMax, 29.5F);
  ExpectRange(-26.5, 69.25, -10.5, 53.25, 13.5, 29.5);
  ExpectTexts("13.5", "29.5", "-26.5", "69.3");
  EXPECT_EQ(view_.StatusPanel[4].toStdString(), "Emissivity: 0.83");
  EXPECT_EQ(view_.StatusPanel[5].toStdString(), "Range: -40.0 to 120.0");
  EXPECT_EQ(image_.ImageDate.toStdString(), "6/30/1995");
  EXPECT_EQ(image_.ImageTime.toStdString(), "11:59:01 PM");
  EXPECT_EQ(view_.Comment.toStdString() + view_.Memo.toStdString(), "OLDM");

  LegacyFields coarse = Legacy();
  coarse.GainCode = 'A';
  coarse.OffsetText = "-7.5x9";
  coarse.Values = {128, 0, 255};
  Open("coarse.tmp", EncodeLegacyTmp(coarse));
  EXPECT_EQ(image_.TempGrid.At(0, 0), -7.5F);
  EXPECT_EQ(image_.TempGrid.At(1, 0), -3207.5F);
  EXPECT_EQ(image_.TempGrid.At(2, 0), 3167.5F);
  EXPECT_EQ(image_.ScaleMax, 792.5F);
  coarse.GainCode = '1';
  Open("fine.tmp", EncodeLegacyTmp(coarse));
  EXPECT_FLOAT_EQ(image_.TempGrid.At(2, 0), -7.5F + 1.5875F);
  ExpectNextFileOpensNormally();
  EXPECT_FALSE(image_.IsLegacy8Bit);
}

TEST_F(KindsLoad, TheLengthOfATmpFileDecidesAboutItsKind) {
  Bytes legacy = EncodeLegacyTmp(Legacy());
  legacy.resize(99999);
  Open("a.tmp", legacy);
  EXPECT_TRUE(image_.IsLegacy8Bit);
  ExpectSize(255, 207);
  Bytes sixteen = EncodeTmp(Tmp());
  sixteen.resize(100000);
  Open("b.tmp", sixteen);
  EXPECT_FALSE(image_.IsLegacy8Bit);
  ExpectSize(255, 223);
  ASSERT_EQ(session_.Faults.size(), 1U);
  EXPECT_EQ(session_.Faults[0].Kind, ProblemKind::kTruncated);
  EXPECT_EQ(session_.Faults[0].Offset, 100000U);
  // (100000 - 1024) / 512 = 193.3 rows; what is missing is neither cold nor hot.
  EXPECT_EQ(image_.TempGrid.At(0, 193), -10.0F + 7.0F * 193.0F / 64.0F);
  EXPECT_EQ(image_.TempGrid.At(0, 194), 0.0F);
  EXPECT_EQ(image_.TempMin, -10.0F);
  sixteen.resize(99999);
  Open("c.tmp", sixteen);
  EXPECT_TRUE(image_.IsLegacy8Bit) << "a cut 16-bit file is read as the other kind";
}

TEST_F(KindsLoad, ABinRasterIsOpenedLikeASitImageUnderATextWithTwoDots) {
  Open("before.tmp", EncodeTmp(Tmp()));
  Open("Plain.bin", Bin());
  EXPECT_TRUE(session_.Faults.empty());
  EXPECT_EQ(image_.ImageKind, KindSit);
  EXPECT_EQ(image_.PreviousKindIndex, 4);
  EXPECT_TRUE(image_.HasTemperature && view_.RangeToggleVisible);
  const QString path = folder_.Path(QStringLiteral("Plain.bin"));
  EXPECT_EQ(image_.CurrentFilePath, path);
  EXPECT_EQ(image_.CurrentFile, path.toUpper().chopped(3) + QStringLiteral(".SIT"));
  EXPECT_TRUE(image_.CurrentFile.endsWith(QStringLiteral("/PLAIN..SIT")));
  EXPECT_EQ(view_.StatusPanel[6], path.toUpper());
  EXPECT_TRUE(view_.StatusPanel[4].isEmpty() && view_.StatusPanel[5].isEmpty());
  EXPECT_TRUE(view_.Comment.isEmpty() && view_.Memo.isEmpty() && image_.SoundFile.isEmpty());
  EXPECT_TRUE(image_.ImageDate.isEmpty() && image_.ImageTime.isEmpty());
  ExpectSize(320, 240);
  for (int row = 0; row < 240; ++row) {
    for (int column = 0; column < 320; ++column) {
      ASSERT_NEAR(image_.TempGrid.At(column, row), (column - row) / 10.0, 1e-5);
    }
  }
  EXPECT_FLOAT_EQ(image_.SitTempMin, -23.9F);
  EXPECT_FLOAT_EQ(image_.SitScaleMin, -23.9F);
  EXPECT_FLOAT_EQ(image_.SitTempMax, 31.9F);
  EXPECT_FLOAT_EQ(image_.SitScaleMax, 31.9F);
  EXPECT_EQ(image_.CalRangeMin, -40.0F);
  EXPECT_EQ(image_.CalRangeMax, 120.0F);
  EXPECT_EQ(image_.TempMax, 60.0F) << "the plain fields are the former image's";
  // 255 / 55.8 indices a degree over all columns.
  EXPECT_EQ(Row(239)[0], 0);
  EXPECT_EQ(Row(0)[319], 255);
  EXPECT_EQ(Row(0)[0], 109);
  EXPECT_EQ(Row(239)[319], 146);
  EXPECT_EQ(image_.ScaleLowText.toStdString(), "-23.9");
  EXPECT_EQ(image_.ScaleHighText.toStdString(), "31.9");
  // The range control is the one control that such a load does not set up.
  ExpectRange(-27.0, 77.0, -10.0, 60.0, -10.0, 15.5);
  EXPECT_TRUE(view_.RangeSliderVisible && view_.RangeEntryVisible);
  EXPECT_FALSE(view_.AutoUpdateVisible || view_.LimitBoxesVisible);
  ExpectNextFileOpensNormally();
}

TEST_F(KindsLoad, ATrailerTurnsTheIndicesOfABitmapIntoDegrees) {
  for (const bool fahrenheit : {false, true}) {
    session_.Image.DisplayUnits = fahrenheit ? 'F' : 'C';
    for (const bool reversed : {false, true}) {
      // Drawn from its temperatures at the end, the picture has the file's indices either way.
      Open("m.bmp", Measured(18, kTrailer, reversed));
      EXPECT_TRUE(session_.Faults.empty() && session_.Steps.Failures().empty());
      EXPECT_EQ(image_.PaletteReversed, reversed);
      EXPECT_EQ(image_.ImageKind, KindBmp);
      EXPECT_TRUE(image_.HasTemperature && view_.RangeToggleVisible);
      ExpectSize(4, 3);
      for (int i = 0; i < 12; ++i) {
        const int index = kPicture[static_cast<std::size_t>(i)];
        EXPECT_FLOAT_EQ(image_.TempGrid.At(i % 4, i / 4), 17.0F + static_cast<float>(index) / 10);
        EXPECT_EQ(Row(i / 4)[static_cast<std::size_t>(i % 4)], index);
      }
      EXPECT_EQ(image_.PaletteIndexLow, 30);
      EXPECT_EQ(image_.PaletteIndexHigh, 230);
      EXPECT_FLOAT_EQ(image_.PaletteTempLow, 20.0F);
      EXPECT_FLOAT_EQ(image_.PaletteTempHigh, 40.0F);
      EXPECT_FLOAT_EQ(image_.PaletteTempAt0, 17.0F);
      EXPECT_FLOAT_EQ(image_.ScaleMax, 42.5F);
      EXPECT_FLOAT_EQ(image_.TempMin, 17.0F);
      EXPECT_FLOAT_EQ(image_.TempMax, 42.5F);
      // Half of 25.5 rounded is 13, half of that truncated 6.
      ExpectRange(11.0, 48.5, 17.0, 42.5, 17.0, 42.5);
      if (fahrenheit) {
        ExpectTexts("62.6", "108.5", "51.8", "119.3");
      } else {
        ExpectTexts("17.0", "42.5", "11.0", "48.5");
      }
      ExpectRangeControls();
      EXPECT_TRUE(view_.StatusPanel[5].isEmpty() && view_.Comment.isEmpty());
    }
  }
  Open("plain.bmp", Bitmap(0, 0));
  EXPECT_FALSE(image_.HasTemperature || view_.RangeToggleVisible || view_.RangeEntryVisible);
  EXPECT_EQ(image_.ScaleHighText.toStdString(), "255");
}

TEST_F(KindsLoad, TheRangeControlGrowsWithEveryRowOfARadiometricBitmap) {
  Open("m.bmp", Measured());
  // At the start of the second and the third row: 27 to 29 degrees, then 17 to 29.
  ASSERT_EQ(progress_.Marks.size(), 3U);
  EXPECT_NEAR(progress_.Marks[1].first, 27.0, 1e-4);
  EXPECT_NEAR(progress_.Marks[1].second, 29.0, 1e-4);
  EXPECT_NEAR(progress_.Marks[2].first, 17.0, 1e-4);
  EXPECT_NEAR(progress_.Marks[2].second, 29.0, 1e-4);
}

TEST_F(KindsLoad, ATrailerLiesWhereTheHeaderSaysAndItsWordsAreUnsigned) {
  Bytes behind = kTrailer;
  behind.resize(40, 0x55);
  Open("far.bmp", Measured(40, behind));
  EXPECT_TRUE(session_.Faults.empty());
  EXPECT_FLOAT_EQ(image_.PaletteTempAt255, 42.5F);

  Bytes hot = kTrailer;
  hot[14] = hot[15] = 0xFF;
  Open("hot.bmp", Measured(18, hot));
  EXPECT_FLOAT_EQ(image_.PaletteTempHigh, 6280.3F);
  EXPECT_FLOAT_EQ(image_.TempGrid.At(0, 1), 20.0F - 6260.3F * 30 / 200);
}

TEST_F(KindsLoad, ATrailerWithoutALineLeavesTheFormerOneAndTheGridAtZero) {
  Bytes equal = kTrailer;
  equal[11] = equal[13] = 77;
  const std::pair<const char*, Bytes> cases[] = {{"ReservedHigh", Measured(-18)},
                                                 {"ReservedHigh", Measured(32767)},
                                                 {"ReservedHigh", Measured(0)},
                                                 {"IndexHigh", Measured(18, equal)}};
  for (const auto& [field, file] : cases) {
    Open("good.bmp", Measured());
    Open("bad.bmp", file);
    ASSERT_EQ(session_.Faults.size(), 1U);
    EXPECT_EQ(session_.Faults[0].Kind, ProblemKind::kBadValue);
    EXPECT_EQ(session_.Faults[0].Field, field);
    // Behind 54 + 1024 + 12 bytes of bitmap the word stands at byte 10 of the trailer.
    EXPECT_EQ(session_.Faults[0].Offset, field[0] == 'I' ? 1100U : 8U);
    EXPECT_FALSE(session_.Faults[0].NoImage);
    EXPECT_TRUE(image_.HasTemperature);
    EXPECT_FLOAT_EQ(image_.PaletteTempAt0, 17.0F);
    EXPECT_FLOAT_EQ(image_.PaletteTempAt255, 42.5F);
    EXPECT_THAT(image_.TempGrid.Cells(), Each(0.0F));
    EXPECT_EQ(image_.ScaleLowText.toStdString(), "17.0");
    EXPECT_THAT(Row(2), Each(0));
  }
  ExpectNextFileOpensNormally();
}

TEST_F(KindsLoad, ATxiImageIsLinearBetweenTheLimitsInItsHeader) {
  Open("before.tmp", EncodeTmp(Tmp()));
  for (const bool fahrenheit : {false, true}) {
    session_.Image.DisplayUnits = fahrenheit ? 'F' : 'C';
    Open("a.txi", Bitmap(-200, 1000));
    EXPECT_TRUE(session_.Faults.empty() && session_.Steps.Failures().empty());
    EXPECT_EQ(image_.ImageKind, KindTxi);
    EXPECT_EQ(image_.PreviousKindIndex, 5);
    EXPECT_TRUE(image_.HasTemperature);
    EXPECT_FALSE(view_.RangeToggleVisible);
    ExpectSize(4, 3);
    EXPECT_EQ(image_.TempGrid.At(0, 1), -20.0F);
    EXPECT_EQ(image_.TempGrid.At(1, 1), 4.0F);
    EXPECT_EQ(image_.TempGrid.At(2, 1), 20.0F);
    EXPECT_EQ(image_.TempGrid.At(3, 1), 28.0F);
    EXPECT_EQ(image_.TempGrid.At(0, 2), 100.0F);
    EXPECT_FLOAT_EQ(image_.TempGrid.At(3, 2), 120.0F / 255.0F - 20.0F);
    EXPECT_THAT(Row(1), ElementsAre(0, 51, 85, 102));
    EXPECT_EQ(image_.TempMin, -20.0F);
    EXPECT_EQ(image_.ScaleMin, -20.0F);
    EXPECT_EQ(image_.TempMax, 100.0F);
    EXPECT_EQ(image_.ScaleMax, 100.0F);
    ExpectRange(-50.0, 130.0, -20.0, 100.0, -20.0, 100.0);
    if (fahrenheit) {
      ExpectTexts("-4.0", "212.0", "-58.0", "266.0");
    } else {
      ExpectTexts("-20.0", "100.0", "-50.0", "130.0");
    }
    ExpectRangeControls();
    EXPECT_TRUE(view_.StatusPanel[4].isEmpty() && view_.StatusPanel[5].isEmpty());
    EXPECT_TRUE(view_.Comment.isEmpty() && image_.ImageDate.isEmpty());
    EXPECT_EQ(view_.LoadButtonTip.toStdString(), "Load Image TXI Images");
  }
}

TEST_F(KindsLoad, ATxiImageIsMeasuredBeforeItsReversedPaletteIsUndone) {
  Open("dark.txi", Bitmap(-200, 1000, true));
  EXPECT_TRUE(image_.PaletteReversed);
  EXPECT_EQ(image_.TempGrid.At(1, 1), 4.0F);
  EXPECT_THAT(Row(1), ElementsAre(255, 204, 170, 153));
}

TEST_F(KindsLoad, FoldedLimitsOfATxiImageFollowTheirUnequalRules) {
  struct Case {
    int LowWord, HighWord;
    float Low, High;
  };
  for (const Case& c : {Case{200, -1, 20.0F, 3276.8F}, Case{-200, -100, 3296.7F, 3286.7F},
                        Case{-100, -200, -10.0F, 3296.7F}}) {
    Open("a.txi", Bitmap(c.LowWord, c.HighWord));
    EXPECT_FLOAT_EQ(image_.ScaleMin, c.Low);
    EXPECT_FLOAT_EQ(image_.ScaleMax, c.High);
    EXPECT_FLOAT_EQ(image_.TempGrid.At(0, 1), c.Low);
    EXPECT_FLOAT_EQ(image_.TempGrid.At(0, 2), c.High);
  }
}

TEST_F(KindsLoad, ATxiImageWhoseLowLimitIsTheTrailerMarkReadsTheTrailerFirst) {
  Open("mark.txi", Measured());
  EXPECT_TRUE(session_.Faults.empty());
  EXPECT_EQ(image_.PaletteIndexHigh, 230);
  EXPECT_FLOAT_EQ(image_.PaletteTempAt0, 17.0F);
  // 28013 and 18 tenths all the same.
  EXPECT_FLOAT_EQ(image_.ScaleMin, 2801.3F);
  EXPECT_FLOAT_EQ(image_.ScaleMax, 1.8F);
  EXPECT_FLOAT_EQ(image_.TempGrid.At(0, 1), 2801.3F);
  EXPECT_FLOAT_EQ(image_.TempGrid.At(0, 2), 1.8F);
  EXPECT_EQ(image_.ScaleLowText.toStdString(), "2801.3");
  EXPECT_EQ(image_.ImageKind, KindTxi);
  Open("hot.txi", Bitmap(kMark, 30000));
  EXPECT_EQ(FindNoImage(session_.Faults), nullptr);
  EXPECT_FLOAT_EQ(image_.TempGrid.At(0, 1), 2801.3F);
  EXPECT_FLOAT_EQ(image_.TempGrid.At(0, 2), 3000.0F);
}

TEST_F(KindsLoad, ProgressEndsAtAHundredAndNeverFalls) {
  const std::pair<const char*, Bytes> files[] = {{"a.tmp", EncodeTmp(Tmp())},
                                                 {"b.tmp", EncodeLegacyTmp(Legacy())},
                                                 {"c.bin", Bin()},
                                                 {"d.bmp", Measured()},
                                                 {"e.txi", Bitmap(0, 1000)}};
  for (const auto& [name, content] : files) {
    progress_.Percent.clear();
    Open(name, content);
    ASSERT_FALSE(progress_.Percent.empty()) << name;
    EXPECT_TRUE(std::is_sorted(progress_.Percent.begin(), progress_.Percent.end())) << name;
    EXPECT_EQ(progress_.Percent.back(), 100.0) << name;
    EXPECT_EQ(view_.LoadProgress, 0.0) << name;
  }
}

TEST_F(KindsLoad, NothingButOnesIsReadAsItStands) {
  Open("ones.tmp", Bytes(54016, 0xFF));
  // No number in the texts, an unknown gain code, and 127 eighths of a degree everywhere.
  EXPECT_THAT(image_.TempGrid.Cells(), Each(15.875F));
  EXPECT_EQ(image_.Emissivity, 0.0F);
  EXPECT_EQ(image_.ScaleMax, 4.0F);
  EXPECT_EQ(image_.ImageDate.toStdString(), "\u00FF\u00FF/\u00FF\u00FF/\u00FF\u00FF");
  Open("ones16.tmp", Bytes(115200, 0xFF));
  EXPECT_EQ(image_.PixelGain, -1.9999847412109375F);
  EXPECT_THAT(image_.TempGrid.Cells(), Each(0.0F));
  Open("ones.bin", Bytes(153600, 0xFF));
  EXPECT_THAT(image_.TempGrid.Cells(), Each(-273.3F));
  EXPECT_THAT(Row(239), Each(0));
  ExpectNextFileOpensNormally();
}

TEST_F(KindsLoad, AMisnamedFileGivesItsReasonAndLeavesTheNextOneWhole) {
  Bytes text(120000, '.');
  std::copy_n("a line\nof text\n", 15, text.begin());
  Bytes jpeg(5000);
  std::copy_n("\xFF\xD8\xFF\xE0", 4, jpeg.begin());
  const std::tuple<const char*, const Bytes&, const char*> cases[] = {
      {"text.tmp", text, "the file is text, not a TMP image"},
      {"jpeg.sit", jpeg, "the file is a JPEG picture, not a SIT image"},
      {"jpeg.tmp", jpeg, "the file is a JPEG picture, not a TMP image"},
      {"jpeg.bin", jpeg, "the file is a JPEG picture, not a BIN image"},
      {"jpeg.rti", jpeg, "the file is a JPEG picture, not a snapshot"}};
  for (const auto& [name, content, reason] : cases) {
    Open(name, content);
    ASSERT_FALSE(session_.Faults.empty()) << name;
    EXPECT_EQ(session_.Faults[0].Kind, ProblemKind::kWrongKind);
    EXPECT_TRUE(session_.Faults[0].NoImage);
    EXPECT_EQ(session_.Faults[0].Text, reason);
    ExpectNextFileOpensNormally();
  }
}

TEST_F(KindsLoad, WhatCannotBeReadLeavesTheFormerHeaderAndABlankRaster) {
  for (const char* name : {"none.tmp", "none.bin"}) {
    Open("before.tmp", EncodeTmp(Tmp()));
    OpenPath(folder_.Path(QString::fromLatin1(name)), session_, progress_);
    ASSERT_NE(FindNoImage(session_.Faults), nullptr) << name;
    EXPECT_EQ(session_.Faults[0].Kind, ProblemKind::kUnreadable);
    EXPECT_THAT(image_.TempGrid.Cells(), Each(0.0F));
    EXPECT_EQ(image_.TmpHeader.EmissivityX100, 87);
    EXPECT_TRUE(image_.HasTemperature && view_.PictureVisible && !image_.ImageBusy);
  }
  Open("empty.tmp", {});
  EXPECT_NE(FindNoImage(session_.Faults), nullptr);
  Open("before.txi", Bitmap(-200, 1000));
  Bytes cut = Bitmap(0, 500);
  cut.resize(60);
  Open("cut.txi", cut);
  EXPECT_NE(FindNoImage(session_.Faults), nullptr);
  EXPECT_THAT(Row(1), ElementsAre(0, 51, 85, 102)) << "the buffer keeps its picture";
  ExpectNextFileOpensNormally();
}

}  // namespace
}  // namespace tessa::testing
