#include <cmath>
#include <ranges>
#include <thread>

#include "formats/bin_raster.h"
#include "open/still.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

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
  fields.Counts = Raster(255, 223, [](int column, int row) { return 640 + column + 7 * row; });
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
  fields.Values =
      Raster<std::uint8_t>(255, 207, [](int column, int row) { return 3 * column + 7 * row; });
  return fields;
}

/// A tenth of a degree for each column, less one for each row, around 0.
Bytes Bin() {
  return EncodeBin(Raster(320, 240, [](int column, int row) { return 2732 + column - row; }));
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
  return Joined(Bitmap(kMark, distance, reversed), end);
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

class KindsLoad : public LoadTest {
 protected:
  KindsLoad() { progress_ = &watch_; }

  void ExpectSize(int width, int height) const {
    EXPECT_EQ(image_.ImageWidth, width);
    EXPECT_EQ(image_.HeaderHeight(), height);
    EXPECT_EQ(image_.TempGrid.Width(), width);
    EXPECT_EQ(image_.TempGrid.Height(), height);
    EXPECT_EQ(image_.RowBuffers.Rows(), height);
  }
  void ExpectRange(double limitMin, double limitMax, double markMin, double markMax, double low,
                   double high) const {
    const RangeSlider& range = session_.Range;
    EXPECT_THAT(
        (std::vector{range.ScaleMinLimit(), range.ScaleMaxLimit(), range.MarkMinimum(),
                     range.MarkMaximum(), range.RangeMinValue(), range.RangeMaxValue()}),
        Pointwise(DoubleNear(1e-3), std::vector{limitMin, limitMax, markMin, markMax, low, high}));
    EXPECT_EQ(view_.Source, RangeSource::kStored);
  }
  void ExpectRangeControls() const {
    EXPECT_TRUE(view_.RangeSliderVisible && view_.RangeEntryVisible && view_.AutoUpdateVisible &&
                view_.LimitBoxesVisible);
  }
  /// Every cell of the grid is `degrees` of its column and row, and every index follows by a line.
  template <typename Rule>
  void ExpectCells(Rule degrees, double gain, double offset) {
    for (int row = 0; row < image_.TempGrid.Height(); ++row) {
      const Indices indices = Row(row);
      for (int column = 0; column < image_.TempGrid.Width(); ++column) {
        const float expected = degrees(column, row);
        ASSERT_EQ(image_.TempGrid.At(column, row), expected) << column << ", " << row;
        // Ties to even, clipped.
        const double index = std::nearbyint(gain * static_cast<double>(expected) + offset);
        ASSERT_EQ(indices[static_cast<std::size_t>(column)], std::clamp(index, 0.0, 255.0));
      }
    }
  }
  /// What every other file must leave possible.
  void ExpectNextFileOpensNormally() {
    Open("next.tmp", EncodeTmp(Tmp()));
    ExpectNoFaults();
    EXPECT_EQ(image_.TempMax, 60.0F);
    EXPECT_EQ(Row(0)[254], 40);
    ExpectSize(255, 223);
    ExpectScaleTexts("-10.0", "15.5", "-27.0", "77.0");
  }

  Watch watch_{session_};
};

TEST_F(KindsLoad, ATmpImageShows255OfItsColumnsInTheStoredScale) {
  Bytes file = EncodeTmp(Tmp());
  file[1024 + 255 * 2] = 0x7F;  // The dropped column is no hot spot.
  session_.Image.DisplayUnits = 'F';
  Open("pump.tmp", file);
  ExpectNoFaults();
  ExpectSize(255, 223);
  const auto degrees = [](int column, int row) {
    const bool isHot = column == 100 && row == 50;
    return isHot ? 60.0F : -10.0F + static_cast<float>(column + 7 * row) / 64.0F;
  };
  ExpectCells(degrees, 10.0, 100.0);
  EXPECT_EQ(Row(0)[16], 2);  // 2.5
  // Neither border nor calibrated range count for the extremes here.
  ExpectReport(R"({"Kind": "TMP", "PreviousKindIndex": 6, "HasTemperature": true,
      "IsLegacy8Bit": false, "PixelGain": 0.015625, "PixelOffset": -20, "CalRangeMax": 50,
      "TempMin": -10, "TempMax": 60, "ScaleMin": -10, "ScaleMax": 15.5, "Emissivity": 0.87,
      "ImageDate": "12/07/1998", "ImageTime": "7:08:09 AM", "Comment": "PUMP \u00B0",
      "Memo": "EAST", "LoadButtonTip": "Load Image TMP Images", "RangeToggleVisible": true})");
  // Half the span is 35, half of that truncated 17.
  ExpectRange(-27.0, 77.0, -10.0, 60.0, -10.0, 15.5);
  ExpectScaleTexts("14.0", "59.9", "-16.6", "170.6");
  EXPECT_EQ(view_.StatusPanel[4].toStdString(), "Emissivity: 0.87");
  EXPECT_EQ(view_.StatusPanel[5].toStdString(), "Range: -40.0 to 122.0");
  ExpectRangeControls();
}

