#include <chrono>
#include <cmath>
#include <fstream>

#include "export/image_export.h"
#include "open/show_frame.h"
#include "open/visible_image.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

constexpr int kWidth = 5;
constexpr int kHeight = 3;

/// In tenths of a degree above 10, and in palette indices of the stored scale from 10 to 35.5.
int StepAt(int frame, int column, int row) {
  return column + 40 * row + 10 * frame;
}

std::vector<std::int16_t> Pixels(int frame) {
  return Raster(kWidth, kHeight,
                [frame](int column, int row) { return 2832 + StepAt(frame, column, row); });
}

Bytes FrameOf(const std::vector<std::int16_t>& pixels) {
  return EncodeFrameArray(kWidth, kHeight, pixels);
}

SnapshotFields Snapshot(int frames, float version = 1.0F) {
  std::vector<std::vector<std::int16_t>> pixels;
  for (int i = 0; i < frames; ++i) {
    pixels.push_back(Pixels(i));
  }
  SnapshotFields fields = SnapshotOf(kWidth, kHeight, pixels, version);
  SeqHeader& header = fields.Header;
  header.Taken = 38024.25;
  header.RangeMin = -10.0F;
  header.RangeMax = 320.0F;
  header.ScaleMin = 10.0F;
  header.ScaleMax = 35.5F;
  header.Emissivity = 0.875F;
  header.Comment = "  BOILER \xB0";
  for (int i = 0; i < frames; ++i) {
    fields.Stamps.push_back("11/12/2013 01:02:" + std::to_string(10 + i) + " PM");
  }
  return fields;
}

/// Kelvin of the same ranges, and a frame header for frame `number` from 0.
ContainerFrameHeader FrameHeader(int number) {
  return {"11/12/2013 01:02:" + std::to_string(10 + number) + " PM",
          253.2F - static_cast<float>(number), 393.2F, 283.2F + 100.0F * static_cast<float>(number),
          308.7F};
}

Bytes Container(int frames, int depth = 16) {
  Bytes file = EncodeContainerHeader({3.0F, frames, depth, kWidth, kHeight, 0.75F});
  for (int i = 0; i < frames; ++i) {
    file = Joined(file, EncodeContainerFrame(FrameHeader(i), FrameOf(Pixels(i))));
  }
  return file;
}

/// Bytes that this process has read from files so far.
std::uint64_t BytesRead() {
  std::ifstream io("/proc/self/io");
  std::string label;
  std::uint64_t count = 0;
  io >> label >> count;
  EXPECT_EQ(label, "rchar:");
  return count;
}

std::uint64_t PeakMemory() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
}

class SequenceLoad : public LoadTest {
 protected:
  using LoadTest::Open;
  void Open(const SnapshotFields& fields) { Open("B.rti", EncodeSnapshot(fields)); }
  bool Show(int frame, bool useEnteredScale = false) {
    session_.Image.CurrentFrame = frame;
    return ShowFrame(useEnteredScale, session_, *progress_);
  }
  /// The picture, the row buffers and the grid hold frame `frame` (from 0) in the stored scale.
  void ExpectFrame(int frame) {
    ASSERT_EQ(image_.ImageWidth, kWidth);
    ASSERT_EQ(image_.ImageHeight, kHeight);
    for (int row = 0; row < kHeight; ++row) {
      const std::vector<std::uint8_t> indices = Row(row);
      for (int column = 0; column < kWidth; ++column) {
        const int step = StepAt(frame, column, row);
        EXPECT_NEAR(image_.TempGrid.At(column, row), 10.0 + step / 10.0, 1e-5);
        EXPECT_EQ(indices[static_cast<std::size_t>(column)], step);
      }
    }
  }
  void ExpectBlank() {
    EXPECT_THAT(image_.TempGrid.Cells(), Each(0.0F));
    EXPECT_THAT(picture_.Pixels(), Each(0));
  }
  int IndexAt(int column, int row) { return Row(row)[static_cast<std::size_t>(column)]; }
  /// What every other file must leave possible.
  void ExpectNextFileOpensNormally() {
    Open("next.rti", EncodeSnapshot(Snapshot(2)));
    ExpectNoFaults();
    EXPECT_EQ(image_.FrameCount, 2);
    ExpectFrame(0);
  }
};

