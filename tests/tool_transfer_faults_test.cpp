#include "test_files.h"

namespace tessa::testing {
namespace {

class ToolTransferFaults : public ToolTest {
 protected:
  ToolTransferFaults() {
    QDir(Path("")).mkdir(u"t"_s);
    for (const char* name : {"a.sit", "b.sit"}) {
      Write(name, NoteSit("SIT V2.9A ", "SND1    ", "AIF"));
    }
    Write("SND1.AIF", EncodeIfSound(8000, std::vector<std::uint16_t>(300, 700)));
  }
  std::string Names(const char* folder) const {
    return QDir(Path(folder))
        .entryList(QDir::Files, QDir::Name)
        .join(QLatin1Char(' '))
        .toStdString();
  }
};

TEST_F(ToolTransferFaults, OneFolderUnderTwoPathsLosesTheSoundWithTheLastImage) {
  EXPECT_EQ(Run({"delete", "@a.sit", "@./b.sit", "@t/../SND1.AIF", "--yes"}).Status, 0);
  EXPECT_EQ(Names(""), "");
}

TEST_F(ToolTransferFaults, ASoundThatStaysIsNotCountedAsMoved) {
  const Outcome outcome = Run({"move", "@a.sit", "@SND1.AIF", "--to", "@t"});
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_THAT(outcome.Out, HasSubstr("1 file moved"));
  EXPECT_THAT(outcome.Error, HasSubstr("SND1.AIF: it was copied and stays"));
  EXPECT_EQ(Run({"move", "@SND1.AIF", "@b.sit", "--to", "@t", "--replace"}).Status, 0);
  EXPECT_EQ(Names("") + "|" + Names("t"), "|SND1.AIF a.sit b.sit");
}

}  // namespace
}  // namespace tessa::testing