TEST_F(KindsLoad, AnEightBitTmpImageIsMeasuredFromItsTexts) {
  Open("old.tmp", EncodeLegacyTmp(Legacy()));
  ExpectNoFaults();
  ExpectSize(255, 207);
  const auto degrees = [](int column, int row) {
    return static_cast<float>((3 * column + 7 * row) % 256 - 128) / 4.0F + 21.5F;
  };
  ExpectCells(degrees, 15.9375, -215.15625);
  ExpectReport(R"({"Kind": "TMP", "IsLegacy8Bit": true, "HasTemperature": true, "TempMin": -10.5,
      "TempMax": 53.25, "ScaleMin": 13.5, "ScaleMax": 29.5, "ImageDate": "6/30/1995",
      "ImageTime": "11:59:01 PM", "Comment": "OLD", "Memo": "M",
      "Status": ["", "", "", "Emissivity: 0.83", "Range: -40.0 to 120.0", ")" +
               Path("old.tmp").toUpper().toUtf8() + R"("]})");
  ExpectRange(-26.5, 69.25, -10.5, 53.25, 13.5, 29.5);
  ExpectScaleTexts("13.5", "29.5", "-26.5", "69.3");

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
  coarse.EmissivityText = "0,91";
  Open("fine.tmp", EncodeLegacyTmp(coarse));
  EXPECT_FLOAT_EQ(image_.TempGrid.At(2, 0), -7.5F + 1.5875F);
  EXPECT_EQ(image_.Emissivity, 0.91F);
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
  ExpectOneFault(ProblemKind::kTruncated, 100000, "Raster", false);
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
  ExpectNoFaults();
  const QString path = Path("Plain.bin");
  EXPECT_EQ(image_.CurrentFilePath, path);
  EXPECT_EQ(image_.CurrentFile, path.toUpper().chopped(3) + Name(".SIT"));
  // The plain fields are the former image's.
  ExpectReport(R"({"Kind": "SIT", "PreviousKindIndex": 4, "HasTemperature": true,
      "RangeToggleVisible": true, "Comment": "", "Memo": "", "SoundFile": "", "ImageDate": "",
      "ImageTime": "", "SitTempMin": -23.9, "SitScaleMin": -23.9, "SitTempMax": 31.9,
      "SitScaleMax": 31.9, "CalRangeMin": -40, "CalRangeMax": 120, "TempMax": 60,
      "ScaleLowText": "-23.9", "ScaleHighText": "31.9",
      "Status": ["", "", "", "", "", ")" +
               path.toUpper().toUtf8() + R"("]})");
  ExpectSize(320, 240);
  const auto degrees = Raster<float>(
      320, 240, [](int column, int row) { return static_cast<float>(column - row) / 10.0F; });
  EXPECT_THAT(image_.TempGrid.Cells(), Pointwise(::testing::FloatNear(1e-5F), degrees));
  // 255 / 55.8 indices a degree over all columns.
  EXPECT_EQ(Row(239)[0], 0);
  EXPECT_EQ(Row(0)[319], 255);
  EXPECT_EQ(Row(0)[0], 109);
  EXPECT_EQ(Row(239)[319], 146);
  // Half of 55.8 is 28, half of that 14.
  ExpectRange(-37.9, 45.9, -23.9, 31.9, -23.9, 31.9);
  ExpectRangeControls();
  ExpectNextFileOpensNormally();
}