TEST_F(SequenceLoad, ASnapshotOpensOnItsFirstFrameInTheStoredScale) {
  for (const bool fahrenheit : {false, true}) {
    session_.Image.DisplayUnits = fahrenheit ? 'F' : 'C';
    Open(Snapshot(3));
    ExpectNoFaults();
    ExpectFrame(0);
    // Half of 25.5 rounded is 13, half of that truncated 6.
    ExpectReport(R"({"Kind": "RTI", "FrameCount": 3, "CurrentFrame": 1, "PreviousKindIndex": 7,
        "HasTemperature": true, "RangeToggleVisible": true, "TempMin": 10, "TempMax": 18.4,
        "ScaleMin": 10, "ScaleMax": 35.5, "ImageDate": "02/07/2004", "ImageTime": "6:00:00 AM",
        "Comment": "BOILER \u00B0", "Memo": "3", "LoadButtonTip": "Load Image RTI Images"})");
    EXPECT_NEAR(session_.Range.MarkMaximum(), 18.4, 1e-5);
    EXPECT_EQ(session_.Range.RangeMaxValue(), 35.5);
    EXPECT_EQ(view_.Source, RangeSource::kStored);
    fahrenheit ? ExpectScaleTexts("50.0", "95.9", "39.2", "106.7")
               : ExpectScaleTexts("10.0", "35.5", "4.0", "41.5");
    EXPECT_EQ(view_.StatusPanel[5].toStdString(),
              fahrenheit ? "Range: 14.0 to 608.0" : "Range: -10.0 to 320.0");
    EXPECT_EQ(view_.StatusPanel[4].toStdString(), "Emissivity: 0.88");
    EXPECT_TRUE(view_.RangeSliderVisible);
  }
  EXPECT_TRUE(Show(3));
  ExpectFrame(2);
  EXPECT_THAT(view_.LoadingText.toStdString(), HasSubstr("/B.RTI - Frame 3"));
  EXPECT_EQ(image_.ImageDate.toStdString(), "02/07/2004");
  EXPECT_FLOAT_EQ(image_.TempMin, 12.0F);
}

TEST_F(SequenceLoad, InVersion21EveryFrameBringsItsStamp) {
  Open(Snapshot(3, 2.1F));
  ExpectFrame(0);
  EXPECT_EQ(image_.ImageDate.toStdString(), "11/12/2013");
  EXPECT_EQ(image_.ImageTime.toStdString(), "01:02:10 PM");
  EXPECT_TRUE(Show(2));
  ExpectFrame(1);
  EXPECT_EQ(image_.ImageTime.toStdString(), "01:02:11 PM");
  // The version is a single: its neighbours have no stamps.
  Open(Snapshot(2, std::nextafter(2.1F, 0.0F)));
  ExpectFrame(0);
  EXPECT_EQ(image_.ImageDate.toStdString(), "02/07/2004");
}

TEST_F(SequenceLoad, ASnapshotMayTellTheContainersVersionInItsTrailer) {
  Open("before.rti", Container(2));
  Open(Snapshot(2, 3.0F));
  ExpectNoFaults();
  ExpectFrame(0);
  EXPECT_EQ(image_.SeqVersion, 3.0F);
  EXPECT_TRUE(Show(2));
  ExpectFrame(1);
}

