#include "test_files.h"

namespace tessa::testing {
namespace {

/// -10 degrees and a 64th more a column; stored scale from -10 to 15.5.
Bytes Tmp() {
  TmpFields fields;
  fields.Offset = -20.0;
  fields.Gain = 0.015625;
  fields.ScaleCenter = 2.75;
  fields.ScaleStep = 3.1875;
  fields.Counts = Raster(255, 223, [](int column, int) { return 640 + column; });
  return EncodeTmp(fields);
}

/// Frame `number` from 0: 20 degrees and `number` more, 3 x 2.
Bytes Frame(int number) {
  const auto first = static_cast<std::int16_t>(2932 + 10 * number);
  const auto next = static_cast<std::int16_t>(first + 1);
  return EncodeFrameArray(3, 2, std::vector<std::int16_t>{first, next, 2900, 3000, 2999, 2910});
}

Bytes Snapshot(const std::vector<Bytes>& frames) {
  SnapshotFields fields = SnapshotOf(3, 2, {});
  fields.Header.Frames = static_cast<int>(frames.size());
  fields.Header.ScaleMin = 10.0F;
  fields.Header.ScaleMax = 35.5F;
  fields.Frames = frames;
  return EncodeSnapshot(fields);
}

Bytes Container(int frames) {
  Bytes file = EncodeContainerHeader({3.0F, frames, 16, 3, 2, 0.5F});
  for (int i = 0; i < frames; ++i) {
    file = Joined(file, EncodeContainerFrame({"", 253.2F, 393.2F, 283.2F, 308.7F}, Frame(i)));
  }
  return file;
}

const Bytes kJpeg = {0xFF, 0xD8, 0xFF, 0xE0, 1, 2, 3, 4, 5, 0, 0xFF, 0xD9, 77};

Bytes SitWithVisible(char code) {
  SitFields fields = SoundSit("SIT 3.00  ", "", "", Joined(Bytes(8), kJpeg));
  fields.SoundExt = std::string("WA") + code;
  return EncodeSit(fields);
}

class ToolKinds : public ToolTest {
 protected:
  QJsonObject Info(const char* source) const {
    const Outcome outcome = Run({"info", "--json", source});
    EXPECT_EQ(outcome.Status, 0) << outcome.Error;
    return QJsonDocument::fromJson(QByteArray::fromStdString(outcome.Out)).object();
  }
  /// A run that has to fail with these words and write nothing.
  void ExpectRefused(const std::vector<const char*>& words, const char* reason) const {
    const QStringList before = folder_.Names();
    const Outcome outcome = Run(words);
    EXPECT_EQ(outcome.Status, 1) << reason;
    EXPECT_THAT(outcome.Error, HasSubstr(reason));
    EXPECT_EQ(std::count(outcome.Error.begin(), outcome.Error.end(), '\n'), 1) << outcome.Error;
    EXPECT_EQ(folder_.Names(), before);
  }
};

TEST_F(ToolKinds, EveryFrameIsWithinReachAndItsOwnFileComesFirst) {
  Write("s.rti", Snapshot({Frame(0), EncodeEmptyFrameArray(), Frame(2)}));
  Write("c.rti", Container(3));
  Write("c-001.APD", Frame(30));
  EXPECT_TRUE(Export("@c.rti", "@f.csv", {"--frame", "1"}).startsWith("20,"));
  EXPECT_TRUE(Export("@c.rti", "@f.csv", {"--frame", "2"}).startsWith("50,50.1,"));
  EXPECT_TRUE(Export("@c.rti", "@f.csv", {"--frame", "3"}).startsWith("22,"));
  // The top row is stored last: 50, 50.1 and 16.8 degrees, the latter two the extremes.
  EXPECT_EQ(Export("@c.rti", "@f.bmp", {"--frame", "2", "--range", "image"}).right(4).toHex(),
            "feff0000");
  const Outcome third = Run({"export", "@s.rti", "-o", "@third.csv", "--frame", "3"});
  EXPECT_EQ(third.Status, 0);
  EXPECT_THAT(third.Error, HasSubstr("warning: 1 of 3 frames cannot be read"));
  EXPECT_TRUE(ReadAll(Path("third.csv")).startsWith("22,"));
  Write("t.tmp", Tmp());
  ExpectRefused({"export", "@s.rti", "-o", "@x.csv", "--frame", "2"}, "frame 2 cannot be read");
  ExpectRefused({"export", "@s.rti", "-o", "@x.csv", "--frame", "4"}, "there is no frame 4");
  ExpectRefused({"export", "@t.tmp", "-o", "@x.csv", "--frame", "1"}, "no frames");
}

TEST_F(ToolKinds, ATxiFileCarriesItsRangeInTheTwoWords) {
  Write("t.tmp", Tmp());
  using Case = std::tuple<std::vector<const char*>, const char*, int>;
  // The words, and the last index of the top row: -6.03125 degrees.
  for (const auto& [options, words, index] :
       {Case{{"--unit", "F"}, "9cff9b00", 40},           // -10.0, 15.5; 39.7
        Case{{"--range=-10.04:-0.0"}, "9cff0000", 101},  // 101.2, drawn from -10.0 on.
        Case{{"--range", "14:32", "--unit", "F"}, "9cff0000", 101},
        Case{{"--range=-100:4000"}, "18fcbfe3", 6}}) {  // 5.8
    const QByteArray file = Export("@t.tmp", "@x.txi", options);
    ASSERT_EQ(file.size(), 1078 + 256 * 223);  // 255 columns take 256 bytes a row.
    EXPECT_EQ(file.mid(6, 4).toHex().toStdString(), words);
    EXPECT_EQ(static_cast<std::uint8_t>(file[1078 + 222 * 256 + 254]), index);
    EXPECT_EQ(Info("@x.txi")[u"Kind"_s].toString().toStdString(), "TXI");
  }
  ASSERT_TRUE(QFile::remove(Path("x.txi")));
  // The words would say 3000 degrees more.
  ExpectRefused({"export", "@t.tmp", "-o", "@x.txi", "--range=-50:-10"}, "cannot hold the range");
  Write("p.bmp", EncodeBmp8(2, 1, Bytes{7, 9}, 2, {}));
  ExpectRefused({"export", "@p.bmp", "-o", "@x.txi"}, "no temperatures");
}

TEST_F(ToolKinds, TheNumberOfJobsDoesNotChangeTheOutput) {
  std::vector<std::string> names;
  for (int i = 0; i < 24; ++i) {
    names.push_back("@" + std::to_string(i) + (i % 2 == 0 ? ".tmp" : ".rti"));
    Write(names.back().c_str() + 1, i % 2 == 0 ? Tmp() : Snapshot({Frame(i)}));
  }
  for (const char* jobs : {"1", "7"}) {
    const std::string folder = std::string("@out") + jobs;
    std::vector<const char*> words = {"export",       "--to",   "bmp", "--folder",
                                      folder.c_str(), "--jobs", jobs};
    for (const std::string& name : names) {
      words.push_back(name.c_str());
    }
    const Outcome outcome = Run(words);
    EXPECT_EQ(outcome.Status, 0);
    EXPECT_THAT(outcome.Error, IsEmpty());
  }
  for (int i = 0; i < 24; ++i) {
    const std::string name = "/" + std::to_string(i) + ".bmp";
    const QByteArray alone = ReadAll(Path(("out1" + name).c_str()));
    EXPECT_GT(alone.size(), 1078) << i;
    EXPECT_EQ(alone, ReadAll(Path(("out7" + name).c_str()))) << i;
  }
}

TEST_F(ToolKinds, TheVisiblePictureComesOutByteForByte) {
  Write("v.sit", SitWithVisible('\2'));
  Write("none.sit", SitWithVisible('\1'));
  Write("t.tmp", Tmp());
  EXPECT_EQ(Run({"visible", "@v.sit", "-o", "@v.jpg"}).Status, 0);
  EXPECT_EQ(ReadAll(Path("v.jpg")),
            QByteArray(reinterpret_cast<const char*>(kJpeg.data()), std::ssize(kJpeg)));
  ExpectRefused({"visible", "@v.sit", "-o", "@v.jpg"}, "/v.jpg");
  EXPECT_EQ(Run({"visible", "@v.sit", "-o", "@v.jpg", "--force"}).Status, 0);
  ExpectRefused({"visible", "@v.sit", "-o", "@v.sit", "--force"}, "overwrite the image");
  ExpectRefused({"visible", "@none.sit", "-o", "@x.jpg"}, "no visible-light picture");
  EXPECT_EQ(ReadAll(Path("v.sit")).size(), 156168 + std::ssize(kJpeg));
}

}  // namespace
}  // namespace tessa::testing
