#include <gmock/gmock.h>

#include "camera/camera_download.h"
#include "core/path_bytes.h"
#include "scripted_camera.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

using ::testing::HasSubstr;

QString Text(const char* text) {
  return QString::fromUtf8(text);
}

class CameraWindow : public ::testing::Test {
 protected:
  CameraWindow() {
    download_.BarPause = std::chrono::milliseconds(0);
    download_.Options.TargetPath = folder_.Path(QString());
    camera_.Folders = {{kCameraRoot, {Text("a.SIT"), Text("b.SIT"), Text("c.SIT")}}};
  }
  void Connect() {
    download_.Begin();
    download_.dwnInitCam();
  }
  /// "S", "B" and "J" for the formats.
  void Want(const std::string& formats) {
    download_.Options.Sit = formats.find('S') == std::string::npos ? 0 : 1;
    download_.Options.Bmp = formats.find('B') == std::string::npos ? 0 : 1;
    download_.Options.Jpeg = formats.find('J') == std::string::npos ? 0 : 1;
  }
  void PutOld(const QString& name) { folder_.Write(name, ToBytes("old")); }
  /// The files below the target folder; those that were there before as "=old".
  std::string Files() const {
    QStringList files;
    for (const QString& name : folder_.Names()) {
      const QString path = folder_.Path(name);
      if (!QFileInfo(path).isDir()) {
        files += ReadAll(path) == "old" ? name + QLatin1String("=old") : name;
        continue;
      }
      files += name + QLatin1Char('/');
      for (const QString& inner : QDir(path).entryList(QDir::Files | QDir::Hidden)) {
        files += name + QLatin1Char('/') + inner;
      }
    }
    files.sort();
    return files.join(QLatin1Char(' ')).toStdString();
  }
  std::string Status() const {
    const bool isRed = State().StatusColour == DownloadState::kDarkRed;
    return (isRed ? "red: " : "") + State().Status.toStdString();
  }
  std::string Buttons() const {
    return std::string(State().DownloadEnabled ? "one " : "") +
           (State().DownloadAllEnabled ? "all " : "") + (State().DeleteAllEnabled ? "delete" : "");
  }
  const DownloadState& State() const { return download_.State; }

  TestFolder folder_;
  ApplicationFolder program_ = BuiltProgramFolder();
  Strings words_;
  Palettes palettes_;
  ScriptedCamera camera_;
  DownloadConversion conversion_{words_, palettes_};
  OneAnswer dialogs_;
  ScriptedReplies replies_;
  ScriptedEvents events_;
  CameraDownload download_{{camera_, words_, conversion_, program_, dialogs_, replies_, events_}};
};

TEST_F(CameraWindow, ListsTheFoldersAndEnablesWhatCanBeDone) {
  camera_.Folders = {{kCameraRoot, QStringList(12, Text("a.sit"))},
                     {Text("HOLIDAY"), {Text("b.sit")}},
                     {Text("EMPTY"), {}}};
  Connect();
  ASSERT_EQ(State().Folders.size(), 3u);
  EXPECT_EQ(State().Folders[0].Text, Text("ROOT  - 12 Images"));
  EXPECT_EQ(State().Folders[1].Text, Text("     HOLIDAY  - 1 Images"));
  EXPECT_EQ(State().ImageCount + Text("/") + State().SelectedCount, Text("13/12"));
  EXPECT_EQ(Status(), "Select Image Format");
  EXPECT_EQ(Buttons(), "delete");
  Want("B");
  download_.dwnCheckDownload();
  EXPECT_EQ(Status() + "; " + Buttons(), "Ready; one all delete");
  download_.SelectFolder(2);
  EXPECT_EQ(State().SelectedCount + Text(" "), Text("0 "));
  EXPECT_EQ(Buttons(), "all delete");
  download_.cmdDownload();
  EXPECT_EQ(Status(), "Ready") << "an empty folder is not gone through";
}

TEST_F(CameraWindow, SaysWhyThereIsNothingToDo) {
  camera_.Opens = false;
  Connect();
  EXPECT_EQ(Status() + "; " + Buttons(), "red: Error Initializing Camera; ");
  EXPECT_EQ(State().Fault, Text("the cable is loose"));
  camera_.Opens = true;
  camera_.Reads = false;
  Connect();
  EXPECT_EQ(Status() + "; " + Buttons(), "red: Failed to Read Camera Info; ");
  camera_.Reads = true;
  Connect();
  EXPECT_EQ(Status() + "; " + Buttons(), "Select Image Format; delete");
  EXPECT_FALSE(State().Busy || State().BusyPointer);
}

