#include <sys/stat.h>
#include <unistd.h>

#include "core/date_time_text.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

/// The plain image with texts.
SitFields Golden() {
  SitFields fields = PlainSit();
  fields.Comment = std::string("HOUSE\0\0 FRONT \x80", 15);
  fields.Memo = std::string("\0NORTH\0", 7);
  return fields;
}

class SitLoad : public LoadTest {
 protected:
  using LoadTest::Open;
  void Open(const SitFields& fields) { Open("note.sit", EncodeSit(fields)); }
  void ExpectExtremes(float minimum, float maximum) const {
    EXPECT_EQ(image_.SitTempMin, minimum);
    EXPECT_EQ(image_.SitTempMax, maximum);
  }
  /// What every other file must leave possible.
  void ExpectNextFileOpensNormally() {
    SitFields fields = Golden();
    PutDegrees(fields, 50, 60, 33.0);
    Open("next.sit", EncodeSit(fields));
    ExpectNoFaults();
    ExpectExtremes(20.0F, 33.0F);
    EXPECT_EQ(image_.TempGrid.At(50, 60), 33.0F);
    EXPECT_EQ(image_.ScaleHighText.toStdString(), "40.0");
  }
};

TEST_F(SitLoad, CountsBecomeDegreesAndDegreesBecomeIndices) {
  SitFields fields = Golden();
  PutDegrees(fields, 100, 50, 70.0);
  PutDegrees(fields, 101, 50, -532.0);  // The count is -32768.
  PutDegrees(fields, 319, 239, 24.0);
  PutDegrees(fields, 0, 0, 22.0);    // 12.75 a degree: 25.5, a tie.
  PutDegrees(fields, 319, 0, 26.0);  // 76.5
  PutDegrees(fields, 0, 239, 30.0);
  Open(fields);
  using Place = std::tuple<int, int, float, int>;
  for (const auto& [column, row, degrees, index] :
       {Place{0, 0, 22.0F, 26}, Place{319, 0, 26.0F, 76}, Place{0, 239, 30.0F, 128},
        Place{1, 0, 20.0F, 0}, Place{100, 50, 70.0F, 255}, Place{101, 50, -532.0F, 0},
        Place{319, 239, 24.0F, 51}}) {
    EXPECT_EQ(image_.TempGrid.At(column, row), degrees);
    EXPECT_EQ(Row(row)[static_cast<std::size_t>(column)], index);
  }
  // Evaluated in double and rounded once.
  fields.Gain = 0.0373077392578125;      // 2445 / 65536
  fields.Offset = -20.6999969482421875;  // -(20 + 45875 / 65536)
  fields.Counts[0] = 32761;              // 1201.53884887..., in singles alone 1201.53894
  fields.Counts[1] = -32762;             // -1242.97615051..., in singles alone -1242.97607
  Open(fields);
  EXPECT_EQ(image_.TempGrid.At(0, 0), 1201.53882F);
  EXPECT_EQ(image_.TempGrid.At(1, 0), -1242.9762F);
}

