#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QDirIterator>

#include "test_files.h"

namespace tessa::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class ToolCard : public ToolTest {
 protected:
  ToolCard() {
    for (const char* folder : {"card", "card/DCIM", "card/empty", "to", "to2"}) {
      QDir(Path("")).mkdir(QString::fromLatin1(folder));
    }
    for (const char* name : {"card/b.sit", "card/A.SIT", "card/DCIM/c.sit"}) {
      Write(name, Image(*(name + 5)));
    }
    Write("card/notes.txt", ToBytes("mine"));
  }
  /// Counts from `first` on, with a photograph.
  static Bytes Image(int first = 0) {
    SitFields fields;
    for (int i = 0; i < 320 * 240; ++i) {
      fields.Counts.push_back(static_cast<std::int16_t>((first + i) % 400));
    }
    fields.SoundExt = {'\0', '\0', '\x02'};
    fields.Attachment = Joined(Bytes(8), VisibleJpeg());
    return EncodeSit(fields);
  }
  /// All files below a folder.
  std::string Files(const char* folder) const {
    QStringList files;
    QDirIterator entries(Path(folder), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
      files += QDir(Path(folder)).relativeFilePath(entries.next());
    }
    files.sort();
    return files.join(QLatin1Char(' ')).toStdString();
  }
  Outcome Download(std::vector<const char*> options, const char* to = "@to") const {
    options.insert(options.begin(), {"card", "download", "@card", "--to", to});
    return Run(options);
  }
};

constexpr const char* kCardFiles = "A.SIT DCIM/c.sit b.sit notes.txt";

TEST_F(ToolCard, ListsFoldersAndImagesAndDeletesThemAlone) {
  const Outcome list = Run({"card", "list", "@card"});
  EXPECT_EQ(list.Status, 0) << list.Error;
  EXPECT_EQ(list.Out, "CF:\\\n  A.SIT\n  b.sit\nDCIM\n  c.sit\nempty\n3 images in 3 folders\n");
  const Outcome json = Run({"card", "list", "@card", "--json"});
  ExpectFacts(QJsonDocument::fromJson(QByteArray::fromStdString(json.Out)).object(),
              R"({"ImageCount": 3, "Folders": [{"Name": "CF:\\", "Images": ["A.SIT", "b.sit"]},
                  {"Name": "DCIM", "Images": ["c.sit"]}, {"Name": "empty", "Images": []}]})");
  EXPECT_EQ(Run({"card", "delete-all", "@card"}).Status, 2);
  EXPECT_EQ(Files("card"), kCardFiles);
  const Outcome gone = Run({"card", "delete-all", "@card", "--yes"});
  EXPECT_EQ(gone.Status, 0) << gone.Error;
  EXPECT_THAT(gone.Out, HasSubstr("\n3 images deleted\n"));
  EXPECT_EQ(Files("card"), "notes.txt");
}

TEST_F(ToolCard, BringsWhatIsWantedFromWhereItIsWanted) {
  const Outcome all = Download({"--sit", "--bmp"});
  EXPECT_EQ(all.Status, 0) << all.Error;
  EXPECT_THAT(all.Out, HasSubstr("3 images downloaded to "));
  EXPECT_EQ(Files("to"), "A.SIT A.bmp DCIM/c.bmp DCIM/c.sit b.bmp b.sit");
  EXPECT_EQ(ReadAll(Path("to/A.SIT")), ReadAll(Path("card/A.SIT")));
  EXPECT_TRUE(QFileInfo(Path("to/empty")).isDir());
  EXPECT_EQ(Download({"--jpg", "--folder", "ROOT"}, "@to2").Status, 0);
  EXPECT_EQ(Files("to2"), "A.jpg b.jpg");
  EXPECT_EQ(Files("card"), kCardFiles);
}

TEST_F(ToolCard, PicturesCarryWhatWasAskedForWhateverTheNumberOfJobs) {
  const std::vector<const char*> options = {
      "--bmp",        "--bar",      "--visible", "--date", "--time",
      "--emissivity", "--extremes", "--memo",    "--jobs", "1"};
  ASSERT_EQ(Download(options).Status, 0);
  const QSize size = QImage(Path("to/A.bmp")).size();
  EXPECT_TRUE(size.width() > 320 + 25 + 320 && size.height() > 240 + 4 * 8);
  std::vector<const char*> more = options;
  more.back() = "4";
  ASSERT_EQ(Download(more, "@to2").Status, 0);
  for (const char* name : {"A.bmp", "b.bmp", "DCIM/c.bmp"}) {
    EXPECT_EQ(ReadAll(Path("to/") + QString::fromLatin1(name)),
              ReadAll(Path("to2/") + QString::fromLatin1(name)))
        << name;
  }
  const auto pixels = [&](std::vector<const char*> scale) {
    scale.insert(scale.begin(), {"--bmp", "--replace"});
    EXPECT_EQ(Download(scale).Status, 0);
    return ReadAll(Path("to/A.bmp"));
  };
  EXPECT_NE(pixels({"--scale", "auto"}), pixels({"--scale", "0:10"}));
  EXPECT_EQ(pixels({"--scale", "32:50", "--unit", "F"}), pixels({"--scale", "0:10"}));
  EXPECT_NE(pixels({"--palette", "RAINBOW"}), pixels({"--palette", "0"}));
}