TEST_F(SequenceLoad, AnEmptySlotIsCountedOffAndTheFramesBehindItAreFound) {
  SnapshotFields fields = Snapshot(3, 2.1F);
  const Bytes otherSize = EncodeFrameArray(4, 3, Pixels(0));
  for (const Bytes& slot : {EncodeEmptyFrameArray(), otherSize}) {
    fields.Frames[1] = slot;
    const Bytes file = EncodeSnapshot(fields);
    Open("B.rti", file);
    ExpectOneFault(ProblemKind::kTruncated, file.size() - 810, "Frame", false);
    EXPECT_EQ(image_.FrameCount, 2);
    EXPECT_EQ(view_.Memo.toStdString(), "2");
    ExpectFrame(0);
    // An export draws nothing for a frame that is not there, since a file can claim thousands.
    EXPECT_THROW(ShowFrameForExport(2, session_), StepFailure);
    ExpectFrame(0);
    EXPECT_FALSE(Show(2));
    EXPECT_FALSE(Show(2));
    ExpectBlank();
    ASSERT_EQ(session_.Faults.size(), 2U) << "told once";
    EXPECT_THAT(session_.Faults[1].Text, HasSubstr("frame 2 cannot be read"));
    EXPECT_TRUE(Show(3));
    ExpectFrame(2);
    EXPECT_EQ(image_.ImageTime.toStdString(), "01:02:12 PM");
  }
  for (const int frame : {0, -1, 4, 32767}) {
    EXPECT_FALSE(Show(frame)) << frame;
    ExpectBlank();
  }
  fields.Frames = {EncodeEmptyFrameArray(), EncodeEmptyFrameArray(), EncodeEmptyFrameArray()};
  Open(fields);
  EXPECT_EQ(image_.FrameCount, 0);
  EXPECT_NE(FindNoImage(session_.Faults), nullptr);
  ExpectNextFileOpensNormally();
}

TEST_F(SequenceLoad, AFlatFrameIsGivenFiveDegreesAndAnEmptyScaleIndexZero) {
  SnapshotFields fields = Snapshot(1);
  fields.Frames = {FrameOf(std::vector<std::int16_t>(15, 2932))};
  Open(fields);
  EXPECT_EQ(image_.TempMin, 20.0F);
  EXPECT_EQ(image_.TempMax, 25.0F);
  EXPECT_EQ(IndexAt(2, 1), 100);
  fields.Header.ScaleMin = fields.Header.ScaleMax = 15.0F;
  Open(fields);
  EXPECT_THAT(image_.TempGrid.Cells(), Each(20.0F));
  EXPECT_THAT(picture_.IndexRow(2), Each(0));
  EXPECT_FALSE(session_.Steps.Failures().empty());
  EXPECT_EQ(image_.ScaleHighText.toStdString(), "15.0");
}

TEST_F(SequenceLoad, TheRangeOnTheScreenStaysWhenItIsAskedFor) {
  session_.Image.DisplayUnits = 'F';
  Open(Snapshot(2));
  session_.View.RangeLowText = Name("32.0");
  session_.View.RangeHighText = Name("123.8");
  EXPECT_TRUE(Show(2, true));
  EXPECT_NEAR(image_.ScaleMin, 0.0, 1e-5);
  EXPECT_NEAR(image_.ScaleMax, 51.0, 1e-5);
  EXPECT_EQ(IndexAt(4, 2), 97);  // 5 indices a degree: 19.4 degrees.
  EXPECT_EQ(image_.ScaleHighText.toStdString(), "123.8");
  session_.View.Source = RangeSource::kImage;
  EXPECT_TRUE(Show(1, true));
  EXPECT_EQ(IndexAt(0, 0), 0);
  EXPECT_EQ(IndexAt(4, 2), 255);
  EXPECT_EQ(image_.ScaleLowText.toStdString(), "50.0");
}

