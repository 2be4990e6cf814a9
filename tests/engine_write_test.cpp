#include <sys/file.h>
#include <sys/stat.h>

#include "core/append_and_patch.h"
#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

TEST(PathBytes, EveryNameOfTheSystemSurvivesTheWayToATextAndBack) {
  for (const QByteArray& bytes :
       {QByteArray("plain"),
        QByteArray("Stra\xC3\x9F"
                   "e \xF0\x9F\x94\xA5.sit"),
        QByteArray("\xFF\xFE\x80.sit"), QByteArray("\xC0\xAF\xED\xA0\x80\xF4\x90\x80\x80"),
        QByteArray("cut \xE2\x82"), QByteArray("\xEF\xBB\xBFmark"),
        QByteArray("\xF0\x9F\x94\xA5\xA5")}) {
    EXPECT_EQ(PathToBytes(PathFromBytes(bytes)), bytes) << bytes.toHex().constData();
  }
  EXPECT_EQ(PathFromBytes("\xC3\x9F"), QString(QChar(0xDF)));
  EXPECT_EQ(ShownPath(PathFromBytes("a\xFF")), u"a\uFFFD"_s);
  EXPECT_EQ(FolderOfPath(u"/a"_s), u"/"_s);
  EXPECT_EQ(FolderOfPath(u"a"_s), u"."_s);
  EXPECT_EQ(JoinPath(u"a/"_s, u"b"_s), u"a/b"_s);
  EXPECT_EQ(JoinPath(u"a"_s, u"/b"_s), u"/b"_s);
}

TEST(PlainLine, ShowsWhatATerminalWouldObey) {
  const std::pair<const char*, const char*> cases[] = {
      {"\x1B]0;title\x07", "\\x1b]0;title\\x07"},
      {"a\nforged: b\r", "a\\x0aforged: b\\x0d"},
      {"\x7F\xC2\x9B", "\\x7f\\x9b"},
      {"\u202Etxt.exe\u2066\u2028", "\\u202etxt.exe\\u2066\\u2028"},
      {"\xFFz", "\\xffz"},
      {"\u00B0C \U0001F525", "\u00B0C \U0001F525"}};
  for (const auto& [text, line] : cases) {
    EXPECT_EQ(PlainLine(std::string_view(text)), line);
  }
  const QByteArray json = "{\n\"a\": \"\u202E\x7F\u00B0\"}";
  EXPECT_EQ(PlainJson(json), "{\n\"a\": \"\\u202e\\u007f\u00B0\"}");
  EXPECT_EQ(QJsonDocument::fromJson(PlainJson(json)), QJsonDocument::fromJson(json));
}

class WriteTest : public ::testing::Test {
 protected:
  QString Path(const char* name) const { return folder_.Path(QString::fromLatin1(name)); }
  void Make(const char* name, std::string_view content) const {
    folder_.Write(QString::fromLatin1(name), ToBytes(content));
  }
  std::string Content(const char* name) const { return ReadAll(Path(name)).toStdString(); }
  std::string Names() const { return folder_.Names().join(QLatin1Char(' ')).toStdString(); }
  /// The reason why it failed; empty when it did not.
  std::string Write(const char* name, std::string_view content,
                    Overwrite overwrite = Overwrite::kReplace) const {
    StepLog log;
    log.Run("write", [&] { WriteWholeFile(Path(name), ToBytes(content), overwrite); });
    return log.Failures().empty() ? std::string() : log.Failures()[0].Reason;
  }

  TestFolder folder_;
};