TEST_F(ToolCard, WhatIsThereIsRefusedSkippedOrReplaced) {
  Write("to/A.SIT", ToBytes("old"));
  Write("to/b.bmp", ToBytes("old"));
  const Outcome refused = Download({"--sit", "--bmp"});
  EXPECT_EQ(refused.Status, 1);
  EXPECT_THAT(refused.Error, HasSubstr("A.SIT is there already; --replace would replace it"));
  EXPECT_THAT(refused.Out, HasSubstr("1 image downloaded to "));
  EXPECT_THAT(refused.Out, HasSubstr(", 2 failed\n"));
  EXPECT_EQ(Files("to"), "A.SIT DCIM/c.bmp DCIM/c.sit b.bmp");
  const Outcome skipped = Download({"--sit", "--bmp", "--jpg", "--skip"});
  EXPECT_EQ(skipped.Status, 0) << skipped.Error;
  EXPECT_THAT(skipped.Out, HasSubstr("A.SIT: skipped, since "));
  // No picture of an image that was not downloaded, and the missing files of one that was.
  EXPECT_EQ(Files("to"), "A.SIT DCIM/c.bmp DCIM/c.sit b.bmp b.jpg b.sit");
  EXPECT_EQ(ReadAll(Path("to/A.SIT")) + ReadAll(Path("to/b.bmp")), "oldold");
  // Without --sit such files are nobody's business.
  EXPECT_EQ(Download({"--bmp", "--replace"}).Status, 0);
  EXPECT_EQ(ReadAll(Path("to/A.SIT")), "old");
  EXPECT_GT(ReadAll(Path("to/b.bmp")).size(), 320 * 240);
  EXPECT_EQ(Download({"--sit", "--replace"}).Status, 0);
  EXPECT_EQ(ReadAll(Path("to/A.SIT")), ReadAll(Path("card/A.SIT")));
}

TEST_F(ToolCard, NothingIsLostOnTheCardItself) {
  EXPECT_EQ(Download({"--sit"}, "@card").Status, 1);
  EXPECT_EQ(Download({"--sit", "--replace"}, "@card").Status, 0);
  EXPECT_EQ(Download({"--bmp", "--replace"}, "@card/").Status, 0);
  EXPECT_EQ(Files("card"), "A.SIT A.bmp DCIM/c.bmp DCIM/c.sit b.bmp b.sit notes.txt");
  // Nor where images of two of its folders have one name.
  Write("card/c.sit", Image());
  EXPECT_EQ(Download({"--sit", "--folder", "ROOT", "--replace"}, "@card/DCIM").Status, 1);
  const auto isImage = [&](const char* name, int first) {
    const QByteArray image = ReadAll(Path(name));
    return Bytes(image.begin(), image.end()) == Image(first);
  };
  EXPECT_TRUE(isImage("card/A.SIT", 'A'));
  EXPECT_TRUE(isImage("card/DCIM/c.sit", 'D'));
}

TEST_F(ToolCard, OneBadImageIsToldAndTheOthersAreDone) {
  Write("card/bad.sit", ToBytes("no image"));
  Write("card/a.Sit", Image());  // Its picture is another file than that of A.SIT.
  Write("card/a.sit", Image());  // Its picture would be the same file.
  ::chmod(Path("card/b.sit").toUtf8().constData(), 0444);
  const Outcome outcome = Download({"--sit", "--bmp"});
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_THAT(outcome.Error, HasSubstr("bad.sit: "));
  EXPECT_THAT(outcome.Error, HasSubstr("another image of the card becomes "));
  EXPECT_THAT(outcome.Out, HasSubstr("4 images downloaded to "));
  EXPECT_THAT(Files("to"), Not(HasSubstr("bad.bmp")));
  EXPECT_TRUE(QFileInfo(Path("to/b.sit")).permissions() & QFile::WriteOwner);
}

TEST_F(ToolCard, WhatMakesNoSenseIsRefusedAndNothingIsWritten) {
  struct Case {
    std::vector<const char*> Options;
    const char* To;
    int Status;
    const char* Reason;
  };
  for (const Case& c : std::initializer_list<Case>{
           {{}, "@to", 2, "at least one of"},
           {{"--sit", "--folder", "dcim"}, "@to", 1, "has no folder \"dcim\""},
           {{"--sit"}, "@nowhere", 1, "there is no such folder"},
           {{"--bmp", "--scale", "10:10"}, "@to", 2, "LO below HI"},
           {{"--bmp", "--palette", "PINK"}, "@to", 2, "no palette \"PINK\""},
           {{"--sit", "--skip", "--replace"}, "@to", 2, "--replace"}}) {
    const Outcome outcome = Download(c.Options, c.To);
    EXPECT_EQ(outcome.Status, c.Status) << c.Reason;
    EXPECT_THAT(outcome.Error, HasSubstr(c.Reason));
    EXPECT_EQ(Files("to") + outcome.Out, "") << c.Reason;
  }
  EXPECT_EQ(Run({"card", "list", "@nowhere"}).Status, 1);
  EXPECT_EQ(Run({"card", "delete-all", "@card/A.SIT", "--yes"}).Status, 1);
  EXPECT_EQ(Files("card"), kCardFiles);
}

}  // namespace
}  // namespace tessa::testing
