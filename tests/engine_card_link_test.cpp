#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include "camera/card_link.h"
#include "camera/download_ini.h"
#include "core/path_bytes.h"
#include "core/steps.h"
#include "scripted_camera.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

using ::testing::HasSubstr;

QString Text(const char* text) {
  return QString::fromUtf8(text);
}

class Card : public ::testing::Test {
 protected:
  Card() {
    for (const char* folder : {"card", "card/DCIM", "card/.Trash", "card/empty", "to"}) {
      QDir(folder_.Path({})).mkdir(Text(folder));
    }
    for (const char* name :
         {"card/b.sit", "card/A.SIT", "card/notes.txt", "card/.hidden.sit", "card/sit",
          "card/DCIM/c.Sit", "card/DCIM/c.bmp", "card/.Trash/d.sit"}) {
      folder_.Write(Text(name), ToBytes(name));
    }
    QFile::link(folder_.Path(Text("card/A.SIT")), folder_.Path(Text("card/link.sit")));
    QFile::link(folder_.Path(Text("to")), folder_.Path(Text("card/elsewhere")));
    folder_.Write(Text("to/precious.sit"), ToBytes("precious"));
  }
  QString Path(const char* name) const { return folder_.Path(Text(name)); }
  /// Folders and their images.
  static std::string List(CameraLink& card) {
    QStringList list;
    for (int i = 0; i < card.FolderCount(); ++i) {
      list += card.FolderName(i) + Text(":");
      for (int k = 0; k < card.ImageCount(i); ++k) {
        list += card.ImageFileName(i, k);
      }
    }
    return list.join(QLatin1Char(' ')).toStdString();
  }
  std::string Names(const char* folder) const {
    return QDir(Path(folder))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
        .join(QLatin1Char(' '))
        .toStdString();
  }

  TestFolder folder_;
};

TEST_F(Card, HoldsTheImagesOfItsFoldersAndNothingElse) {
  CardLink card(Path("card"));
  ASSERT_TRUE(card.OpenLink() && card.ReadCameraInfo()) << card.Fault();
  EXPECT_EQ(List(card), "CF:\\: A.SIT b.sit DCIM: c.Sit empty:");
  EXPECT_EQ(card.ImageSize(1, 0), std::string("card/DCIM/c.Sit").size());
  EXPECT_FALSE(card.DownloadImage(0, 2, Path("to/x.sit")));
  CardLink none(Path("nowhere"));
  EXPECT_FALSE(none.OpenLink() || none.ReadCameraInfo());
  EXPECT_FALSE(none.Fault().empty());
}

TEST_F(Card, IsLookedForWhenTheChosenFolderIsGone) {
  const auto search = [this] {
    return QStringList{Path("to/none"), Path("card/empty"), Path("card")};
  };
  CardLink card(Path("nowhere"), search);
  ASSERT_TRUE(card.OpenLink());
  EXPECT_EQ(card.Folder(), Path("card"));
  card.Choose(Path("to"));
  ASSERT_TRUE(card.OpenLink());
  EXPECT_EQ(card.Folder(), Path("to"));
  // Images one level below make a card, too.
  QFile::remove(Path("card/A.SIT"));
  QFile::remove(Path("card/b.sit"));
  EXPECT_TRUE(HoldsCardImages(Path("card")));
  EXPECT_FALSE(HoldsCardImages(Path("card/empty")));
}

TEST_F(Card, ABroughtImageIsWholeWritableAndOfItsTime) {
  ASSERT_EQ(::chmod(PathToBytes(Path("card/A.SIT")), 0444), 0);
  const std::array<timespec, 2> times = {timespec{1000, 0}, timespec{2000, 0}};
  ::utimensat(AT_FDCWD, PathToBytes(Path("card/A.SIT")), times.data(), 0);
  CardLink card(Path("card"));
  ASSERT_TRUE(card.OpenLink() && card.ReadCameraInfo());
  ASSERT_TRUE(card.DownloadImage(0, 0, Path("to/A.SIT"))) << card.Fault();
  EXPECT_EQ(ReadAll(Path("to/A.SIT")), "card/A.SIT");
  struct stat status {};
  ::stat(PathToBytes(Path("to/A.SIT")), &status);
  EXPECT_EQ(status.st_mode & 0777, 0644u);
  EXPECT_EQ(status.st_mtim.tv_sec, 2000);
  // Pulled out in the middle: nothing of the image is left, and the reason is known.
  QFile::remove(Path("card/b.sit"));
  EXPECT_FALSE(card.DownloadImage(0, 1, Path("to/b.sit")));
  EXPECT_THAT(card.Fault(), HasSubstr("No such file"));
  EXPECT_FALSE(card.DownloadImage(0, 0, Path("to/precious.sit"))) << "it is there";
  EXPECT_EQ(Names("to"), "A.SIT precious.sit");
}

