#include <gtest/gtest.h>

#include <QProcess>
#include <bit>

#include "formats/frame_array.h"
#include "formats/sequence.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

/// A snapshot of three 3 x 2 frames; frame n holds n x 10 degrees and one pixel two degrees hotter.
Bytes ThreeFrames() {
  SnapshotFields fields;
  fields.Header.Version = 1.0F;
  fields.Header.Frames = 3;
  fields.Header.Width = 3;
  fields.Header.Height = 2;
  fields.Header.ScaleMax = 51.0F;
  for (int frame = 1; frame <= 3; ++frame) {
    std::vector<std::int16_t> tenths(6, static_cast<std::int16_t>(2732 + frame * 100));
    tenths[1] = static_cast<std::int16_t>(2732 + frame * 100 + 20);
    fields.Frames.push_back(EncodeFrameArray(3, 2, tenths));
  }
  return EncodeSnapshot(fields);
}

class ToolFramesTest : public ::testing::Test {
 protected:
  int Run(const QStringList& arguments) {
    QProcess tool;
    tool.start(QStringLiteral(TESSA_BINARY_FOLDER "/tessatool"), arguments);
    EXPECT_TRUE(tool.waitForFinished());
    errors_ = tool.readAllStandardError();
    output_ = tool.readAllStandardOutput();
    return tool.exitCode();
  }
  QStringList Call(const QStringList& more) const {
    return QStringList{QStringLiteral("frames"),   file_,
                       QStringLiteral("--prefix"), QStringLiteral("F"),
                       QStringLiteral("--folder"), folder_.Path(QStringLiteral("out"))} +
           more;
  }
  QByteArray Output(const char* name) const {
    return ReadAll(folder_.Path(QStringLiteral("out/") + QString::fromLatin1(name)));
  }

  TestFolder folder_;
  QString file_ = folder_.Write(QStringLiteral("S.rti"), ThreeFrames());
  QByteArray errors_;
  QByteArray output_;
};

TEST_F(ToolFramesTest, EveryFileHoldsItsOwnFrameInOneRange) {
  ASSERT_EQ(Run(Call({QStringLiteral("--to"), QStringLiteral("csv")})), 0) << errors_.toStdString();
  for (int frame = 1; frame <= 3; ++frame) {
    const QByteArray first = Output(("F00" + std::to_string(frame) + ".csv").c_str()).split(',')[0];
    EXPECT_NEAR(first.toDouble(), frame * 10.0, 1e-4);
  }
  // Bitmaps: index of the first pixel for the stored scale, an entered one, and all extremes.
  const auto firstIndex = [&](const char* name) {
    const QByteArray file = Output(name);
    return file.size() < 54 + 1024 + 8 ? -1 : static_cast<std::uint8_t>(file[54 + 1024 + 4]);
  };
  ASSERT_EQ(Run(Call({QStringLiteral("--to"), QStringLiteral("bmp"), QStringLiteral("--frames"),
                      QStringLiteral("2-3")})),
            0);
  EXPECT_EQ(firstIndex("F001.bmp"), -1);
  EXPECT_EQ(firstIndex("F002.bmp"), 100);
  EXPECT_EQ(firstIndex("F003.bmp"), 150);
  ASSERT_EQ(Run(Call({QStringLiteral("--to"), QStringLiteral("bmp"), QStringLiteral("--range"),
                      QStringLiteral("image"), QStringLiteral("--force")})),
            0);
  EXPECT_EQ(firstIndex("F001.bmp"), 0);
  EXPECT_EQ(firstIndex("F002.bmp"), 116) << "10 of the 22 degrees between 10 and 32";
}

TEST_F(ToolFramesTest, RefusesWhatMakesNoSense) {
  EXPECT_EQ(Run(Call({QStringLiteral("--to"), QStringLiteral("csv"), QStringLiteral("--frames"),
                      QStringLiteral("2-9")})),
            2);
  EXPECT_EQ(Run(Call({QStringLiteral("--to"), QStringLiteral("jpg")})), 2);
  EXPECT_EQ(Run({QStringLiteral("frames"), file_, QStringLiteral("--prefix"),
                 QStringLiteral("../F"), QStringLiteral("--to"), QStringLiteral("csv")}),
            2);
  ASSERT_EQ(Run(Call({QStringLiteral("--to"), QStringLiteral("csv")})), 0);
  EXPECT_EQ(Run(Call({QStringLiteral("--to"), QStringLiteral("csv")})), 1) << "already there";
  EXPECT_TRUE(errors_.contains("F001.csv"));
}

TEST_F(ToolFramesTest, InfoListsTheFrames) {
  ASSERT_EQ(Run({QStringLiteral("info"), QStringLiteral("--frames"), file_}), 0);
  EXPECT_TRUE(output_.contains("Frame 2"));
  EXPECT_TRUE(output_.contains("20.0 to 22.0"));
}

}  // namespace
}  // namespace tessa::testing