TEST_F(WriteTest, AReplacedFileKeepsItsRightsButRunsAsNobodyElse) {
  Make("old", "old");
  ASSERT_EQ(::chmod(Path("old").toUtf8().constData(), 06751), 0);
  const bool isRoot = ::geteuid() == 0;
  if (isRoot) {
    ASSERT_EQ(::chown(Path("old").toUtf8().constData(), 1234, 2345), 0);
    ASSERT_EQ(::chmod(Path("old").toUtf8().constData(), 06751), 0);
  }
  EXPECT_EQ(Write("old", "new"), "");
  struct stat status {};
  ASSERT_EQ(::stat(Path("old").toUtf8().constData(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, mode_t{0751});
  EXPECT_EQ(status.st_uid, isRoot ? uid_t{1234} : ::geteuid());
  EXPECT_EQ(Content("old"), "new");
  EXPECT_EQ(Names(), "old");
}

TEST_F(WriteTest, LinksAreFollowedAndWhatIsNoPlainFileIsRefused) {
  Make("file", "old");
  ASSERT_TRUE(QFile::link(Path("file"), Path("link")));
  ASSERT_TRUE(QFile::link(Path("nowhere"), Path("dangling")));
  ASSERT_TRUE(QDir().mkdir(Path("folder")));
  ASSERT_EQ(::mkfifo(Path("pipe").toUtf8().constData(), 0600), 0);
  const std::string before = Names();
  EXPECT_EQ(Write("link", "new"), "");
  EXPECT_EQ(Content("file"), "new");
  EXPECT_TRUE(QFileInfo(Path("link")).isSymLink());
  for (const Overwrite overwrite : {Overwrite::kRefuse, Overwrite::kReplace}) {
    EXPECT_EQ(Write("dangling", "x", overwrite),
              Path("dangling").toStdString() +
                  " cannot be written: it is a link to a file that is not there");
    EXPECT_NE(Write("folder", "x", overwrite), "");
    EXPECT_NE(Write("pipe", "x", overwrite), "");
    EXPECT_NE(Write("none/x", "x", overwrite), "");
  }
  EXPECT_NE(Write("file", "x", Overwrite::kRefuse), "");
  EXPECT_NE(Write("link", "x", Overwrite::kRefuse), "");
  EXPECT_EQ(Content("file"), "new");
  EXPECT_EQ(Names(), before);
}

TEST_F(WriteTest, AFullDiskLeavesTheOldFileAndNothingElse) {
  Make("old", "old");
  Make(".tessa-17-0.part", "not ours");
  {
    const FileSizeLimit limit(100);
    EXPECT_NE(Write("old", std::string(101, 'x')), "");
    EXPECT_NE(Write("new", std::string(101, 'x')), "");
    EXPECT_EQ(Write("small", std::string(100, 'x')), "");
  }
  EXPECT_EQ(Content("old"), "old");
  EXPECT_EQ(Names(), ".tessa-17-0.part old small");
  EXPECT_EQ(Content(".tessa-17-0.part"), "not ours");
}

TEST_F(WriteTest, AWriteProtectedFileStays) {
  Make("old", "old");
  // Permissions do not bind root: act as nobody, in a folder that nobody owns.
  static_cast<void>(
      ::chown(Path("").toUtf8().constData(), OrdinaryUser::kNobody, OrdinaryUser::kNobody));
  ASSERT_EQ(::chmod(Path("old").toUtf8().constData(), 0444), 0);
  {
    const OrdinaryUser user;
    EXPECT_NE(Write("old", "new"), "");
  }
  EXPECT_EQ(Content("old"), "old");
  EXPECT_EQ(Names(), "old");
}

class AppendTest : public WriteTest {
 protected:
  AppendTest() { Make("image", "HEADraster"); }
  FileStamp Stamp() const {
    Problems faults;
    return RandomFile::Open(Path("image"), faults)->Stamp().value();
  }
  std::string Append(const FileStamp& stamp, std::string_view content,
                     const std::vector<BytePatch>& patches) const {
    StepLog log;
    log.Run("append", [&] { AppendAndPatch(Path("image"), stamp, ToBytes(content), patches); });
    return log.Failures().empty() ? std::string() : log.Failures()[0].Reason;
  }
  const std::vector<BytePatch> patches_ = {{0, ToBytes("NEW")}, {8, ToBytes("ER")}};
};

TEST_F(AppendTest, BytesGoToTheEndAndTheHeaderThenPointsToThem) {
  EXPECT_EQ(Append(Stamp(), "+sound", patches_), "");
  EXPECT_EQ(Content("image"), "NEWDrastER+sound");
}

TEST_F(AppendTest, AFailureOnTheWayPutsBackWhatWasThere) {
  const FileStamp stamp = Stamp();
  const FileSizeLimit limit(13);
  EXPECT_EQ(Append(stamp, "+sound", patches_),
            Path("image").toStdString() + " cannot be changed: File too large; it is as it was");
  EXPECT_EQ(Content("image"), "HEADraster");
}

TEST_F(AppendTest, AFileThatIsNotWhatItWasIsLeftAlone) {
  const FileStamp stamp = Stamp();
  const auto refused = [&](const char* why) {
    EXPECT_NE(Append(stamp, "+sound", patches_), "") << why;
  };
  EXPECT_NE(Append(stamp, "+sound", {{9, ToBytes("ER")}}), "");
  EXPECT_NE(Append(stamp, "+sound", {{~std::uint64_t{0}, ToBytes("ER")}}), "");
  {
    const FileDescriptor other(::open(Path("image").toUtf8().constData(), O_RDONLY));
    ASSERT_EQ(::flock(other.Get(), LOCK_EX), 0);
    refused("locked");
  }
  EXPECT_EQ(Content("image"), "HEADraster");
  Make("image", "HEADrasteR");
  const timespec times[2] = {{0, UTIME_NOW}, {1000, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, Path("image").toUtf8().constData(), times, 0), 0);
  refused("changed");
  Make("image", "longer than before");
  refused("longer");
  EXPECT_EQ(Content("image"), "longer than before");
}

}  // namespace
}  // namespace tessa::testing