TEST_F(KindsLoad, ATrailerTurnsTheIndicesOfABitmapIntoDegrees) {
  for (const bool reversed : {false, true}) {
    // Drawn from its temperatures at the end, the picture has the file's indices either way.
    Open("m.bmp", Measured(18, kTrailer, reversed));
    ExpectNoFaults();
    EXPECT_EQ(image_.PaletteReversed, reversed);
    ExpectReport(R"({"Kind": "BMP", "HasTemperature": true, "RangeToggleVisible": true,
        "PaletteIndexLow": 30, "PaletteIndexHigh": 230, "PaletteTempLow": 20, "PaletteTempHigh": 40,
        "PaletteTempAt0": 17, "PaletteTempAt255": 42.5, "ScaleMax": 42.5, "TempMin": 17,
        "TempMax": 42.5, "Comment": "", "ImageDate": ""})");
    ExpectSize(4, 3);
    for (int i = 0; i < 12; ++i) {
      const int index = kPicture[static_cast<std::size_t>(i)];
      EXPECT_FLOAT_EQ(image_.TempGrid.At(i % 4, i / 4), 17.0F + static_cast<float>(index) / 10);
      EXPECT_EQ(Row(i / 4)[static_cast<std::size_t>(i % 4)], index);
    }
    // Half of 25.5 rounded is 13, half of that truncated 6.
    ExpectRange(11.0, 48.5, 17.0, 42.5, 17.0, 42.5);
    ExpectScaleTexts("17.0", "42.5", "11.0", "48.5");
    ExpectRangeControls();
    EXPECT_TRUE(view_.StatusPanel[5].isEmpty());
  }
  // A picture wholly below zero: from -88.8 to -63.3.
  Bytes cold = kTrailer;
  std::copy_n("\x08\x1A\x07\x52", 4, cold.begin() + 14);
  Open("cold.bmp", Measured(18, cold));
  EXPECT_FLOAT_EQ(image_.TempMin, -88.8F);
  EXPECT_FLOAT_EQ(image_.TempMax, -63.3F);
  // A trailer lies where the header says, and its words are unsigned.
  Bytes behind = kTrailer;
  behind[14] = behind[15] = 0xFF;
  behind.resize(40, 0x55);
  Open("far.bmp", Measured(40, behind));
  ExpectNoFaults();
  EXPECT_FLOAT_EQ(image_.PaletteTempHigh, 6280.3F);
  EXPECT_FLOAT_EQ(image_.TempGrid.At(0, 1), 20.0F - 6260.3F * 30 / 200);
  Open("plain.bmp", Bitmap(0, 0));
  EXPECT_FALSE(image_.HasTemperature || view_.RangeToggleVisible || view_.RangeEntryVisible);
  EXPECT_EQ(image_.ScaleHighText.toStdString(), "255");
}

TEST_F(KindsLoad, TheRangeControlGrowsWithEveryRowOfARadiometricBitmap) {
  Open("m.bmp", Measured());
  // At the start of the second and the third row: 27 to 29 degrees, then 17 to 29.
  ASSERT_EQ(watch_.Marks.size(), 3U);
  const auto& [second, third] = std::pair(watch_.Marks[1], watch_.Marks[2]);
  EXPECT_THAT((std::vector{second.first, second.second, third.first, third.second}),
              Pointwise(DoubleNear(1e-4), std::vector{27.0, 29.0, 17.0, 29.0}));
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
    // Behind 54 + 1024 + 12 bytes of bitmap the word stands at byte 10 of the trailer.
    ExpectOneFault(ProblemKind::kBadValue, field[0] == 'I' ? 1100 : 8, field, false);
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
  Open("a.txi", Bitmap(-200, 1000));
  ExpectNoFaults();
  ExpectReport(R"({"Kind": "TXI", "PreviousKindIndex": 5, "HasTemperature": true,
      "RangeToggleVisible": false, "TempMin": -20, "ScaleMin": -20, "TempMax": 100,
      "ScaleMax": 100, "Comment": "", "ImageDate": "", "LoadButtonTip": "Load Image TXI Images"})");
  ExpectSize(4, 3);
  EXPECT_THAT(image_.TempGrid.Row(1), ElementsAre(-20.0F, 4.0F, 20.0F, 28.0F));
  EXPECT_EQ(image_.TempGrid.At(0, 2), 100.0F);
  EXPECT_FLOAT_EQ(image_.TempGrid.At(3, 2), 120.0F / 255.0F - 20.0F);
  EXPECT_THAT(Row(1), ElementsAre(0, 51, 85, 102));
  ExpectRange(-50.0, 130.0, -20.0, 100.0, -20.0, 100.0);
  ExpectScaleTexts("-20.0", "100.0", "-50.0", "130.0");
  ExpectRangeControls();
  EXPECT_TRUE(view_.StatusPanel[4].isEmpty() && view_.StatusPanel[5].isEmpty());
}

TEST_F(KindsLoad, ATxiImageIsMeasuredBeforeItsReversedPaletteIsUndoneAndUnfoldsItsLimits) {
  Open("dark.txi", Bitmap(-200, 1000, true));
  EXPECT_TRUE(image_.PaletteReversed);
  EXPECT_EQ(image_.TempGrid.At(1, 1), 4.0F);
  EXPECT_THAT(Row(1), ElementsAre(255, 204, 170, 153));
  Open("folded.txi", Bitmap(-200, -100));
  EXPECT_FLOAT_EQ(image_.ScaleMin, 3296.7F);
  EXPECT_FLOAT_EQ(image_.TempGrid.At(0, 1), 3296.7F);
  EXPECT_FLOAT_EQ(image_.TempGrid.At(0, 2), 3286.7F);
  // The palette runs downwards here; the slider does not.
  ExpectRange(3284.7, 3298.7, 3286.7, 3296.7, 3286.7, 3296.7);
}

