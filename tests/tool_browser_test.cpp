#include <fcntl.h>
#include <sys/stat.h>

#include "test_files.h"

namespace tessa::testing {
namespace {

Bytes Image() {
  SitFields fields = SoundSit("SIT 3.00  ", "", "", Bytes(500, 7));
  fields.Comment = "front";
  fields.Memo = "NORTH";
  return EncodeSit(fields);
}

class ToolBrowser : public ToolTest {
 protected:
  ToolBrowser() { Write("a.sit", Image()); }
  Bytes Read(const char* name) const { return ReadBytes(Path(name)); }
};

TEST_F(ToolBrowser, ThumbnailWritesThePictureInTheSizeAskedFor) {
  Write("old.tmp", EncodeLegacyTmp(PlainLegacy(90)));
  EXPECT_EQ(Run({"thumbnail", "@a.sit", "-o", "@a.png"}).Error, "");
  EXPECT_EQ(QImage(Path("a.png")).size(), QSize(256, 192));
  EXPECT_EQ(
      Run({"thumbnail", "@old.tmp", "-o", "@b.png", "--size", "0", "--palette", "hot iron"}).Status,
      0);
  const QImage full(Path("b.png"));
  EXPECT_EQ(full.size(), QSize(255, 207));

  Write("broken.sit", First(Image(), 100));
  EXPECT_EQ(Run({"thumbnail", "@broken.sit", "-o", "@c.png"}).Status, 1);
  EXPECT_THAT(Run({"thumbnail", "@a.sit", "-o", "@a.png"}).Error, HasSubstr("exists"));
  EXPECT_EQ(Run({"thumbnail", "@a.sit", "-o", "@a.png", "--force"}).Status, 0);
  EXPECT_EQ(Run({"thumbnail", "@a.sit", "-o", "@a.sit", "--force"}).Status, 1);
  EXPECT_EQ(Run({"thumbnail", "@a.sit", "-o", "@d.png", "--palette", "no"}).Status, 2);
  EXPECT_FALSE(folder_.Names().contains(u"c.png"_s));
}

TEST_F(ToolBrowser, NoteChangesItsFieldsAndNothingElse) {
  const QString path = Path("a.sit");
  ASSERT_TRUE(QFile::link(path, Path("link.sit")));
  ::chmod(path.toUtf8().constData(), 0640);
  const timespec long_ago[2] = {{1000, 5}, {2000, 7}};
  ::utimensat(AT_FDCWD, path.toUtf8().constData(), long_ago, 0);
  EXPECT_EQ(Run({"note", "@a.sit"}).Out, "Comment: front\nMemo: NORTH\n");
  EXPECT_EQ(Run({"note", "@link.sit", "--comment", "  W\u00e4rme \u20ac ", "--memo", "nOnE"}).Error,
            "");
  Bytes expected = Image();
  Put(expected, 214, std::string("W\xe4rme \x80", 7));
  Put(expected, 982, std::string(5, '\0'));
  EXPECT_EQ(Read("a.sit"), expected);
  struct stat facts {};
  ::stat(path.toUtf8().constData(), &facts);
  EXPECT_EQ(facts.st_mode & 07777, 0640u);
  EXPECT_EQ(facts.st_mtim.tv_sec, 2000);
  EXPECT_TRUE(QFileInfo(Path("link.sit")).isSymLink());
  EXPECT_THAT(Run({"note", "@a.sit", "--json"}).Out, HasSubstr("\"Memo\": \"\""));
}

TEST_F(ToolBrowser, NoteWritesTheRecordOfEachKind) {
  TmpFields tmp;
  tmp.Counts.assign(std::size_t{255} * 223, 1);
  Write("new.tmp", EncodeTmp(tmp));
  Write("old.tmp", EncodeLegacyTmp(PlainLegacy(1)));
  using Case = std::tuple<const char*, std::size_t, std::size_t, std::size_t>;
  for (const auto& [name, comment, commentSize, memo] :
       {Case{"@a.sit", 214, 638, 982}, Case{"@new.tmp", 214, 768, 982},
        Case{"@old.tmp", 128, 832, 960}}) {
    const std::string longest(commentSize, 'x');
    Bytes expected = Read(name + 1);
    Put(expected, comment, longest);
    Put(expected, memo, std::string("12345678901234567890"));
    EXPECT_EQ(
        Run({"note", name, "--comment", longest.c_str(), "--memo", "12345678901234567890"}).Error,
        "");
    EXPECT_EQ(Read(name + 1), expected) << name;
    EXPECT_EQ(Run({"note", name, "--comment", (longest + "x").c_str()}).Status, 1);
    EXPECT_EQ(Read(name + 1), expected) << name;
  }
}

TEST_F(ToolBrowser, NoteRefusesWithAReasonAndChangesNothing) {
  Write("short.sit", First(Image(), 1000));
  Write("p.bmp", Image());
  Write("fixed.sit", Image());
  ::chmod(Path("fixed.sit").toUtf8().constData(), 0444);
  for (const auto& [words, reason] : std::vector<std::pair<std::vector<const char*>, const char*>>{
           {{"note", "@a.sit", "--memo", "123456789012345678901"}, "holds 20"},
           {{"note", "@a.sit", "--comment", "\u03a9"}, "1252"},
           {{"note", "@short.sit", "--comment", "x"}, "header"},
           {{"note", "@fixed.sit", "--comment", "x"}, "read-only"},
           {{"note", "@p.bmp"}, "only SIT and TMP"}}) {
    const Outcome outcome = Run(words);
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_THAT(outcome.Error, HasSubstr(reason));
  }
  EXPECT_EQ(Read("a.sit"), Image());
  EXPECT_EQ(Read("fixed.sit"), Image());
}

}  // namespace
}  // namespace tessa::testing