struct ReplyCase {
  const char* Formats;
  const char* Existing;
  std::vector<int> Replies;
  const char* Asked;
  const char* Files;
  const char* Status;
};

class CameraReplies : public CameraWindow, public ::testing::WithParamInterface<ReplyCase> {};

TEST_P(CameraReplies, DecideWhatIsWritten) {
  const ReplyCase& c = GetParam();
  for (const QString& name : Text(c.Existing).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    PutOld(name);
  }
  Want(c.Formats);
  replies_.Replies = c.Replies;
  Connect();
  download_.cmdDownload();
  EXPECT_EQ(replies_.Asked.join(QLatin1Char(' ')).toStdString(), c.Asked);
  EXPECT_TRUE(replies_.Replies.empty());
  EXPECT_EQ(Files(), c.Files);
  EXPECT_EQ(Status(), c.Status);
  EXPECT_FALSE(State().Busy || State().AbortVisible || State().PercentVisible);
}

constexpr const char* kComplete = "Download Complete";
constexpr const char* kAborted = "red: Download Aborted";
constexpr const char* kAll = "a.SIT b.SIT c.SIT";

INSTANTIATE_TEST_SUITE_P(
    Runs, CameraReplies,
    ::testing::Values(
        // A Yes is for one file and asked for again.
        ReplyCase{"S", kAll, {1, 3, 1}, kAll, "a.SIT b.SIT=old c.SIT", kComplete},
        // No to all still brings what is missing.
        ReplyCase{"S", "a.SIT c.SIT", {4}, "a.SIT", "a.SIT=old b.SIT c.SIT=old", kComplete},
        // Cancel.
        ReplyCase{"S", kAll, {1, 5}, "a.SIT b.SIT", "a.SIT b.SIT=old c.SIT=old", kAborted},
        // An image that is not downloaded is not converted, though its picture is missing.
        ReplyCase{"SB", "a.SIT", {3}, "a.SIT", "a.SIT=old b.SIT b.bmp c.SIT c.bmp", kComplete},
        // Yes to all for SIT files does not answer for pictures, which share a reply.
        ReplyCase{"SBJ",
                  "a.SIT a.bmp a.jpg b.SIT b.jpg",
                  {2, 1, 2},
                  "a.SIT a.BMP a.JPG",
                  "a.SIT a.bmp a.jpg b.SIT b.bmp b.jpg c.SIT c.bmp c.jpg",
                  kComplete},
        // Odd, and on purpose: both pictures follow the formats once one of them may be written.
        ReplyCase{"BJ",
                  "a.bmp a.jpg",
                  {3, 1},
                  "a.BMP a.JPG",
                  "a.bmp a.jpg b.bmp b.jpg c.bmp c.jpg",
                  kComplete},
        // A declined BMP alone stays.
        ReplyCase{"B", "a.bmp", {3}, "a.BMP", "a.bmp=old b.bmp c.bmp", kComplete},
        // No to all for pictures.
        ReplyCase{"BJ",
                  "a.bmp b.bmp b.jpg c.bmp c.jpg",
                  {4},
                  "a.BMP",
                  // The missing JPEG of the first image takes its BMP along, as above.
                  "a.bmp a.jpg b.bmp=old b.jpg=old c.bmp=old c.jpg=old",
                  kComplete},
        // Odd: a picture's Cancel ends the run at the next image, after that one's own question.
        ReplyCase{"SB", "a.bmp", {5}, "a.BMP", "a.SIT a.bmp=old", kAborted},
        // Odd: without SIT files as a format, one that is there goes after a Yes.
        ReplyCase{"B", "a.SIT b.SIT", {1, 3}, "a.SIT b.SIT", "a.bmp b.SIT=old c.bmp", kComplete}),
    [](const auto& run) { return "Case" + std::to_string(run.index); });

TEST_F(CameraWindow, AFailureStopsAndLeavesWhatWasThere) {
  Want("SB");
  PutOld(Text("b.SIT"));
  camera_.Broken = {Text("b.SIT")};
  replies_.Replies = {1};
  Connect();
  download_.cmdDownload();
  EXPECT_EQ(Files(), "a.SIT a.bmp b.SIT=old");
  EXPECT_EQ(Status(), "red: Error - Downloading Aborted");
  EXPECT_EQ(State().Fault, Text("b.SIT: the cable is loose"));
  // A name that leads elsewhere is as good as a broken transfer.
  for (const char* name : {"../x.SIT", "x", ".."}) {
    camera_.Folders = {{kCameraRoot, {Text(name)}}};
    Connect();
    download_.cmdDownload();
    EXPECT_EQ(Status(), "red: Error - Downloading Aborted") << name;
  }
}

