#include <sys/stat.h>

#include "test_files.h"

namespace tessa::testing {
namespace {

class ToolTransfer : public ToolTest {
 protected:
  ToolTransfer() {
    QDir(Path("")).mkdir(u"t"_s);
    QDir(Path("")).mkdir(u"u"_s);
    const Bytes image = NoteSit("SIT V2.9A ", "SND1    ", "AIF");
    Write("a.sit", image);
    Write("u/a.sit", image);
    Write("b.tmp", Bytes(8));
    Write("SND1.AIF", EncodeIfSound(8000, std::vector<std::uint16_t>(300, 700)));
    Write("u/SND1.AIF", EncodeIfSound(8000, std::vector<std::uint16_t>(300, 800)));
  }
  std::string Names(const char* folder) const {
    return QDir(Path(folder))
        .entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name)
        .join(QLatin1Char(' '))
        .toStdString();
  }
};

TEST_F(ToolTransfer, CopyMoveAndDeleteTakeSoundsAlongAndSumUp) {
  const Outcome copy = Run({"copy", "@a.sit", "@b.tmp", "@SND1.AIF", "--to", "@t"});
  EXPECT_EQ(copy.Status, 0) << copy.Error;
  EXPECT_THAT(copy.Out, HasSubstr("a.sit with SND1.AIF\n"));
  EXPECT_THAT(copy.Out, HasSubstr("3 files copied to "));
  EXPECT_EQ(Names("t"), "SND1.AIF a.sit b.tmp");
  EXPECT_EQ(Run({"delete", "@t/a.sit", "@t/SND1.AIF", "@t/b.tmp"}).Status, 2);
  const Outcome gone = Run({"delete", "@t/a.sit", "@t/SND1.AIF", "@t/b.tmp", "--yes"});
  EXPECT_EQ(gone.Status, 0) << gone.Error;
  EXPECT_EQ(Names("t"), "");
  const Outcome move = Run({"move", "@a.sit", "@b.tmp", "--to", "@t", "--embed-sounds"});
  EXPECT_EQ(move.Status, 0) << move.Error;
  EXPECT_THAT(move.Out, HasSubstr("with its sound inside\n"));
  EXPECT_EQ(Names("") + "|" + Names("t"), "|a.sit b.tmp");
}

TEST_F(ToolTransfer, WhatIsThereIsRefusedSkippedOrReplaced) {
  ASSERT_EQ(Run({"copy", "@a.sit", "--to", "@t"}).Status, 0);
  const QByteArray sound = ReadAll(Path("t/SND1.AIF"));
  const Outcome refused = Run({"move", "@u/a.sit", "@b.tmp", "--to", "@t"});
  EXPECT_EQ(refused.Status, 1);
  EXPECT_THAT(refused.Error, HasSubstr("is there already; --replace would replace it"));
  EXPECT_EQ(Names("u") + "|" + Names("t"), "SND1.AIF a.sit|SND1.AIF a.sit b.tmp");
  ::unlink(Path("t/a.sit").toUtf8().constData());
  // The sound alone is in the way.
  EXPECT_EQ(Run({"move", "@u/a.sit", "--to", "@t"}).Status, 1);
  EXPECT_EQ(Run({"move", "@u/a.sit", "--to", "@t", "--skip"}).Status, 0);
  EXPECT_EQ(Names("u") + "|" + Names("t"), "SND1.AIF a.sit|SND1.AIF b.tmp");
  EXPECT_EQ(ReadAll(Path("t/SND1.AIF")), sound);
  // Two of one name: never the second over the first.
  const Outcome twice = Run({"move", "@a.sit", "@u/a.sit", "--to", "@t", "--replace"});
  EXPECT_EQ(twice.Status, 1);
  EXPECT_THAT(twice.Error, HasSubstr("another file of this call became"));
  EXPECT_EQ(Names("u"), "SND1.AIF a.sit");
  EXPECT_EQ(Run({"move", "@u/a.sit", "--to", "@t", "--replace"}).Status, 0);
  EXPECT_NE(ReadAll(Path("t/SND1.AIF")), sound);
  EXPECT_EQ(Names("u"), "");
}

TEST_F(ToolTransfer, WhatMakesNoSenseIsRefusedWithAReason) {
  ASSERT_EQ(::mkfifo(Path("pipe.sit").toUtf8().constData(), 0600), 0);
  using Case = std::pair<std::vector<const char*>, const char*>;
  for (const auto& [words, reason] :
       std::initializer_list<Case>{{{"copy", "@a.sit", "--to", "@"}, "in that folder already"},
                                   {{"move", "@pipe.sit", "--to", "@t"}, "no plain file"},
                                   {{"delete", "@pipe.sit", "--yes"}, "no plain file"},
                                   {{"move", "@u", "--to", "@t"}, "it is a folder"},
                                   {{"copy", "@gone.sit", "--to", "@t"}, "No such file"}}) {
    const Outcome outcome = Run(words);
    EXPECT_EQ(outcome.Status, 1) << reason;
    EXPECT_THAT(outcome.Error, HasSubstr(reason));
    EXPECT_EQ(Names("") + "|" + Names("t"), "SND1.AIF a.sit b.tmp pipe.sit|");
  }
}

TEST_F(ToolTransfer, SheetWritesAPageForEveryTenAndGoesOnAfterABadOne) {
  std::vector<const char*> words = {"sheet", "-o", "@s.pdf", "--palette", "RAINBOW", "@b.tmp"};
  words.insert(words.end(), 11, "@a.sit");
  const Outcome outcome = Run(words);
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_THAT(outcome.Error, HasSubstr("b.tmp"));
  const QByteArray pdf = ReadAll(Path("s.pdf"));
  EXPECT_TRUE(pdf.contains("/Count 2"));
  EXPECT_EQ(Run({"sheet", "-o", "@s.pdf", "@a.sit"}).Status, 1);
  EXPECT_EQ(ReadAll(Path("s.pdf")), pdf);
  EXPECT_EQ(Run({"sheet", "-o", "@s.pdf", "@a.sit", "--force"}).Status, 0);
  EXPECT_TRUE(ReadAll(Path("s.pdf")).contains("/Count 1"));
  EXPECT_EQ(Run({"sheet", "-o", "@a.sit", "@a.sit", "--force"}).Status, 2);
  EXPECT_EQ(Run({"sheet", "@a.sit"}).Status, 2);
}

TEST_F(ToolTransfer, SheetHandsItsPagesToThePrinterOrSaysWhyNot) {
  // Stands in for the system's spooler.
  QDir(Path("")).mkdir(u"bin"_s);
  Write("bin/lp", ToBytes("#!/bin/sh\n[ \"$2\" = good ] || { echo no such printer >&2; exit 1; }\n"
                          "cat > \"$PRINTED\"\n"));
  ::chmod(Path("bin/lp").toUtf8().constData(), 0755);
  const QByteArray path = qgetenv("PATH");
  qputenv("PATH", Path("bin").toUtf8() + ":" + path);
  qputenv("PRINTED", Path("printed").toUtf8());
  EXPECT_EQ(Run({"sheet", "@a.sit", "--printer", "good"}).Error, "");
  EXPECT_TRUE(ReadAll(Path("printed")).startsWith("%PDF-"));
  const Outcome bad = Run({"sheet", "@a.sit", "--printer", "bad"});
  EXPECT_EQ(bad.Status, 1);
  EXPECT_THAT(bad.Error, HasSubstr("bad: the sheet was not printed: no such printer"));
  qputenv("PATH", path);
}

}  // namespace
}  // namespace tessa::testing
