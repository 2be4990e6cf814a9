#include <gmock/gmock.h>

#include "formats/bin_raster.h"
#include "formats/frame_array.h"
#include "formats/tmp_image.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

template <typename Value>
std::vector<Value> Filled(int count, int start) {
  std::vector<Value> values;
  for (int i = 0; i < count; ++i) {
    values.push_back(static_cast<Value>(start + i % 200));
  }
  return values;
}

/// -10 degrees and a 64th more a column; stored scale from -10 to 15.5.
Bytes Tmp() {
  TmpFields fields;
  fields.Offset = -20.0;
  fields.Gain = 0.015625;
  fields.ScaleCenter = 2.75;
  fields.ScaleStep = 3.1875;
  for (int i = 0; i < 255 * 223; ++i) {
    fields.Counts.push_back(static_cast<std::int16_t>(640 + i % 255));
  }
  return EncodeTmp(fields);
}

/// A 4 x 2 bitmap of the indices 0, 51, 85, 102 and 255, 100, 230, 30.
Bytes Bitmap(std::int16_t lowWord, std::int16_t highWord, const Bytes& end = {}) {
  const Bytes indices = {0, 51, 85, 102, 255, 100, 230, 30};
  return Joined(EncodeBmp8(4, 2, indices, 4, Ramp(false), lowWord, highWord), end);
}

/// Frame `number` from 0: 20 degrees and `number` more, 3 x 2.
Bytes Frame(int number) {
  const auto first = static_cast<std::int16_t>(2932 + 10 * number);
  return EncodeFrameArray(3, 2,
                          std::vector<std::int16_t>{first, static_cast<std::int16_t>(first + 1),
                                                    2900, 3000, 2999, 2910});
}

Bytes Snapshot(const std::vector<Bytes>& frames) {
  SnapshotFields fields;
  fields.Header = {
      1.0F,  38024.25, static_cast<int>(frames.size()), 3, 2, -10.0F, 320.0F, 10.0F, 35.5F,
      0.75F, "C"};
  fields.Frames = frames;
  return EncodeSnapshot(fields);
}

Bytes Container(int frames) {
  Bytes file = EncodeContainerHeader({3.0F, frames, 16, 3, 2, 0.5F});
  for (int i = 0; i < frames; ++i) {
    file = Joined(file, EncodeContainerFrame(
                            {"11/12/2013 01:02:03 PM", 253.2F, 393.2F, 283.2F, 308.7F}, Frame(i)));
  }
  return file;
}

const Bytes kJpeg = {0xFF, 0xD8, 0xFF, 0xE0, 1, 2, 3, 4, 5, 0, 0xFF, 0xD9, 77};