TEST_F(SequenceLoad, AContainerIsReadFrameByFrame) {
  Open("before.rti", EncodeSnapshot(Snapshot(1)));
  session_.Image.DisplayUnits = 'F';
  Open("long.rti", Container(3));
  ExpectNoFaults();
  ExpectFrame(0);
  EXPECT_EQ(image_.SeqVersion, 3.0F);
  EXPECT_EQ(image_.SeqFrameStride, 88);
  EXPECT_EQ(image_.SeqDepth, 16);
  // The comment is of the last trailer that was read.
  ExpectReport(R"({"Kind": "RTI", "FrameCount": 3, "Emissivity": 0.75, "TempMax": 18.4,
      "ImageDate": "11/12/2013", "ImageTime": "01:02:10 PM", "Comment": "BOILER \u00B0",
      "Memo": "3"})");
  EXPECT_NEAR(image_.ScaleMin, 10.0, 2e-5);
  EXPECT_NEAR(image_.ScaleMax, 35.5, 2e-5);
  EXPECT_EQ(view_.StatusPanel[4].toStdString(), "Emissivity: 0.75");
  EXPECT_EQ(view_.StatusPanel[5].toStdString(), "Range: -4.0 to 248.0");
  EXPECT_EQ(image_.ScaleHighText.toStdString(), "95.9");
  EXPECT_TRUE(Show(3));
  ExpectFrame(2);  // In the first frame's scale, whatever the others say.
  EXPECT_NEAR(image_.CalRangeMin, -22.0, 2e-5);
  EXPECT_EQ(image_.ImageTime.toStdString(), "01:02:12 PM");
  EXPECT_THROW(ShowFrameForExport(4, session_), StepFailure);
  ExpectFrame(2);
  EXPECT_FALSE(Show(4));
  ExpectBlank();
}

TEST_F(SequenceLoad, BytePixelsBecomeTenthsOfAKelvinBetweenTheFramesLimits) {
  const auto open = [this](float low, float high) {
    const Bytes file = EncodeContainerHeader({3.0F, 1, 8, kWidth, kHeight, 1.0F});
    const std::vector<std::int16_t> levels = {0,   1,   2,   3,   4,   5,   6,  7,
                                              127, 128, 200, 250, 253, 254, 255};
    const Bytes frame = EncodeContainerFrame({"", 253.2F, 393.2F, low, high},
                                             EncodeFrameArray(kWidth, kHeight, levels, 1));
    Open("bytes.rti", Joined(file, frame));
    EXPECT_TRUE(session_.Faults.empty());
  };
  open(280.0F, 305.5F);  // One tenth a level.
  EXPECT_NEAR(image_.TempGrid.At(0, 0), 6.8, 1e-5);
  EXPECT_NEAR(image_.TempGrid.At(3, 1), 19.5, 1e-5);
  EXPECT_NEAR(image_.TempGrid.At(4, 2), 32.3, 1e-5);
  EXPECT_EQ(IndexAt(0, 0), 0);
  EXPECT_EQ(IndexAt(4, 1), 128);
  EXPECT_EQ(IndexAt(4, 2), 255);
  open(0.0F, 12.75F);  // Half a tenth a level: ties go to the even tenth.
  EXPECT_NEAR(image_.TempGrid.At(1, 0), -273.2, 1e-4);
  EXPECT_NEAR(image_.TempGrid.At(2, 0), -273.1, 1e-4);
  EXPECT_NEAR(image_.TempGrid.At(0, 1), -273.0, 1e-4);  // Level 5 is 2.5.
  open(0.0F, 1e6F);  // Only level 0 fits 16 bits; 3921.6 kelvin do not.
  EXPECT_THAT(image_.TempGrid.Cells(), Each(-273.2F));
  EXPECT_FALSE(session_.Steps.Failures().empty());
}