TEST_F(Card, DeletingRemovesWhatWasListedAndNothingElse) {
  CardLink card(Path("card"));
  EXPECT_FALSE(card.DeleteAllImages()) << "it was not read";
  ASSERT_TRUE(card.OpenLink() && card.ReadCameraInfo());
  folder_.Write(Text("card/later.sit"), ToBytes("later"));
  // Something else has taken an image's place: it is left, and told.
  QFile::remove(Path("card/b.sit"));
  QDir(Path("card")).mkdir(Text("b.sit"));
  EXPECT_FALSE(card.DeleteAllImages());
  EXPECT_EQ(card.Fault(), "images are left on the card");
  EXPECT_EQ(Names("card"),
            ".hidden.sit .Trash b.sit DCIM elsewhere empty later.sit link.sit notes.txt sit");
  EXPECT_EQ(Names("card/DCIM") + "|" + Names("card/.Trash") + "|" + Names("to"),
            "c.bmp|d.sit|precious.sit");
  EXPECT_TRUE(card.DeleteAllImages()) << "of what the card was re-read to hold";
  EXPECT_EQ(List(card), "CF:\\: b.sit: DCIM: empty:");
  EXPECT_FALSE(QFileInfo::exists(Path("card/later.sit")));
}

TEST_F(Card, DownloadedOntoItselfLosesNothing) {
  folder_.Write(Text("card/A.SIT"), CameraImage());
  CardLink card(Path("card"));
  ApplicationFolder program = BuiltProgramFolder();
  const Strings words;
  const Palettes palettes;
  DownloadConversion conversion(words, palettes);
  OneAnswer dialogs;
  ScriptedReplies replies;
  Progress progress;
  CameraDownload download({card, words, conversion, program, dialogs, replies, progress});
  download.BarPause = std::chrono::milliseconds(0);
  download.Options.TargetPath = Path("card/");
  download.Options.Bmp = 1;
  for (const int sit : {0, 1}) {
    download.Options.Sit = sit;
    replies.Replies = {2, 2};
    download.Begin();
    download.dwnInitCam();
    download.cmdDownload();
    EXPECT_EQ(download.State.Status, Text("Download Complete"));
    const QByteArray image = ReadAll(Path("card/A.SIT"));
    EXPECT_EQ(Bytes(image.begin(), image.end()), CameraImage());
    EXPECT_EQ(ReadAll(Path("card/b.sit")), "card/b.sit");
    EXPECT_TRUE(QFileInfo::exists(Path("card/A.bmp")));
    QFile::remove(Path("card/A.bmp"));
    replies.Replies.clear();
  }
  // Nor where images of two of its folders have one name.
  folder_.Write(Text("card/DCIM/A.SIT"), ToBytes("another"));
  download.Options.TargetPath = Path("card/DCIM");
  replies.Replies = {2, 2};
  download.Begin();
  download.dwnInitCam();
  download.cmdDownload();
  EXPECT_EQ(ReadAll(Path("card/DCIM/A.SIT")), "another");
  EXPECT_THAT(download.State.Fault.toStdString(), HasSubstr("keeps another image there"));
}

TEST(DownloadIni, GoesByThePlaceOfEachValueAndKeepsOddPaths) {
  const QByteArray usual =
      "/to\r\n 3 \r\n 1 \r\n 0 \r\n 1 \r\n200\r\n 2 \r\n 1 \r\n-5.5\r\n10\r\n 1 "
      "\r\n 1 \r\n 0 \r\n 1 \r\n 0 \r\n 1 \r\n 1 \r\n";
  const DownloadOptions options = ParseDownloadIni(usual, {});
  EXPECT_EQ(options.PaletteIndex, 3);
  EXPECT_EQ(options.JpegQuality + options.MinTemp + options.MaxTemp, Text("200-5.510"));
  EXPECT_THAT(options.Overlay, ::testing::ElementsAre(1, 0, 1, 0, 1, 1));
  EXPECT_EQ(DownloadIniText(options), usual);
  EXPECT_EQ(ParseDownloadIni("", Text("/home")).TargetPath, Text("/home"));
  // A comma ends a value as a line does; numbers that no control takes leave it as it was.
  EXPECT_EQ(ParseDownloadIni("  /a,7\n1\n1\n", {}).PaletteIndex, 7);
  EXPECT_EQ(ParseDownloadIni("/a\n40000\n7\n", {}).PaletteIndex, 0);
  EXPECT_EQ(ParseDownloadIni("/a\n40000\n7\n", {}).Sit, 0);
  const TestFolder folder;
  const ApplicationFolder program(folder.Path({}), folder.Path({}));
  for (const char* path : {"/with, comma", "/with \"quotes\"", "/two\nlines, even",
                           "  blanks before", "/no\xffutf8", "\""}) {
    DownloadOptions odd = options;
    odd.TargetPath = PathFromBytes(path);
    odd.MinTemp = Text("10,5");
    ASSERT_TRUE(dwnSaveUserInfo(odd, program));
    const DownloadOptions read = dwnGetUserInfo(program);
    EXPECT_TRUE(*path == '"' || DownloadIniText(read) == DownloadIniText(odd)) << path;
    EXPECT_EQ(read.PaletteIndex, 3) << path;
  }
  EXPECT_FALSE(dwnSaveUserInfo(options, {Text("/proc/none"), Text("/proc/none")}));
}

TEST(DownloadChoices, OddQualitiesAreTheUsualOneAndLinesAreCounted) {
  DownloadOptions options;
  for (const auto& [text, quality] : {std::pair("4.99", 95), {"5", 5}, {"101", 95}, {"x", 95}}) {
    options.JpegQuality = Text(text);
    EXPECT_EQ(JpegQualityOf(options), quality) << text;
  }
  options.Bmp = 1;
  options.Overlay = {1, 1, 1, 0, 1, 1};
  EXPECT_EQ(OverlayLines(options), 3) << "date and time share a line, the photograph has none";
}

}  // namespace
}  // namespace tessa::testing
