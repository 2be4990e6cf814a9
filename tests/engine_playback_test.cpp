#include "core/tell.h"
#include "open/show_frame.h"
#include "sequence/convert_frames.h"
#include "sequence/playback.h"
#include "test_files.h"
#include "view/range_control.h"

namespace tessa::testing {
namespace {

constexpr int kWidth = 6;
constexpr int kHeight = 4;
constexpr int kFrames = 3;

/// Frame n (from 1): its first pixel is n x 10 degrees, its last n x 10 + 5, all others between.
std::vector<std::int16_t> Pixels(int frame) {
  const auto first = static_cast<std::int16_t>(2732 + frame * 100);
  std::vector<std::int16_t> tenths(kWidth * kHeight, static_cast<std::int16_t>(first + 20));
  tenths.front() = first;
  tenths.back() = static_cast<std::int16_t>(first + 50);
  return tenths;
}

std::string Stamp(int frame) {
  return "11/21/2026 10:00:0" + std::to_string(frame) + " AM";
}

Bytes Snapshot() {
  SnapshotFields fields =
      SnapshotOf(kWidth, kHeight, {Pixels(1), Pixels(2), Pixels(3)}, kStampedVersion);
  fields.Header.ScaleMin = 0.0F;
  fields.Header.ScaleMax = 50.0F;
  fields.Stamps = {Stamp(1), Stamp(2), Stamp(3)};
  return EncodeSnapshot(fields);
}

Bytes Container() {
  Bytes file = EncodeContainerHeader({kContainerVersion, kFrames, 16, kWidth, kHeight, 0.9F});
  for (int frame = 1; frame <= kFrames; ++frame) {
    file = Joined(file, EncodeContainerFrame({Stamp(frame), 233.2F, 393.2F, 273.2F, 323.2F},
                                             EncodeFrameArray(kWidth, kHeight, Pixels(frame))));
  }
  return file;
}

class PlaybackTest : public ::testing::Test {
 protected:
  PlaybackTest() : session_(BuiltProgramFolder()) {
    FillPaletteList(session_.View);
    session_.Image.DisplayUnits = 'C';
  }
  void Open(const Bytes& file) {
    OpenPath(folder_.Write(u"B.rti"_s, file), session_, progress_);
    ASSERT_EQ(session_.Image.FrameCount, kFrames);
  }
  void WriteFrameFile(const char* name, int pixelsOfFrame) {
    folder_.Write(QString::fromLatin1(name),
                  EncodeFrameArray(kWidth, kHeight, Pixels(pixelsOfFrame)));
  }
  /// Degrees of the first pixel, rounded, and the indices at both ends of the picture.
  std::string Shown() const {
    const auto pixels = session_.Buffers.Picbuf1.Pixels();
    const std::size_t last = 3 * session_.Buffers.Picbuf1.Stride() + kWidth - 1;
    return std::to_string(std::lround(session_.Image.TempGrid.At(0, 0))) + "|" +
           std::to_string(pixels[0]) + "|" + std::to_string(pixels[last]) + "|" +
           session_.View.FrameText.toStdString();
  }
  ConversionResult Convert(const char* prefix, FrameFormat format, const std::vector<int>& frames) {
    FrameConversion conversion{format, {}};
    for (const int frame : frames) {
      conversion.Outputs.push_back(
          {frame, FrameOutputName(QString::fromLatin1(prefix), frame, format)});
    }
    return ConvertFrames(conversion, session_, progress_, [this](const QString& line) {
      status_.append(line);
      if (line.startsWith(u"Loading"_s)) {
        words_ = ReadAll(folder_.Path(u"T002.TXI"_s)).mid(6, 4).toHex();
      }
    });
  }
  /// The index of the first pixel in a written bitmap; its rows are stored from the foot.
  int FirstIndexIn(const char* name) const {
    const QByteArray file = ReadAll(folder_.Path(QString::fromLatin1(name)));
    constexpr qsizetype kPixelsAt = 54 + 1024;
    constexpr qsizetype kRowBytes = 8;
    return file.size() < kPixelsAt + 4 * kRowBytes
               ? -1
               : static_cast<std::uint8_t>(file[kPixelsAt + 3 * kRowBytes]);
  }