TEST_F(SequenceLoad, TheLastFrameOfALongContainerIsReadWithoutTheOthers) {
  constexpr int kFrames = 32767;
  constexpr std::uint64_t kStride = 38 + 20 + 320 * 240 * 2;
  std::vector<std::int16_t> pixels(std::size_t{320} * 240, 2932);
  const Bytes first = EncodeContainerFrame(FrameHeader(0), EncodeFrameArray(320, 240, pixels));
  pixels[239 * 320 + 319] = 2982;
  const Bytes last = EncodeContainerFrame(FrameHeader(7), EncodeFrameArray(320, 240, pixels));
  const Bytes start = Joined(EncodeContainerHeader({3.0F, kFrames, 16, 320, 240, 1.0F}), first);
  const QString path = Write("long.rti", start);
  constexpr std::uint64_t kLastAt = 800 + (kFrames - 1) * kStride;
  static_assert(kLastAt > std::uint64_t{1} << 32);
  {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.seek(static_cast<qint64>(kLastAt)));
    file.write(reinterpret_cast<const char*>(last.data()), static_cast<qint64>(last.size()));
    ASSERT_EQ(file.size(), static_cast<qint64>(800 + kFrames * kStride));
  }
  const std::uint64_t before = BytesRead();
  OpenPath(path, session_, *progress_);
  EXPECT_TRUE(session_.Faults.empty());
  EXPECT_EQ(image_.FrameCount, kFrames);
  EXPECT_EQ(image_.TempMax, 25.0F);
  EXPECT_TRUE(Show(kFrames));
  EXPECT_EQ(image_.TempGrid.At(319, 239), 25.0F);
  EXPECT_EQ(image_.TempGrid.At(318, 239), 20.0F);
  EXPECT_EQ(image_.ImageTime.toStdString(), "01:02:17 PM");
  EXPECT_LT(BytesRead() - before, 4 * kStride);
}

TEST_F(SequenceLoad, AContainerCutAnywhereSaysWhere) {
  AtEveryCut(
      Container(2),
      [&](const Bytes& cut) {
        const bool hasFrame = cut.size() >= 888;
        Open("cut.rti", cut);
        ExpectOneFault(ProblemKind::kTruncated, cut.size(), cut.size() < 4 ? "SeqHeader" : "Frame",
                       !hasFrame);
        EXPECT_EQ(image_.FrameCount, hasFrame ? 2 : 0);
        if (hasFrame) {
          ExpectFrame(0);
          EXPECT_FALSE(Show(2));
          ExpectBlank();
        }
      },
      30, 7);
  ExpectNextFileOpensNormally();
}

TEST_F(SequenceLoad, AContainerWhoseHeaderLiesHoldsNoFrames) {
  const std::pair<std::size_t, std::string_view> lies[] = {
      {14, "\0\0"sv},  {14, "\xFF\xFF"sv}, {18, "\6\0"sv},  {18, "\xFB\xFF"sv}, {20, "\0\0"sv},
      {838, "\3\0"sv}, {838, "\0\0"sv},    {840, "\1\0"sv}, {842, "\4\0"sv},    {844, "\1\0"sv}};
  for (const auto& [at, word] : lies) {
    Bytes file = Container(2);
    Put(file, at, word);
    Open("lie.rti", file);
    ExpectOneFault(ProblemKind::kBadValue, 14, "Frames", true);
    EXPECT_EQ(image_.FrameCount, 0) << at;
  }
  ExpectNextFileOpensNormally();
}

TEST_F(SequenceLoad, ASnapshotThatLiesTakesNeitherTimeNorMemory) {
  const Bytes sound = EncodeSnapshot(Snapshot(2));
  const auto lie = [&](std::string_view sides, std::string_view array) {
    Bytes file = sound;
    Put(file, file.size() - 794, sides);  // Width and height.
    Put(file, 0, array);
    return file;
  };
  Bytes manySlots(70000);
  std::copy(sound.end() - 810, sound.end(), manySlots.end() - 810);
  Put(manySlots, manySlots.size() - 796, "\xFF\x7F"sv);
  constexpr std::string_view kAsInTrailer = "\2\x20\2\0\xFF\x7F\0\0\0\0\0\0\xFF\x7F\0\0"sv;
  for (const Bytes& file :
       {manySlots, lie("\xFF\x7F\xFF\x7F"sv, ""), lie("\xFF\x7F\xFF\x7F"sv, kAsInTrailer),
        lie("", "\2\x20\2\0\xFF\xFF\xFF\xFF\0\0\0\0\xFF\xFF\xFF\xFF"sv), lie("", "\5"),
        lie("\5\0\xFD\xFF"sv, ""), Bytes(100000, 0xFF), Bytes(810), Bytes()}) {
    const std::uint64_t peak = PeakMemory();
    const auto start = std::chrono::steady_clock::now();
    Open("lie.rti", file);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_LT(PeakMemory() - peak, (std::uint64_t{64} << 20) + file.size());
    ASSERT_NE(FindNoImage(session_.Faults), nullptr);
    EXPECT_LE(session_.Faults[0].Offset, file.size());
  }
  for (std::size_t length = 0; length < sound.size(); length += 13) {
    Open("cut.rti", First(sound, length));
    EXPECT_NE(FindNoImage(session_.Faults), nullptr) << length;
  }
  ExpectNextFileOpensNormally();
}