Bytes SitWithVisible(char code) {
  SitFields fields;
  fields.SoundExt = std::string("WA") + code;
  fields.Counts.assign(76800, 2000);
  fields.Attachment = Joined(Bytes(8), kJpeg);
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

TEST_F(ToolKinds, EveryKindGivesItsFactsAndItsExactTemperatures) {
  LegacyFields legacy;
  legacy.OffsetText = "  21.5";
  legacy.GainCode = '7';
  legacy.Values = Filled<std::uint8_t>(255 * 207, 28);
  const Bytes trailer = {0, 0,    0,    0,    0,    0,    0,    0,    0,
                         0, 0x00, 0xE6, 0x00, 0x1E, 0x0C, 0x3C, 0x0B, 0x74};
  struct Case {
    const char* Name;
    Bytes Content;
    const char* Facts;
    const char* FirstCells;
    const char* LastCells;
    int Columns, Rows;
  };
  const Case cases[] = {
      {"t.tmp", Tmp(), R"({"Kind": "TMP", "IsLegacy8Bit": false, "TempMax": -6.03125})",
       "-10,-9.984375,-9.96875,", ",-6.046875,-6.03125\n", 255, 223},
      {"l.tmp", EncodeLegacyTmp(legacy),
       R"({"IsLegacy8Bit": true, "PixelGain": 2, "TempMax": 46.25})", "-3.5,-3.25,-3,", ",42.5\n",
       255, 207},
      {"b.bin", EncodeBin(Filled<std::int16_t>(76800, 2732)), R"({"Kind": "SIT", "SitTempMax": 19.9,
        "CurrentFileName": "B.BIN"})",
       "0,0.1,0.2,", ",19.8,19.9\n", 320, 240},
      {"m.bmp", Bitmap(28013, 18, trailer), R"({"PaletteTempAt255": 42.5, "TempMin": 17})",
       "17,22.1,25.5,27.2\n", ",27,40,20\n", 4, 2},
      {"x.txi", Bitmap(-200, 1000), R"({"Kind": "TXI", "ScaleMin": -20})", "-20,4,20,28\n100,",
       "\n", 4, 2},
      {"s.rti", Snapshot({Frame(0), Frame(1)}), R"({"Kind": "RTI", "FrameCount": 2,
        "CurrentFrame": 1, "TempMin": 16.8, "Memo": "2"})",
       "20,20.1,16.8\n", "26.8,26.7,17.8\n", 3, 2},
      {"c.rti", Container(4), R"({"FrameCount": 4, "ImageTime": "01:02:03 PM"})", "20,20.1,16.8\n",
       "26.8,26.7,17.8\n", 3, 2}};
  for (const Case& c : cases) {
    Write(c.Name, c.Content);
    const std::string name = std::string("@") + c.Name;
    const QJsonObject report = Info(name.c_str());
    ExpectFacts(report, c.Facts);
    EXPECT_EQ(report.value(QStringLiteral("Problems")), QJsonValue(QJsonArray()));
    const QByteArray csv = Export(name.c_str(), "@t.csv");
    EXPECT_THAT(csv.toStdString(), StartsWith(c.FirstCells)) << c.Name;
    EXPECT_TRUE(csv.endsWith(c.LastCells)) << c.Name << csv.right(40).toStdString();
    EXPECT_EQ(csv.count('\n'), c.Rows) << c.Name;
    EXPECT_EQ(csv.count(','), (c.Columns - 1) * c.Rows) << c.Name;
  }
}

TEST_F(ToolKinds, EveryFrameOfTheThreeSequenceFormsIsWithinReach) {
  Write("s.rti", Snapshot({Frame(0), EncodeEmptyFrameArray(), Frame(2)}));
  Write("c.rti", Container(3));
  EXPECT_TRUE(Export("@c.rti", "@f.csv", {"--frame", "1"}).startsWith("20,"));
  EXPECT_TRUE(Export("@c.rti", "@f.csv", {"--frame", "2"}).startsWith("21,21.1,"));
  EXPECT_TRUE(Export("@c.rti", "@f.csv", {"--frame", "3"}).startsWith("22,"));
  // A frame's own file comes first.
  Write("c-001.APD", Frame(30));
  EXPECT_TRUE(Export("@c.rti", "@f.csv", {"--frame", "2"}).startsWith("50,50.1,"));
  EXPECT_TRUE(Export("@c.rti", "@f.csv", {"--frame", "3"}).startsWith("22,"));
  const Outcome third = Run({"export", "@s.rti", "-o", "@third.csv", "--frame", "3"});
  EXPECT_EQ(third.Status, 0);
  EXPECT_THAT(third.Error, HasSubstr("warning: 1 of 3 frames cannot be read"));
  EXPECT_TRUE(ReadAll(Path("third.csv")).startsWith("22,"));
  Write("t.tmp", Tmp());
  ExpectRefused({"export", "@s.rti", "-o", "@x.csv", "--frame", "2"}, "frame 2 cannot be read");
  ExpectRefused({"export", "@s.rti", "-o", "@x.csv", "--frame", "4"}, "there is no frame 4");
  ExpectRefused({"export", "@c.rti", "-o", "@x.csv", "--frame", "32767"},
                "there is no frame 32767");
  ExpectRefused({"export", "@t.tmp", "-o", "@x.csv", "--frame", "1"}, "no frames");
}