TEST_F(CameraWindow, APictureThatCannotBeWrittenIsToldAndNothingGoesForIt) {
  QDir(folder_.Path(QString())).mkdir(Text("a.bmp"));
  PutOld(Text("a.SIT"));
  Want("B");
  replies_.Replies = {1, 1};
  Connect();
  download_.cmdDownload();
  EXPECT_EQ(Files(), "a.SIT=old a.bmp/ b.bmp c.bmp");
  EXPECT_EQ(Status(), "Download Complete");
  EXPECT_THAT(State().Fault.toStdString(), HasSubstr("Not done: 1. The first reason: "));
}

TEST_F(CameraWindow, AllFoldersGoOnAfterAFailureWithoutTransfers) {
  camera_.Folders = {{kCameraRoot, {Text("a.SIT")}},
                     {Text("ONE"), {Text("b.SIT"), Text("c.SIT")}},
                     {Text("EMPTY"), {}},
                     {Text("TWO"), {Text("d.SIT"), Text("e.SIT")}}};
  camera_.Broken = {Text("b.SIT")};
  Want("S");
  Connect();
  QList<int> percents;
  events_.OnAdvance = [&] { percents += State().Percent; };
  download_.cmdDownloadAll();
  // An empty folder is made as well.
  EXPECT_EQ(Files(), "EMPTY/ ONE/ TWO/ a.SIT");
  EXPECT_EQ(Status(), "red: Error - Downloading Aborted");
  EXPECT_EQ(percents, QList<int>({20, 40, 60})) << "the others only count";
  // Odd: the reply for a file that is there takes the failure's place, and the run ends well.
  PutOld(Text("TWO/d.SIT"));
  replies_.Replies = {3, 1};
  download_.cmdDownloadAll();
  EXPECT_EQ(replies_.Asked.join(QLatin1Char(' ')), Text("a.SIT d.SIT"));
  EXPECT_EQ(Files(), "EMPTY/ ONE/ TWO/ TWO/d.SIT TWO/e.SIT a.SIT");
  EXPECT_EQ(Status(), kComplete);
}

TEST_F(CameraWindow, AnAbortIsSeenBeforeAnImageAndAfterIt) {
  Want("S");
  Connect();
  // Before the second image is begun, and when the last one is complete.
  for (const bool isAfter : {false, true}) {
    events_.OnEvents = [&] {
      const bool isHere = isAfter ? camera_.Calls.last() == Text("c.SIT")
                                  : camera_.Calls.last() == Text("a.SIT") && State().Percent > 0;
      if (isHere && !State().AbortRequested && State().AbortVisible) {
        download_.cmdAbort();
        EXPECT_EQ(Status(), "Abort Pending....");
      }
    };
    replies_.Replies = {2};
    replies_.Asked.clear();
    PutOld(Text("a.SIT"));
    download_.cmdDownload();
    EXPECT_EQ(Files(), isAfter ? "a.SIT b.SIT c.SIT" : "a.SIT");
    EXPECT_EQ(Status(), kAborted);
    EXPECT_FALSE(State().AbortRequested);
  }
}

TEST_F(CameraWindow, TooLittleSpaceIsSaidBeforeAnythingIsWritten) {
  camera_.SizeOfEach = std::uint64_t{1} << 55;
  Want("S");
  Connect();
  download_.cmdDownloadAll();
  EXPECT_THAT(Status(), HasSubstr("red: Not enough space in the target folder"));
  EXPECT_EQ(Files(), "");
  EXPECT_FALSE(camera_.Calls.contains(Text("a.SIT")));
  EXPECT_FALSE(State().Busy || State().AbortVisible || State().PercentVisible);
}

TEST_F(CameraWindow, DeletingAsksFirstAndEmptiesTheList) {
  Want("S");
  Connect();
  dialogs_.Given = Answer::kCancel;
  download_.cmdDeleteAll();
  EXPECT_FALSE(camera_.Calls.contains(Text("DeleteAllImages")));
  dialogs_.Given = Answer::kYes;
  camera_.Deletes = false;
  download_.cmdDeleteAll();
  EXPECT_EQ(Status() + "; " + Buttons(), "red: Error Deleting Images; one all delete");
  camera_.Deletes = true;
  download_.cmdDeleteAll();
  // "Download All" stays enabled, and the selected count as it was.
  EXPECT_EQ(Status() + "; " + Buttons(), "Deleting Images Complete; all ");
  EXPECT_EQ(State().ImageCount + State().SelectedCount, Text("03"));
  EXPECT_TRUE(State().Folders.empty());
}

}  // namespace
}  // namespace tessa::testing
