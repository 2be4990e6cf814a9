#include "test_files.h"

namespace tessa::testing {
namespace {

/// The plain image but for a few places; its extremes are -10 and 70.
Bytes Sit() {
  SitFields fields = PlainSit();
  fields.Comment = "Boiler";
  PutDegrees(fields, 0, 0, 36.609375);
  PutDegrees(fields, 1, 0, 0.0);
  PutDegrees(fields, 2, 0, 30.0);
  PutDegrees(fields, 100, 100, 70.0);
  PutDegrees(fields, 101, 100, -10.0);
  PutDegrees(fields, 319, 239, -0.015625);
  return EncodeSit(fields);
}

class Tool : public ToolTest {
 protected:
  Tool() { Write("s.sit", Sit()); }
  QByteArray Export(const std::vector<const char*>& words, const char* target) const {
    return ToolTest::Export("@s.sit", target, words);
  }
  std::string Names() const { return folder_.Names().join(QLatin1Char(' ')).toStdString(); }
};

TEST_F(Tool, InfoGivesEveryFieldItsExactValue) {
  const Outcome outcome = Run({"info", "--json", "@s.sit"});
  EXPECT_EQ(outcome.Status, 0);
  EXPECT_THAT(outcome.Error, IsEmpty());
  ExpectFacts(QJsonDocument::fromJson(QByteArray::fromStdString(outcome.Out)).object(),
              QByteArray(R"({"CurrentFileName": "S.SIT", "BufferWidth": 320, "SitTempMax": 70,
    "ScaleHighText": "40.0", "DisplayUnits": "C", "FileUnits": "C", "Comment": "Boiler", "Memo": "",
    "SitVersion": 3, "SoundEmbedded": false, "PaletteReversed": false, "IsLegacy8Bit": false,
    "Problems": [], "CurrentFile": "@", "Status": ["", "", "", "Emissivity: 0.95",
                                                   "Range: -40.0 to 120.0", "@"]})")
                  .replace('@', Path("s.sit").toUpper().toUtf8()));
  EXPECT_THAT(outcome.Out, HasSubstr("\"Emissivity\": 0.95,"));
  EXPECT_THAT(Run({"info", "@s.sit"}).Out,
              AllOf(HasSubstr("320 x 240"), HasSubstr("1/15/2026 2:30:05 PM"),
                    HasSubstr("-10.0 to 70.0 \u00B0C"), HasSubstr("20.0 to 40.0 \u00B0C")));
}

TEST_F(Tool, BrokenFilesAreReportedAndTheOthersStill) {
  Bytes cut = Sit();
  cut.resize(2000);
  Write("cut.sit", cut);
  Write("text.sit", Bytes(3000, '\n'));
  Write("notes.txt", Bytes{'x'});
  const Outcome outcome =
      Run({"info", "--json", "@none.sit", "@s.sit", "@text.sit", "@cut.sit", "@notes.txt"});
  EXPECT_EQ(outcome.Status, 1);
  for (const char* name : {"/none.sit: ", "/text.sit: ", "/notes.txt: "}) {
    EXPECT_THAT(outcome.Error, HasSubstr(name));
  }
  EXPECT_THAT(outcome.Error, HasSubstr("No such file"));
  const QJsonArray reports =
      QJsonDocument::fromJson(QByteArray::fromStdString(outcome.Out)).array();
  ASSERT_EQ(reports.size(), 2);
  EXPECT_EQ(reports[0][u"CurrentFileName"_s].toString().toStdString(), "S.SIT");
  const QJsonValue problem = reports[1][u"Problems"_s][0];
  EXPECT_EQ(problem[u"kind"_s].toString().toStdString(), "truncated");
  EXPECT_EQ(problem[u"offset"_s].toInt(), 2000);
  EXPECT_EQ(Run({"info", "@cut.sit"}).Status, 0);
}

TEST_F(Tool, CsvHoldsTheShortestDigitsThatGiveEachValueBack) {
  const QByteArray text = Export({}, "@t.csv");
  const QList<QByteArray> lines = text.split('\n');
  ASSERT_EQ(lines.size(), 241);  // The last line ends too.
  EXPECT_TRUE(lines[240].isEmpty());
  EXPECT_TRUE(lines[0].startsWith("36.609375,0,30,20,20,"));
  EXPECT_TRUE(lines[239].endsWith(",20,-0.015625"));
  for (const QByteArray& line : lines.first(240)) {
    ASSERT_EQ(line.count(','), 319);
  }
  const QByteArray fahrenheit = Export({"--unit", "F"}, "@f.csv");
  // 36.609375 x 1.8 + 32 = 97.896875
  EXPECT_TRUE(fahrenheit.startsWith("97.89687,32,86,68,")) << fahrenheit.left(40).constData();
}

TEST_F(Tool, PicturesHoldTheIndicesInTheChosenPalette) {
  const QByteArray palettes = ReadAll(QStringLiteral(TESSA_BINARY_FOLDER "/palette.dta"));
  /// Entry of palette `number` as the bitmap holds it: blue, green, red, 0.
  const auto colour = [&](int number, int entry) {
    const char* const at = palettes.constData() + number * 1024 + entry * 4;
    return QByteArray{}.append(at[2]).append(at[1]).append(at[0]).append('\0');
  };
  const QByteArray plain = Export({}, "@t.bmp");
  const QByteArray named = Export({"--palette", "hot iron", "--reverse"}, "@h.bmp");
  const QByteArray numbered = Export({"--palette", "10"}, "@n.bmp");
  ASSERT_EQ(plain.size(), 1078 + 320 * 240);
  // Stored from the bottom. 12.75 x 36.609375 - 255 = 211.8
  EXPECT_EQ(plain.mid(1078 + 239 * 320, 3).toHex(), "d40080");
  EXPECT_EQ(plain.mid(1078), named.mid(1078));
  for (const int entry : {0, 77, 255}) {
    EXPECT_EQ(plain.mid(54 + entry * 4, 4), colour(0, entry)) << entry;
    EXPECT_EQ(numbered.mid(54 + entry * 4, 4), colour(10, entry)) << entry;
    EXPECT_EQ(named.mid(54 + entry * 4, 4), colour(10, 255 - entry)) << entry;
  }
  Export({"--palette", "10"}, "@t.png");
  EXPECT_EQ(QImage(Path("t.png")).pixel(100, 100), QImage(Path("n.bmp")).pixel(100, 100));
  Export({"--palette", "10"}, "@t.jpg");
  EXPECT_EQ(QImage(Path("t.jpg")).size(), QSize(320, 240));
}

TEST_F(Tool, TheRangeDecidesWhichTemperaturesSpanThePalette) {
  const auto first = [this](std::vector<const char*> words) {
    const QByteArray bitmap = Export(std::move(words), "@r.bmp");
    const qsizetype top = 1078 + 239 * 320;
    return std::array<int, 2>{static_cast<std::uint8_t>(bitmap.at(top + 1)),
                              static_cast<std::uint8_t>(bitmap.at(top + 2))};
  };
  // 0 and 30 degrees.
  EXPECT_THAT(first({"--range", "stored"}), ElementsAre(0, 128));
  EXPECT_THAT(first({"--range", "image"}), ElementsAre(32, 128));    // 31.9 and 127.5
  EXPECT_THAT(first({"--range", "-30:30"}), ElementsAre(128, 255));  // 127.5
  EXPECT_THAT(first({"--range", "30:-30"}), ElementsAre(128, 0));
  EXPECT_THAT(first({"--range=-200:1000"}), ElementsAre(42, 49));  // 42.5 to even; 48.9
  EXPECT_THAT(first({"--range", "32:122", "--unit", "F"}), ElementsAre(0, 153));  // 0 to 50
}

TEST_F(Tool, NothingIsOverwrittenUnasked) {
  Write("old.csv", Bytes{'o', 'l', 'd'});
  Outcome outcome = Run({"export", "@s.sit", "-o", "@old.csv"});
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_THAT(outcome.Error, HasSubstr("--force"));
  EXPECT_EQ(ReadAll(Path("old.csv")), "old");
  EXPECT_EQ(Run({"export", "@s.sit", "-o", "@old.csv", "--force"}).Status, 0);
  EXPECT_GT(ReadAll(Path("old.csv")).size(), 76800 * 2);

  Write("own.bmp", EncodeBmp8(1, 1, Bytes{7}, 1, {}));
  const QByteArray before = ReadAll(Path("own.bmp"));
  ASSERT_TRUE(QFile::link(Path("own.bmp"), Path("link.bmp")));
  for (const char* target : {"@own.bmp", "@link.bmp", "@./own.bmp"}) {
    outcome = Run({"export", "@own.bmp", "-o", target, "--force"});
    EXPECT_EQ(outcome.Status, 1) << target;
    EXPECT_EQ(ReadAll(Path("own.bmp")), before);
  }
  EXPECT_EQ(Names(), "link.bmp old.csv own.bmp s.sit");
}

TEST_F(Tool, SeveralImagesGoIntoAFolderAndOneFailureStopsNoOther) {
  Write("b.SIT", Sit());
  Write("bad.sit", Bytes(5000, '\n'));
  const Outcome outcome =
      Run({"export", "@s.sit", "@bad.sit", "@b.SIT", "--folder", "@out/deep", "--to", "PNG"});
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_THAT(outcome.Error, HasSubstr("/bad.sit: "));
  EXPECT_EQ(
      QDir(Path("out/deep")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
      (QStringList{u"b.png"_s, u"s.png"_s}));

  Write("s.bmp", EncodeBmp8(1, 1, Bytes{7}, 1, {}));
  EXPECT_EQ(Run({"export", "@s.sit", "@s.bmp", "--folder", "@two", "--to", "png"}).Status, 2);
  EXPECT_FALSE(QFileInfo::exists(Path("two")));
  EXPECT_EQ(Names(), "b.SIT bad.sit out s.bmp s.sit");
}

TEST_F(Tool, WhatAPictureDoesNotHoldCannotBeExported) {
  Write("p.bmp", EncodeBmp8(2, 1, Bytes{7, 9}, 2, {}));
  for (const auto& words : std::vector<std::vector<const char*>>{
           {"export", "@p.bmp", "-o", "@x.csv"},
           {"export", "@p.bmp", "-o", "@x.tif"},
           {"export", "@p.bmp", "-o", "@x.png", "--range", "0:50"},
           {"export", "@none.sit", "-o", "@x.png"},
           {"export", "@s.sit", "-o", "@none/x.png"}}) {
    const Outcome outcome = Run(words);
    EXPECT_EQ(outcome.Status, 1) << words[3];
    EXPECT_THAT(outcome.Error, HasSubstr("tessatool: ")) << words[3];
  }
  EXPECT_EQ(Names(), "p.bmp s.sit");
}

TEST_F(Tool, WrongCallsEndWithStatusTwo) {
  std::vector<std::vector<const char*>> calls = {
      {}, {"look", "@s.sit"}, {"info"}, {"info", "--jason", "@s.sit"}};
  for (const std::vector<const char*>& options :
       std::vector<std::vector<const char*>>{{},
                                             {"-o", "@x.gif"},
                                             {"-o", "@x.png", "--folder", "@y", "--to", "png"},
                                             {"-o", "@x.png", "--palette", "PINK"},
                                             {"-o", "@x.png", "--unit", "K"},
                                             {"-o", "@x.png", "--range", "nan:5"},
                                             {"-o", "@x.png", "--jobs", "0"}}) {
    calls.push_back({"export", "@s.sit"});
    calls.back().insert(calls.back().end(), options.begin(), options.end());
  }
  for (const auto& words : calls) {
    const Outcome outcome = Run(words);
    EXPECT_EQ(outcome.Status, 2) << (words.empty() ? "no command" : words.back());
    EXPECT_THAT(outcome.Error, ::testing::Not(IsEmpty()));
  }
  EXPECT_EQ(Run({"--help"}).Status, 0);
  EXPECT_EQ(Names(), "s.sit");
}

}  // namespace
}  // namespace tessa::testing