TEST_F(ToolKinds, ATxiFileCarriesItsRangeInTheTwoWords) {
  Write("t.tmp", Tmp());
  const auto word = [](const QByteArray& file, qsizetype at) {
    return static_cast<std::int16_t>(static_cast<std::uint8_t>(file[at]) |
                                     static_cast<std::uint8_t>(file[at + 1]) << 8);
  };
  struct Case {
    std::vector<const char*> Options;
    int LowWord, HighWord;
    int LastIndex;  // Of the top row: -6.03125 degrees.
  };
  for (const Case& c : {Case{{}, -100, 155, 40},  // 39.7
                        Case{{"--unit", "F"}, -100, 155, 40},
                        Case{{"--range=-10.04:-0.0"}, -100, 0, 101},  // 101.2, drawn from -10.0 on.
                        Case{{"--range", "14:32", "--unit", "F"}, -100, 0, 101},
                        Case{{"--range=-100:4000"}, -1000, -7233, 6}}) {  // 5.8
    const QByteArray file = Export("@t.tmp", "@x.txi", c.Options);
    ASSERT_EQ(file.size(), 1078 + 256 * 223);  // 255 columns take 256 bytes a row.
    EXPECT_EQ(file.left(2), "BM");
    EXPECT_EQ(word(file, 6), c.LowWord);
    EXPECT_EQ(word(file, 8), c.HighWord);
    EXPECT_EQ(static_cast<std::uint8_t>(file[1078 + 222 * 256 + 254]), c.LastIndex);
    const QJsonObject report = Info("@x.txi");
    EXPECT_EQ(report[QStringLiteral("Kind")].toString().toStdString(), "TXI");
    EXPECT_EQ(report[QStringLiteral("ScaleMin")].toDouble(), c.LowWord / 10.0);
  }
  ASSERT_TRUE(QFile::remove(Path("x.txi")));
  // The words would say 3000 degrees more for each of these.
  for (const char* range :
       {"--range=-50:-10", "--range=-900:4000", "--range=0:6600", "--range=-4000:0"}) {
    ExpectRefused({"export", "@t.tmp", "-o", "@x.txi", range}, "cannot hold the range");
  }
  Write("p.bmp", Bitmap(0, 0));
  ExpectRefused({"export", "@p.bmp", "-o", "@x.txi"}, "no temperatures");
}

TEST_F(ToolKinds, TheNumberOfJobsDoesNotChangeTheOutput) {
  std::vector<std::string> names;
  for (int i = 0; i < 24; ++i) {
    names.push_back(std::to_string(i) + (i % 3 == 0 ? ".tmp" : i % 3 == 1 ? ".txi" : ".rti"));
    Write(names.back().c_str(), i % 3 == 0   ? Tmp()
                                : i % 3 == 1 ? Bitmap(static_cast<std::int16_t>(-i), 1000)
                                             : Snapshot({Frame(i)}));
    names.back().insert(0, "@");
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
  ExpectRefused({"visible", "@v.jpg", "-o", "@x.jpg"}, "the file is a JPEG picture");
  ExpectRefused({"visible", "@missing.sit", "-o", "@x.jpg"}, "No such file");
  EXPECT_EQ(ReadAll(Path("v.sit")).size(), 156168 + std::ssize(kJpeg));
}

TEST_F(ToolKinds, WhatHoldsNoImageIsRefusedWithAPlainReason) {
  Bytes text(5000, '.');
  text[100] = '\n';
  Write("text.tmp", text);
  Write("text.bin", text);
  Write("jpeg.sit", kJpeg);
  Write("jpeg.rti", Joined(kJpeg, Bytes(5000)));
  Write("cut.rti", Bytes(500));
  Write("far.bmp", Bitmap(28013, -18));
  ExpectRefused({"info", "@text.tmp"}, "/text.tmp: the file is text, not a TMP image");
  ExpectRefused({"export", "@text.bin", "-o", "@x.png"}, "the file is text, not a BIN image");
  ExpectRefused({"export", "@jpeg.sit", "-o", "@x.png"}, "the file is a JPEG picture");
  ExpectRefused({"info", "@jpeg.rti"}, "the file is a JPEG picture, not a snapshot");
  ExpectRefused({"info", "@cut.rti"}, "shorter than the trailer");
  const Outcome outcome = Run({"export", "@far.bmp", "-o", "@far.png"});
  EXPECT_EQ(outcome.Status, 0);
  EXPECT_THAT(outcome.Error, HasSubstr("warning: the temperature trailer does not lie inside"));
}

}  // namespace
}  // namespace tessa::testing
