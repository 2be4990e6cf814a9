#include <sys/stat.h>
#include <unistd.h>

#include "core/private_folder.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

/// A base folder as the user's runtime folder is, and a shared one beside it.
class PrivateFolderTest : public ::testing::Test {
 protected:
  PrivateFolderTest() {
    MakeFolder("base");
    MakeFolder("shared");
  }
  QString Path(const char* name) const { return folder_.Path(QString::fromLatin1(name)); }
  QByteArray Bytes(const char* name) const { return Path(name).toUtf8(); }
  void MakeFolder(const char* name) const {
    EXPECT_EQ(::mkdir(Bytes(name).constData(), 0700), 0) << name;
  }
  void MakeFile(const char* name, std::string_view content = {}) const {
    folder_.Write(QString::fromLatin1(name), ToBytes(content));
  }
  bool Exists(const char* name) const {
    struct stat status {};
    return ::lstat(Bytes(name).constData(), &status) == 0;
  }
  std::unique_ptr<PrivateFolder> Make() const {
    return PrivateFolder::Make({Bytes("missing"), Bytes("base")}, Bytes("shared"));
  }
  bool IsIn(const char* folder, const PrivateFolder& made) const {
    return made.Path().startsWith(Bytes(folder) + '/');
  }

  TestFolder folder_;
};

TEST_F(PrivateFolderTest, IsForThisUserAloneAndGoesWithWhatTheProgramMade) {
  auto made = Make();
  ASSERT_TRUE(IsIn("base", *made));
  struct stat status {};
  ASSERT_EQ(::stat(made->Path().constData(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, mode_t{0700});
  made->Register("BOILER.WAV");
  EXPECT_THROW(made->Register("../BOILER.WAV"), StepFailure);
  const QString path = QString::fromUtf8(made->Path());
  for (const char* name : {"/TESSAVIEW.JPG", "/BOILER.WAV", "/.tessa-0123456789abcdef.part"}) {
    QFile file(path + QString::fromLatin1(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  }
  const auto second = Make();  // Clears up, but not where somebody lives.
  EXPECT_TRUE(QFile::exists(path + u"/BOILER.WAV"_s));
  made.reset();
  EXPECT_FALSE(QFile::exists(path));
  EXPECT_TRUE(QFile::exists(QString::fromUtf8(second->Path())));
}

TEST_F(PrivateFolderTest, ClearingUpTakesOnlyFilesOfTheProgramInFoldersThatNobodyHolds) {
  MakeFile("keep.txt", "keep");
  MakeFolder("elsewhere");
  MakeFile("elsewhere/lock");
  MakeFile("elsewhere/tmp.bmp");
  Make();
  for (const char* name : {"run-dead", "run-unlocked", "run-invoices", "run-folder", "run-link",
                           "tmp-2024-invoices"}) {
    const QByteArray folder = QByteArray("base/tessaview-temporary/") + name;
    MakeFolder(folder);
    if (std::string_view(name) != "run-unlocked") {
      MakeFile(folder + "/lock", std::string_view("BOILER.WAV\0", 11));
      MakeFile(folder + "/TESSANVIS.JPG");
    }
  }
  MakeFile("base/tessaview-temporary/run-dead/BOILER.WAV");
  MakeFile("base/tessaview-temporary/run-invoices/2024.pdf", "owed");
  MakeFolder("base/tessaview-temporary/run-folder/tmp.bmp");
  EXPECT_TRUE(QFile::link(Path("keep.txt"), Path("base/tessaview-temporary/run-link/tmp.bmp")));
  EXPECT_TRUE(QFile::link(Path("elsewhere"), Path("base/tessaview-temporary/run-linked")));
  Make();
  EXPECT_FALSE(Exists("base/tessaview-temporary/run-dead"));
  EXPECT_FALSE(Exists("base/tessaview-temporary/run-unlocked"));
  for (const char* name :
       {"run-invoices/2024.pdf", "run-invoices/TESSANVIS.JPG", "run-folder/tmp.bmp",
        "run-link/tmp.bmp", "run-linked", "tmp-2024-invoices/TESSANVIS.JPG"}) {
    EXPECT_TRUE(Exists(QByteArray("base/tessaview-temporary/") + name)) << name;
  }
  EXPECT_EQ(ReadAll(Path("keep.txt")), "keep");
  EXPECT_TRUE(Exists("elsewhere/lock") && Exists("elsewhere/tmp.bmp"));
}

TEST_F(PrivateFolderTest, AHomeThatOthersCouldTamperWithIsPassedOver) {
  MakeFolder("shared/tmp-2024-invoices");
  MakeFile("shared/tmp-2024-invoices/2024.pdf", "owed");
  MakeFolder("elsewhere");
  const QByteArray home = Bytes("base/tessaview-temporary");
  const auto expectShared = [&](const char* why) {
    const auto made = Make();
    EXPECT_TRUE(IsIn("shared", *made)) << why << made->Path().constData();
  };
  ASSERT_EQ(::symlink(Bytes("elsewhere").constData(), home.constData()), 0);
  expectShared("a link");
  ASSERT_EQ(::unlink(home.constData()), 0);
  MakeFolder("base/tessaview-temporary");
  for (const mode_t mode : {0770, 0705}) {
    ASSERT_EQ(::chmod(home.constData(), mode), 0);
    expectShared("open to others");
  }
  ASSERT_EQ(::chmod(home.constData(), 0700), 0);
  if (::geteuid() == 0) {
    ASSERT_EQ(::chown(home.constData(), 12345, 12345), 0);
    expectShared("of another user");
    ASSERT_EQ(::chown(home.constData(), 0, 0), 0);
  }
  ASSERT_EQ(::chmod(Bytes("base").constData(), 0777), 0);
  expectShared("in a folder that others can write to");
  EXPECT_EQ(QDir(Path("shared")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
            QStringList(u"tmp-2024-invoices"_s));
  EXPECT_TRUE(Exists("shared/tmp-2024-invoices/2024.pdf"));
  EXPECT_TRUE(QDir(Path("elsewhere")).isEmpty());
  EXPECT_THROW(PrivateFolder::Make({}, Bytes("missing")), StepFailure);
}

}  // namespace
}  // namespace tessa::testing