TEST_F(SequenceLoad, AFrameFileIsFoundInOtherCaseAndTakesItsStampFromTheOpenFile) {
  for (const Bytes& file : {EncodeSnapshot(Snapshot(3, 2.1F)), Container(3)}) {
    Open("B.rti", file);
    Write("b-001.apd", FrameOf(std::vector<std::int16_t>(15, 2932)));
    session_.Image.CurrentFrame = 2;
    EXPECT_TRUE(ShowFrameFile(false, session_, *progress_));
    EXPECT_EQ(image_.TempGrid.At(0, 0), 20.0F);
    EXPECT_EQ(image_.ImageTime.toStdString(), "01:02:11 PM");
    // Nobody can tell which of two is meant, unless one has the exact name.
    Write("b-001.APD", FrameOf(std::vector<std::int16_t>(15, 2942)));
    EXPECT_FALSE(ShowFrameFromFile(session_, *progress_));
    Write("B-001.APD", FrameOf(std::vector<std::int16_t>(15, 2952)));
    EXPECT_TRUE(ShowFrameFromFile(session_, *progress_));
    EXPECT_EQ(image_.TempGrid.At(0, 0), 22.0F);
    QFile::remove(Path("B-001.APD"));
    QFile::remove(Path("b-001.APD"));
  }
}

TEST_F(SequenceLoad, WhatIsNoSingleFrameArrayOfThePicturesSizeIsNoFrameFile) {
  Open(Snapshot(1));
  const Bytes frame = FrameOf(Pixels(1));
  Bytes foreign = frame;
  foreign[0] = 4;
  Bytes far = frame;
  far[7] = 0x7F;
  for (const Bytes& content : {Joined(frame, {0}), First(frame, frame.size() - 1), foreign, far,
                               EncodeFrameArray(6, 3, std::vector<std::int16_t>(18)),
                               EncodeEmptyFrameArray(), Bytes(), Bytes(50, 'x')}) {
    Write("B-000.APD", content);
    EXPECT_FALSE(ShowFrameFromFile(session_, *progress_)) << content.size();
  }
  Write("B-000.APD", frame);
  EXPECT_TRUE(ShowFrameFromFile(session_, *progress_));
}

/// A SIT file with an attachment code and what stands from byte 156160 on.
Bytes Sit(char code, const Bytes& attachment) {
  SitFields fields = SoundSit("SIT 3.00  ", "", "", attachment);
  fields.SoundExt = std::string("WA") + code;
  return EncodeSit(fields);
}

/// The sound takes 100 bytes behind the eight of the two words; 156260 is the length word.
Bytes SoundAndPicture(const Bytes& jpeg) {
  Bytes attachment = {0x00, 0x02, 0x62, 0x64, 9, 9, 9, 9};
  attachment.resize(108, 0x55);
  return Joined(attachment, jpeg);
}