  TestFolder folder_;
  Session session_;
  Progress progress_;
  QStringList status_;
  QByteArray words_;  // Of T002.TXI before the closing step.
};

TEST_F(PlaybackTest, ButtonsStepThroughBothKindsAndStopAtTheEnds) {
  for (const Bytes& file : {Snapshot(), Container()}) {
    Open(file);
    EXPECT_TRUE(session_.View.FrameRowVisible);
    EXPECT_EQ(session_.View.FrameText, u"1 of 3"_s);
    EXPECT_EQ(Shown(), "10|51|76|1 of 3") << "opens in the stored scale of 0 to 50";
    ShowPreviousFrame(session_, progress_);
    EXPECT_EQ(Shown(), "10|51|76|1 of 3") << "nothing happens before the first";
    ShowNextFrame(session_, progress_);
    EXPECT_EQ(Shown(), "20|0|255|2 of 3") << "a step spreads over the frame's own extremes";
    EXPECT_EQ(session_.Image.ScaleLowText, u"20.0"_s);
    EXPECT_EQ(session_.View.RangeHighText, u"25.0"_s);
    ShowLastFrame(session_, progress_);
    EXPECT_EQ(Shown(), "30|0|255|3 of 3");
    EXPECT_EQ(session_.Image.ImageTime, u"10:00:03 AM"_s);
    ShowNextFrame(session_, progress_);
    EXPECT_EQ(session_.Image.CurrentFrame, 3);
    ShowFirstFrame(session_, progress_);
    EXPECT_EQ(Shown(), "10|0|255|1 of 3") << "first shows its frame anew";
  }
}

TEST_F(PlaybackTest, AFrameFileComesFirstThenTheOpenFileThenABlankPicture) {
  Open(Snapshot());
  WriteFrameFile("B-001.APD", 7);
  ShowNextFrame(session_, progress_);
  EXPECT_EQ(Shown(), "70|0|255|2 of 3");
  EXPECT_EQ(session_.Image.ScaleHighText, u"75.0"_s);
  ShowNextFrame(session_, progress_);
  EXPECT_EQ(Shown(), "30|0|255|3 of 3");
  session_.Image.SeqFrames[0].clear();
  ShowFirstFrame(session_, progress_);
  EXPECT_EQ(Shown(), "0|0|0|1 of 3");
}

TEST_F(PlaybackTest, OtherImagesHaveNoFrameRow) {
  Open(Snapshot());
  OpenPath(folder_.Write(u"x.bmp"_s, EncodeBmp8(4, 4, Bytes(16), 4, GreyPalette())), session_,
           progress_);
  EXPECT_FALSE(session_.View.FrameRowVisible);
}

TEST_F(PlaybackTest, SteppingNeverWritesToAPictureThatTheUserOpened) {
  const Bytes bitmap = EncodeBmp8(kWidth, kHeight, Bytes(24, 9), kWidth, GreyPalette());
  const QString path = folder_.Write(u"mine.bmp"_s, bitmap);
  OpenPath(path, session_, progress_);
  Open(Snapshot());
  ShowLastFrame(session_, progress_);
  EXPECT_EQ(ReadBytes(path), bitmap);
}

TEST_F(PlaybackTest, AConversionWritesEachOutputOnceMoreWithTheFrameThatFollows) {
  Open(Snapshot());
  // Entered range 0 to 51 degrees: five indices a degree.
  session_.View.RangeLowText = u"0"_s;
  session_.View.RangeHighText = u"51"_s;
  folder_.Write(u"A001.BMP"_s, Bytes{1, 2, 3});  // Is replaced.
  Convert("A", FrameFormat::kBmp, {1, 2, 3});
  EXPECT_EQ(FirstIndexIn("A001.BMP"), 100) << "the step to frame 2 saved over it";
  EXPECT_EQ(FirstIndexIn("A002.BMP"), 150);
  EXPECT_EQ(FirstIndexIn("A003.BMP"), 50) << "the frame shown before is shown again at the end";
  EXPECT_EQ(session_.Image.CurrentFrame, 1);
  EXPECT_EQ(session_.Image.ImageKind, KindBmp);
  EXPECT_EQ(session_.Image.ScaleHighText, u"51.0"_s);
  EXPECT_EQ(session_.View.ScaleLabel[2], u"51.0"_s);
  EXPECT_EQ(status_.join(QLatin1Char('|')),
            QStringLiteral("Converting A001.BMP|Saving A001.BMP|Converting A002.BMP|"
                           "Saving A002.BMP|Converting A003.BMP|Saving A003.BMP|"
                           "Loading Frame 1|Conversion Complete"));
  EXPECT_EQ(folder_.Names().filter(u"A00"_s).size(), 3);
  EXPECT_EQ(session_.View.Notice.Text, u"Frames written: 3"_s);
}

TEST_F(PlaybackTest, OutputsThatFailAreCountedAndNamedAndTheOthersWritten) {
  Open(Snapshot());
  QDir().mkdir(folder_.Path(u"A002.BMP"_s));
  session_.Image.SeqFrames[2].clear();
  EXPECT_TRUE(OutputExists(u"A002.BMP"_s, session_.Image));
  const ConversionResult result = Convert("A", FrameFormat::kBmp, {1, 2, 3});
  EXPECT_EQ(result.Written, 1);
  ASSERT_EQ(result.Failed.size(), 2U);
  EXPECT_EQ(result.Failed[0].Name + result.Failed[0].Reason, u"A002.BMPIs a directory"_s);
  EXPECT_EQ(result.Failed[1].Reason, u"Frame 3 cannot be read."_s);
  EXPECT_EQ(session_.View.Notice.Text,
            u"Frames written: 1, failed: 2 (A002.BMP: Is a directory)"_s);
  EXPECT_EQ(session_.View.Notice.Kind, NoticeKind::kFailed);
  EXPECT_EQ(FurtherText(session_.View.Notice, session_.Words), u"and 1 more"_s);
}

TEST_F(PlaybackTest, TxiWordsOfAConversionFollowTheirOwnRule) {
  Open(Snapshot());
  session_.View.RangeLowText = u"-20"_s;
  session_.View.RangeHighText = u"60"_s;
  Convert("T", FrameFormat::kTxi, {2});
  EXPECT_EQ(session_.Image.ImageKind, KindTxi);
  EXPECT_EQ(words_, "00005802") << "32767 + 200 fits no word; 600";
  // The closing step saved the file as a plain bitmap again, words and all.
  EXPECT_EQ(ReadAll(folder_.Path(u"T002.TXI"_s)).mid(6, 4), QByteArray(4, '\0'));
  Convert("T", FrameFormat::kTxi, {1, 2});
  EXPECT_EQ(FirstIndexIn("T001.TXI"), 128) << "40 of 80 degrees: 127.5";
  // A comma is a point here too.
  session_.View.RangeLowText = u"0"_s;
  session_.View.RangeHighText = u"40,8"_s;
  Convert("E", FrameFormat::kBmp, {1, 2});
  EXPECT_EQ(FirstIndexIn("E001.BMP"), 125) << "20 degrees at 6.25 indices each";
}

TEST_F(PlaybackTest, PrefixesStayInTheFolderAndNumbersGrow) {
  Open(Snapshot());
  const QStringList before = folder_.Names();
  for (const char* prefix : {"", "../A", "x/y", "x\\y"}) {
    EXPECT_TRUE(
        ListFrameOutputs(QString::fromLatin1(prefix), FrameFormat::kBmp, session_.Image).empty());
    // An output without a prefix, "001.BMP", is a plain name all the same.
    EXPECT_EQ(*prefix == '\0' || Convert(prefix, FrameFormat::kBmp, {1}).Failed.size() == 1, true);
  }
  EXPECT_EQ(folder_.Names(), before);
  EXPECT_EQ(FrameOutputName(u"A"_s, 7, FrameFormat::kBmp), u"A007.BMP"_s);
  EXPECT_EQ(FrameOutputName(u"A"_s, 1000, FrameFormat::kTxi), u"A1000.TXI"_s);
  EXPECT_EQ(FrameFilePath(u"/a/B.RTI"_s, 1000), u"/a/B-999.APD"_s);
}

}  // namespace
}  // namespace tessa::testing