TEST_F(SitLoad, HeaderFieldsReachRecordAndPanels) {
  SitFields fields = Golden();
  PutDegrees(fields, 10, 10, -10.0);
  PutDegrees(fields, 20, 20, 70.0);
  for (const bool fahrenheit : {false, true}) {
    session_.Image.DisplayUnits = fahrenheit ? 'F' : 'C';
    Open(fields);
    ExpectNoFaults();
    // From -10 to 70: half the span is 40, half of that 20.
    ExpectReport(R"({"Kind": "SIT", "ImageKind": 3, "PreviousKindIndex": 4, "PixelGain": 0.015625,
        "PixelOffset": -20, "CalRangeMin": -40, "CalRangeMax": 120, "SitScaleMin": 20,
        "SitScaleMax": 40, "SitTempMin": -10, "SitTempMax": 70, "Emissivity": 0.95,
        "HasTemperature": true, "SitFileLength": 156160, "ImageDate": "1/15/2026",
        "ImageTime": "2:30:05 PM", "Comment": "HOUSE FRONT \u20AC", "Memo": "NORTH",
        "ImageWidth": 320, "ImageHeight": 240, "LoadButtonTip": "Load Image SIT Images",
        "RangeToggleVisible": true, "RangeControl": {"ScaleMinLimit": -30, "ScaleMaxLimit": 90,
        "ImageMarkMin": -10, "ImageMarkMax": 70, "RangeMinValue": 20, "RangeMaxValue": 40}})");
    fahrenheit ? ExpectScaleTexts("68.0", "104.0", "-22.0", "194.0")
               : ExpectScaleTexts("20.0", "40.0", "-30.0", "90.0");
    EXPECT_EQ(view_.Source, RangeSource::kStored);
    EXPECT_EQ(view_.StatusPanel[4].toStdString(), "Emissivity: 0.95");
    EXPECT_EQ(view_.StatusPanel[5].toStdString(),
              fahrenheit ? "Range: -40.0 to 248.0" : "Range: -40.0 to 120.0");
    EXPECT_EQ(view_.StatusPanel[6], Path("note.sit").toUpper());
    EXPECT_TRUE(view_.RangeSliderVisible && view_.RangeEntryVisible);
    EXPECT_EQ(view_.CelsiusSelected, !fahrenheit);
    EXPECT_EQ(image_.FileUnits, fahrenheit ? 'F' : 'C');
    EXPECT_EQ(session_.Settings.LastFolder + Name("note.sit"), image_.CurrentFilePath);
  }
  fields.Comment.assign(638, ' ');
  Open(fields);
  EXPECT_EQ(view_.Comment, QString(638, QLatin1Char(' ')));
}

TEST_F(SitLoad, TheBorderOfThreePixelsMovesNoExtreme) {
  SitFields fields = Golden();
  PutDegrees(fields, 2, 100, 100.0);
  PutDegrees(fields, 317, 100, 100.0);
  PutDegrees(fields, 100, 2, 100.0);
  PutDegrees(fields, 100, 237, 100.0);
  PutDegrees(fields, 319, 239, -19.0);
  Open(fields);
  ExpectExtremes(20.0F, 20.0F);
  PutDegrees(fields, 3, 3, -10.0);
  PutDegrees(fields, 316, 236, 70.0);
  Open(fields);
  ExpectExtremes(-10.0F, 70.0F);
}

TEST_F(SitLoad, APixelOutsideTheCalibratedRangeDoesNotMoveTheExtremeOnItsSide) {
  SitFields fields = Golden();
  fields.RangeLow = 0.0;
  fields.RangeHigh = 50.0;
  PutDegrees(fields, 100, 100, 50.015625);
  PutDegrees(fields, 101, 100, 50.0);
  PutDegrees(fields, 100, 101, -0.015625);
  PutDegrees(fields, 101, 101, 0.0);
  Open(fields);
  EXPECT_EQ(image_.TempGrid.At(100, 100), 50.015625F);
  ExpectExtremes(0.0F, 50.0F);
  // Colder than the range everywhere: such a pixel may still be the maximum, never the minimum.
  fields.Counts.assign(fields.Counts.size(), Count64(-10.0));
  Open(fields);
  ExpectExtremes(999.0F, -10.0F);
  // A negative gain turns counts round: 20 - 20 / 64 x 64 = 0 for most, 40 for one.
  fields = Golden();
  fields.Gain = -1.0;
  fields.Offset = 20.0;
  fields.Counts.assign(fields.Counts.size(), 20);
  fields.Counts[100 * 320 + 100] = -20;
  Open(fields);
  ExpectExtremes(0.0F, 40.0F);
}

