#include "test_files.h"

namespace tessa::testing {
namespace {

/// Frames of 3 x 2; frame n holds n x 10 degrees and one pixel two degrees hotter.
Bytes ThreeFrames() {
  const auto pixels = [](int frame) {
    return Raster(3, 2, [frame](int column, int row) {
      return 2732 + 100 * frame + (column == 1 && row == 0 ? 20 : 0);
    });
  };
  SnapshotFields fields = SnapshotOf(3, 2, {pixels(1), pixels(2), pixels(3)});
  fields.Header.ScaleMax = 51.0F;
  return EncodeSnapshot(fields);
}

class ToolFramesTest : public ToolTest {
 protected:
  ToolFramesTest() { Write("S.rti", ThreeFrames()); }
  Outcome Call(const std::vector<const char*>& more) const {
    std::vector<const char*> words = {"frames", "@S.rti", "--prefix", "F", "--folder", "@out"};
    words.insert(words.end(), more.begin(), more.end());
    return Run(words);
  }
  QByteArray Output(const std::string& name) const {
    return ReadAll(Path(("out/" + name).c_str()));
  }
};

TEST_F(ToolFramesTest, EveryFileHoldsItsOwnFrameInOneRange) {
  ASSERT_EQ(Call({"--to", "csv"}).Error, "");
  for (int frame = 1; frame <= 3; ++frame) {
    const QByteArray first = Output("F00" + std::to_string(frame) + ".csv").split(',')[0];
    EXPECT_NEAR(first.toDouble(), frame * 10.0, 1e-4);
  }
  // Bitmaps: index of the first pixel for the stored scale and for all extremes.
  const auto firstIndex = [&](const char* name) {
    const QByteArray file = Output(name);
    return file.size() < 54 + 1024 + 8 ? -1 : static_cast<std::uint8_t>(file[54 + 1024 + 4]);
  };
  ASSERT_EQ(Call({"--to", "bmp", "--frames", "2-3"}).Status, 0);
  EXPECT_EQ(firstIndex("F001.bmp"), -1);
  EXPECT_EQ(firstIndex("F002.bmp"), 100);
  EXPECT_EQ(firstIndex("F003.bmp"), 150);
  ASSERT_EQ(Call({"--to", "bmp", "--range", "image", "--force"}).Status, 0);
  EXPECT_EQ(firstIndex("F001.bmp"), 0);
  EXPECT_EQ(firstIndex("F002.bmp"), 116) << "10 of the 22 degrees between 10 and 32";
}

TEST_F(ToolFramesTest, RefusesWhatMakesNoSense) {
  EXPECT_EQ(Call({"--to", "csv", "--frames", "2-9"}).Status, 2);
  EXPECT_EQ(Call({"--to", "jpg"}).Status, 2);
  EXPECT_EQ(Run({"frames", "@S.rti", "--prefix", "../F", "--to", "csv"}).Status, 2);
  ASSERT_EQ(Call({"--to", "csv"}).Status, 0);
  const Outcome again = Call({"--to", "csv"});
  EXPECT_EQ(again.Status, 1) << "already there";
  EXPECT_THAT(again.Error, HasSubstr("F001.csv"));
  EXPECT_THAT(Run({"info", "--frames", "@S.rti"}).Out,
              AllOf(HasSubstr("Frame 2"), HasSubstr("20.0 to 22.0")));
}

}  // namespace
}  // namespace tessa::testing
