#include <gmock/gmock.h>
#include <sys/stat.h>

#include "camera/card_link.h"
#include "camera/download_files.h"
#include "camera/download_ini.h"
#include "core/path_bytes.h"
#include "scripted_camera.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

class CardFaults : public ::testing::Test {
 protected:
  CardFaults() {
    QDir().mkpath(Path("card/DCIM"));
    QDir().mkdir(Path("to"));
    Chmod("", 0755);  // For ordinary users.
    download_.BarPause = std::chrono::milliseconds(0);
    download_.Options.TargetPath = Path("to");
    download_.Options.Bmp = 1;
  }
  QString Path(const char* name) const { return folder_.Path(QString::fromUtf8(name)); }
  QByteArray Content(const char* name) const { return ReadAll(Path(name)); }
  void Write(const char* name, const Bytes& content) const {
    folder_.Write(QString::fromUtf8(name), content);
  }
  void Chmod(const char* name, mode_t mode) const {
    ASSERT_EQ(::chmod(PathToBytes(Path(name)).constData(), mode), 0) << name;
  }
  std::string Connect() {
    download_.Begin();
    download_.dwnInitCam();
    return download_.State.Fault.toStdString();
  }
  std::string Run(const std::vector<int>& replies) {
    Connect();
    replies_.Replies = replies;
    download_.cmdDownloadAll();
    return download_.State.Fault.toStdString();
  }
  int ConvertedWidth(const Bytes& image) {
    Write("to/a.sit", image);
    conversion_.dwnLoadThumbSIT(Path("to/a.sit"));
    return conversion_.PicBuf2.BufWidth();
  }
  static Bytes WithPhotograph(int width, int height) {
    SitFields fields;
    fields.SoundExt = {'\0', '\0', '\x02'};
    QImage photograph(width, height, QImage::Format_RGB888);
    photograph.fill(Qt::red);
    fields.Attachment = Joined(Bytes(8), EncodedJpeg(photograph));
    fields.Counts.resize(std::size_t{320} * 240);
    return EncodeSit(fields);
  }

  TestFolder folder_;
  CardLink card_{folder_.Path(QStringLiteral("card"))};
  ApplicationFolder program_ = BuiltProgramFolder();
  Strings words_;
  Palettes palettes_;
  DownloadConversion conversion_{words_, palettes_};
  OneAnswer dialogs_;
  ScriptedReplies replies_;
  Progress progress_;
  CameraDownload download_{{card_, words_, conversion_, program_, dialogs_, replies_, progress_}};
};

TEST_F(CardFaults, APhotographNeedsNoTextAndALargeOneWaitsForItsTurn) {
  std::counting_semaphore<> turns(0);
  conversion_.LargePhotographs = &turns;
  conversion_.Options.Overlay[DownloadOptions::kVisible] = 1;
  EXPECT_EQ(ConvertedWidth(WithPhotograph(640, 480)), 645) << "at once";
  turns.release();
  EXPECT_EQ(ConvertedWidth(WithPhotograph(2001, 1000)), 645);
  EXPECT_TRUE(turns.try_acquire()) << "the turn is given back";
}

TEST_F(CardFaults, AnEmptyImageAndAFolderThatCannotBeListedAreTold) {
  Write("card/a.sit", {});
  EXPECT_THAT(Run({}), ::testing::HasSubstr("a.sit: the file is empty"));
  Chmod("card/DCIM", 0);
  const OrdinaryUser user;
  EXPECT_THAT(Connect(), ::testing::HasSubstr("card/DCIM cannot be listed: Permission denied"));
}

TEST_F(CardFaults, OnlyAsciiEndingsAreImagesAndDeletingNamesWhatStayed) {
  Write("card/K.\u017fit", ToBytes("mine"));
  for (int i = 1; i <= 7; ++i) {
    folder_.Write(QStringLiteral("card/DCIM/%1.SiT").arg(i), ToBytes("x"));
  }
  Connect();
  Chmod("card/DCIM", 0555);
  {
    const OrdinaryUser user;
    EXPECT_FALSE(card_.DeleteAllImages());
  }
  EXPECT_THAT(card_.Fault(), ::testing::HasSubstr("card/DCIM/5.SiT: Permission denied and 2 more"));
  Chmod("card/DCIM", 0777);
  EXPECT_TRUE(card_.DeleteAllImages());
  EXPECT_EQ(Content("card/K.\u017fit"), "mine");
}

TEST_F(CardFaults, WhatIsReplacedKeepsItsRightsAndALinkLeadsNowhere) {
  Write("card/a.sit", WithPhotograph(64, 48));
  Write("to/a.sit", ToBytes("old"));
  Chmod("to/a.sit", 0600);
  QFile::link(Path("card/a.sit"), Path("to/a.bmp"));
  download_.Options.Sit = 1;
  EXPECT_EQ(Run({2, 2}), "");
  EXPECT_EQ(Content("card/a.sit"), Content("to/a.sit"));
  EXPECT_FALSE(QFileInfo(Path("to/a.sit")).permission(QFile::ReadOther));
  EXPECT_FALSE(QFileInfo(Path("to/a.bmp")).isSymLink());
  EXPECT_EQ(ConvertedWidth(CameraImage()), 320);
  EXPECT_THROW(SaveBmp(Path("to/a.bmp"), conversion_, Overwrite::kRefuse), StepFailure);
  Chmod("to/a.sit", 0444);
  const OrdinaryUser user;
  EXPECT_THROW(CheckReplaceable(Path("to/a.sit")), StepFailure);
}

TEST_F(CardFaults, AnOldSitFileStaysWhenNoPictureComesInItsPlace) {
  Write("card/a.sit", CameraImage());
  Write("to/a.sit", ToBytes("old"));
  Write("to/a.bmp", ToBytes("old"));
  for (const int picture : {3, 5}) {  // No, Cancel.
    EXPECT_EQ(Run({1, picture}), "") << picture;
    EXPECT_EQ(Content("to/a.sit") + Content("to/a.bmp"), "oldold");
  }
}

TEST_F(CardFaults, SizesNeverSayThatThereIsRoomAndAnOddPathMovesNoLine) {
  EXPECT_EQ(NeededMegabytes(1'000'001) + FreeMegabytes(1'999'999), QStringLiteral("21"));
  download_.Options.TargetPath = QStringLiteral("/a,\"b");
  const DownloadOptions read = ParseDownloadIni(DownloadIniText(download_.Options), {});
  EXPECT_TRUE(read.TargetPath == QStringLiteral("/a") && read.Bmp == 1);
}

}  // namespace
}  // namespace tessa::testing