TEST_F(KindsLoad, ATxiImageWhoseLowLimitIsTheTrailerMarkReadsTheTrailerFirst) {
  Open("mark.txi", Measured());
  EXPECT_TRUE(session_.Faults.empty());
  EXPECT_EQ(image_.PaletteIndexHigh, 230);
  EXPECT_FLOAT_EQ(image_.PaletteTempAt0, 17.0F);
  // 28013 and 18 tenths all the same.
  EXPECT_FLOAT_EQ(image_.TempGrid.At(0, 1), 2801.3F);
  EXPECT_FLOAT_EQ(image_.TempGrid.At(0, 2), 1.8F);
  EXPECT_EQ(image_.ScaleLowText.toStdString(), "2801.3");
  EXPECT_EQ(image_.ImageKind, KindTxi);
  Open("hot.txi", Bitmap(kMark, 30000));
  EXPECT_EQ(FindNoImage(session_.Faults), nullptr);
  EXPECT_FLOAT_EQ(image_.TempGrid.At(0, 1), 2801.3F);
  EXPECT_FLOAT_EQ(image_.TempGrid.At(0, 2), 3000.0F);
}

TEST_F(KindsLoad, LongerEndingsOfPicturesNameTheirKinds) {
  EXPECT_EQ(KindOfName(Name("/A/B.JPEG")).Name, FileKind::kJpg);
  EXPECT_EQ(KindOfName(Name("/A/B.TIFF")).Name, FileKind::kTif);
  EXPECT_EQ(KindOfName(Name("/A/JPEG")).Name, FileKind::kOther);
  EXPECT_EQ(KindOfName(Name("")).Name, FileKind::kOther);
}

TEST_F(KindsLoad, ProgressEndsAtAHundredAndNeverFalls) {
  for (const auto& [name, content] :
       {std::pair{"a.tmp", EncodeTmp(Tmp())}, std::pair{"b.tmp", EncodeLegacyTmp(Legacy())},
        std::pair{"c.bin", Bin()}, std::pair{"d.bmp", Measured()},
        std::pair{"e.txi", Bitmap(0, 1000)}}) {
    watch_.Percent.clear();
    Open(name, content);
    ASSERT_FALSE(watch_.Percent.empty()) << name;
    EXPECT_TRUE(std::is_sorted(watch_.Percent.begin(), watch_.Percent.end())) << name;
    EXPECT_EQ(watch_.Percent.back(), 100.0) << name;
  }
}

TEST_F(KindsLoad, AStillIsReadAsItOpensWithoutASessionAndInSeveralThreads) {
  const std::vector<QString> paths = {
      Write("a.SIT", EncodeSit(PlainSit())), Write("b.tmp", EncodeTmp(Tmp())),
      Write("c.Tmp", EncodeLegacyTmp(Legacy())), Write("d.bin", Bin())};
  std::vector<Still> stills(paths.size());
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < paths.size(); ++i) {
      threads.emplace_back([&, i] { stills[i] = ReadStill(paths[i]); });
    }
  }
  for (std::size_t i = 0; i < paths.size(); ++i) {
    SCOPED_TRACE(paths[i].toStdString());
    const Still& still = stills[i];
    EXPECT_TRUE(still.Faults.empty());
    OpenAt(paths[i]);
    EXPECT_TRUE(std::ranges::equal(still.Grid.Cells(), image_.TempGrid.Cells()));
    EXPECT_EQ(still.Kind, image_.ImageKind);
    EXPECT_EQ(still.IsLegacy8Bit, i == 2);
    EXPECT_EQ(still.Comment, view_.Comment);
  }
  for (const char* name : {"a.bmp", "missing.sit", ""}) {
    EXPECT_NE(FindNoImage(ReadStill(folder_.Path(Name(name))).Faults), nullptr) << name;
  }
}

TEST_F(KindsLoad, WhatCannotBeReadLeavesNothingOfTheFormerImage) {
  for (const auto& [name, file] : std::initializer_list<std::pair<const char*, Bytes>>{
           {"empty.tmp", {}}, {"empty.bin", {}}, {"cut.txi", First(Bitmap(0, 500), 60)}}) {
    Open("before.tmp", EncodeTmp(Tmp()));
    Open(name, file);
    EXPECT_NE(FindNoImage(session_.Faults), nullptr) << name;
  }
  ExpectNextFileOpensNormally();
}

}  // namespace
}  // namespace tessa::testing