TEST_F(SitLoad, VersionAndLengthTellWhetherThereIsASoundInside) {
  using Case = std::tuple<const char*, const char*, std::size_t, float, bool>;
  for (const auto& [signature, ext, attached, version, embedded] :
       {Case{"SIT 3.1 H ", "", 9, 3.1F, false}, Case{"SIT 3.1 I ", "", 9, 3.1F, true},
        Case{"SIT 3.5   ", "", 0, 3.5F, false}, Case{"SIT 3.5   ", "", 1, 3.5F, true},
        Case{"SIT 4.20  ", "", 9, 4.2F, false}, Case{"SIT 3.00  ", "WA\1", 9, 4.0F, true},
        Case{"SIT 4.20  ", "WA\2", 9, 4.0F, false}, Case{"SIT 3.00  ", "WA\4", 9, 3.0F, false}}) {
    SCOPED_TRACE(std::string(signature) + "/" + std::to_string(attached));
    SitFields fields = Golden();
    fields.Signature = signature;
    fields.SoundExt = ext;
    fields.Attachment.assign(attached, 0);
    Open(fields);
    EXPECT_EQ(image_.SitVersion, version);
    EXPECT_EQ(image_.SoundEmbedded, embedded);
    // From 3.1 I on a wave put in would be taken for the camera's own sound.
    EXPECT_EQ(image_.CanEmbedSound, version < 3.1F || (version == 3.1F && signature[8] < 'I'));
    EXPECT_EQ(image_.SoundFile.toStdString(), embedded ? TESSA_BINARY_FOLDER "/NOTE.WAV" : "");
    EXPECT_EQ(image_.SoundFileTitle.toStdString(), embedded ? "NOTE.WAV" : "");
  }
}

TEST_F(SitLoad, ASoundBesideTheImageNeverLeadsOutOfItsFolder) {
  SitFields fields = Golden();
  fields.SoundName = "SND00001";
  fields.SoundExt = "AIF";
  Open(fields);
  EXPECT_FALSE(image_.SoundEmbedded);
  EXPECT_EQ(image_.SoundFile, Path("SND00001.AIF"));
  EXPECT_EQ(image_.SoundFileTitle.toStdString(), "NOTE.WAV");
  for (const auto& [name, extension] :
       {std::pair{"../../AB", "AIF"}, std::pair{"/ETC/X", "AIF"}, std::pair{"A\\B", "AIF"},
        std::pair{"A", "/B"}, std::pair{"..", "AIF"}, std::pair{" SND", "AIF"},
        std::pair{"A", "AIF"}}) {  // Zeros behind the A.
    fields.SoundName = name;
    fields.SoundExt = extension;
    Open(fields);
    EXPECT_TRUE(image_.SoundFile.isEmpty()) << image_.SoundFile.toStdString();
  }
}

TEST_F(SitLoad, ASoundIsFoundByItsExactNameOrTheOneThatDiffersInCaseOnly) {
  SitFields fields = Golden();
  fields.SoundName = "SND1    ";
  fields.SoundExt = "A  ";
  Write("snd1.a", Bytes{1});
  Open(fields);
  EXPECT_EQ(image_.SoundFile, Path("snd1.a"));
  Write("Snd1.A", Bytes{1});
  Open(fields);
  EXPECT_EQ(image_.SoundFile, QString()) << "nobody can tell which";
  Write("SND1.A", Bytes{1});
  Open(fields);
  EXPECT_EQ(image_.SoundFile, Path("SND1.A"));
  // A wave inside keeps its position as its name.
  fields.SoundName = "156161  ";
  fields.SoundExt = "WAV";
  Open(fields);
  EXPECT_FALSE(image_.SoundEmbedded);
  EXPECT_EQ(image_.SoundFile.toStdString(), "156161.WAV");
}