TEST_F(SequenceLoad, TheVisiblePictureOfASitImageIsFoundByItsAttachmentCode) {
  const Bytes jpeg = VisibleJpeg();
  const std::pair<char, Bytes> cases[] = {{'\2', Joined(Bytes(8), jpeg)},
                                          {'\3', SoundAndPicture(jpeg)}};
  for (const auto& [code, attachment] : cases) {
    Open("v.sit", Sit(code, attachment));
    ExpectNoFaults();
    EXPECT_TRUE(image_.HasVisibleImage && view_.VisibleImageEntries);
    const QImage shown = session_.Visible.Picbuf3.ToImage();
    ASSERT_EQ(shown.size(), QSize(640, 480));
    EXPECT_GT(qRed(shown.pixel(100, 400)), 220);
    EXPECT_GT(qBlue(shown.pixel(540, 80)), 220);
    const QImage saved(session_.Folder.TemporaryPath() + Name("/TESSAVIEW.JPG"));
    ASSERT_EQ(saved.size(), QSize(640, 480));
    EXPECT_GT(qRed(saved.pixel(100, 400)), 220);
    Open("plain.tmp", EncodeTmp({}));
    EXPECT_FALSE(image_.HasVisibleImage || view_.VisibleImageEntries);
  }
  Session batch(BuiltProgramFolder());
  batch.ExtractsAttachments = false;
  OpenPath(Path("v.sit"), batch, *progress_);
  EXPECT_TRUE(batch.Image.HasVisibleImage);
  EXPECT_EQ(batch.Visible.Picbuf3.BufWidth(), 0);
}

TEST_F(SequenceLoad, WhereNoJpegStartsThereIsNoVisiblePicture) {
  const Bytes jpeg = VisibleJpeg();
  Bytes spoilt = jpeg;
  spoilt[1] = 0xD9;
  Bytes far = SoundAndPicture(jpeg);
  std::fill_n(far.begin(), 4, std::uint8_t{0xFF});
  Bytes toStart = SoundAndPicture(jpeg);
  std::fill_n(toStart.begin(), 4, std::uint8_t{0});
  using Case = std::tuple<char, Bytes, std::uint64_t>;
  const std::uint64_t farEnd = 156160 + far.size();
  for (const auto& [code, attachment, offset] :
       {Case{'\2', Joined(Bytes(8), spoilt), 156168}, Case{'\2', Joined(Bytes(7), jpeg), 156168},
        Case{'\2', Joined(Bytes(8), {0xFF}), 156168}, Case{'\3', far, farEnd},
        Case{'\3', toStart, 8}, Case{'\3', SoundAndPicture(spoilt), 156268}}) {
    Open("v.sit", Sit(code, attachment));
    ExpectOneFault(ProblemKind::kBadValue, offset, "VisibleImage", false);
    EXPECT_FALSE(image_.HasVisibleImage || view_.VisibleImageEntries);
    EXPECT_EQ(image_.TempGrid.At(0, 0), 20.0F);
  }
  for (const char code : {'\0', '\1', '\4'}) {
    Open("v.sit", Sit(code, Joined(Bytes(8), jpeg)));
    EXPECT_TRUE(session_.Faults.empty());
    EXPECT_FALSE(image_.HasVisibleImage);
  }
}

TEST_F(SequenceLoad, ACutVisiblePictureDoesTheInfraredOneNoHarm) {
  const Bytes jpeg = VisibleJpeg();
  for (std::size_t length = 2; length < jpeg.size(); length += 41) {
    SCOPED_TRACE(length);
    Open("v.sit", Sit('\2', Joined(Bytes(8), First(jpeg, length))));
    EXPECT_TRUE(image_.HasVisibleImage && image_.HasTemperature);
    EXPECT_EQ(FindNoImage(session_.Faults), nullptr);
    // What came before stays nowhere: there is a picture with a warning, or none and a reason.
    ASSERT_FALSE(session_.Faults.empty());
    EXPECT_EQ(session_.Faults[0].Field, "VisibleImage");
    EXPECT_EQ(session_.Visible.Picbuf3.BufWidth(), view_.VisibleImageEntries ? 640 : 0);
  }
  EXPECT_TRUE(view_.VisibleImageEntries);
  Open("v.sit", Sit('\2', Joined(Bytes(8), {0xFF, 0xD8})));
  EXPECT_FALSE(view_.VisibleImageEntries);
  for (const ExportView view : {ExportView::kVisible, ExportView::kComposite}) {
    ExportOptions options;
    options.View = view;
    EXPECT_THROW(EncodeForExport(session_, Name("png"), options), StepFailure);
  }
  ExpectOneFault(ProblemKind::kWrongKind, 0, "VisibleImage", false);
}

}  // namespace
}  // namespace tessa::testing