TEST_F(SitLoad, DigitsBecomeDatesAndTimesAndOthersStayAsTheyStand) {
  for (const auto& [digits, time] :
       {std::pair{"000000", "12:00:00 AM"}, std::pair{"090807", "9:08:07 AM"},
        std::pair{"120000", "12:00:00 PM"}, std::pair{"235959", "11:59:59 PM"},
        std::pair{"256199", "25:61:99"}, std::pair{"ABCDEF", "0:CD:EF"}, std::pair{"", ""},
        std::pair{"      ", ""}}) {
    EXPECT_EQ(TimeFromDigits(digits).toStdString(), time);
  }
  for (const auto& [digits, date] :
       {std::pair{"260705", "7/05/2026"}, std::pair{"791231", "12/31/2079"},
        std::pair{"800101", "1/01/1980"}, std::pair{"240229", "2/29/2024"},
        std::pair{"260229", "02/29/26"}, std::pair{"261315", "13/15/26"},
        std::pair{"ABCDEF", "CD/EF/AB"}, std::pair{"", ""}, std::pair{"      ", ""}}) {
    EXPECT_EQ(DateFromDigits(digits).toStdString(), date);
  }
}

TEST_F(SitLoad, WhatACutFileLacksIsZeroAndNoColdSpot) {
  SitFields fields = Golden();
  fields.Counts.assign(76800, Count64(21.0));
  const Bytes whole = EncodeSit(fields);
  for (const std::size_t length : {1U, 1023U, 1024U, 1025U}) {  // Not one pixel.
    Open("cut.sit", First(whole, length));
    ExpectOneFault(ProblemKind::kTruncated, length, length < 1024 ? "SitHeader" : "Raster", true);
  }
  for (const std::size_t length : {1026U, 2951U, 100001U}) {
    Open("cut.sit", First(whole, length));
    ExpectOneFault(ProblemKind::kTruncated, length, "Raster", false);
    EXPECT_EQ(image_.Emissivity, 0.95F);
    const auto cells = image_.TempGrid.Cells();
    EXPECT_THAT(cells.first((length - 1024) / 2), Each(21.0F));
    EXPECT_THAT(cells.subspan((length - 1024) / 2), Each(0.0F));
    EXPECT_GE(image_.SitTempMin, 21.0F);
  }
  ExpectNextFileOpensNormally();
}

TEST_F(SitLoad, WhatIsNoReadableFileLeavesNothingOfTheFormerImage) {
  const QString folder = Path("FOLDER.SIT");
  const QString pipe = Path("pipe.sit");
  const QString locked = Write("locked.sit", EncodeSit(Golden()));
  ASSERT_TRUE(QDir().mkdir(folder));
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0644), 0);
  ASSERT_TRUE(QFile::setPermissions(locked, {}));
  ASSERT_EQ(::chmod(QFile::encodeName(folder_.Path({})).constData(), 0755), 0);
  for (const QString& path : {folder, pipe, locked, Write("empty.sit", {}), Path("missing.sit")}) {
    SCOPED_TRACE(path.toStdString());
    SitFields before = Golden();
    PutDegrees(before, 100, 100, 50.0);
    Open(before);
    {
      const OrdinaryUser user;
      OpenAt(path);
    }
    ASSERT_NE(FindNoImage(session_.Faults), nullptr);
    EXPECT_EQ(session_.Faults[0].Kind, ProblemKind::kUnreadable);
    EXPECT_EQ(image_.CurrentFilePath, path);
    ExpectNextFileOpensNormally();
  }
}

TEST_F(SitLoad, NamesThatDifferInCaseAloneAreTwoFiles) {
  SitFields fields = Golden();
  fields.EmissivityX100 = 70;
  const QString upper = Write("A.SIT", EncodeSit(fields));
  fields.EmissivityX100 = 80;
  Open("a.sit", EncodeSit(fields));
  EXPECT_EQ(image_.Emissivity, 0.80F);
  EXPECT_EQ(image_.CurrentFileName.toStdString(), "A.SIT");
  EXPECT_EQ(image_.CurrentFilePath, Path("a.sit"));
  OpenAt(upper);
  EXPECT_EQ(image_.Emissivity, 0.70F);
  ASSERT_TRUE(QFile::remove(upper));
  OpenAt(upper);
  EXPECT_NE(FindNoImage(session_.Faults), nullptr);
}

}  // namespace
}  // namespace tessa::testing
