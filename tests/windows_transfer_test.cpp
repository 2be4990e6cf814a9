#include <gmock/gmock.h>

#include <QCheckBox>

#include "formats/if_sound.h"
#include "test_browser_window.h"

namespace tessa::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

const Bytes kOther = {1, 2, 3};

/// Images 1 to 12, each naming one note, and a target that has the first two names already.
class TransferWindow : public BrowserTest {
 protected:
  TransferWindow() {
    SitFields fields = SceneFields();
    fields.Signature = "SIT V2.9A ";
    fields.SoundName = "SND1    ";
    fields.SoundExt = "AIF";
    image_ = EncodeSit(fields);
    for (int i = 1; i <= 12; ++i) {
      folder_.Write(QStringLiteral("images/f%1.sit").arg(i), image_);
    }
    folder_.Write(QStringLiteral("images/SND1.AIF"),
                  EncodeIfSound(8000, std::vector<std::uint16_t>(300, 700)));
    QDir().mkpath(Target());
    for (const char* name : {"target/f1.sit", "target/f2.sit"}) {
      folder_.Write(QString::fromLatin1(name), kOther);
    }
    session_.Settings.TargetFolder = Target();
  }
  QString Target() const { return folder_.Path(QStringLiteral("target")); }
  static std::string NamesIn(const QString& folder) {
    return QDir(folder).entryList(QDir::Files).join(QLatin1Char(' ')).toStdString();
  }
  QByteArray AtTarget(const char* name) const {
    return ReadAll(Target() + QLatin1Char('/') + QLatin1String(name));
  }
  static void Pick(BrowserWindow& browser, std::initializer_list<int> tiles) {
    for (const int tile : tiles) {
      QTest::mouseClick(&Grid(browser).Tile(tile), Qt::LeftButton, {}, QPoint(8, 8));
    }
  }
  static bool IsOn(BrowserWindow& browser, const char* button) {
    return In<QPushButton>(browser, button).isEnabled();
  }

  Bytes image_;
};

TEST_F(TransferWindow, CopiesAskForEachFileThatIsThereAndKeepTheSelection) {
  Browse([&](BrowserWindow& browser) {
    EXPECT_FALSE(IsOn(browser, "Command8") || IsOn(browser, "Command10"));
    Pick(browser, {0, 1, 2});
    EXPECT_TRUE(IsOn(browser, "Command8") && IsOn(browser, "Command9"));
    Script& script = Answering(browser, "yny");
    script.Asked = [&](const Message& message) {
      const bool runs = message.Buttons == MessageButtons::kYesNoCancel;
      EXPECT_EQ(In<QLabel>(browser, "SSPanel5").isVisible(), runs);
      EXPECT_EQ(In<QLabel>(browser, "SSPanel14").text().contains(QStringLiteral("Copying /")),
                runs);
    };
    Click(browser, "Command8");
    EXPECT_THAT(script.Told,
                ElementsAre(HasSubstr("f1.sit Already Exists."), HasSubstr("f2.sit"),
                            "Copy Results|2 Files Copied to " + Target().toUpper().toStdString()));
    EXPECT_EQ(NamesIn(Target()), "f1.sit f2.sit f3.sit SND1.AIF");
    EXPECT_EQ(AtTarget("f1.sit").size(), static_cast<qsizetype>(image_.size()));
    EXPECT_EQ(AtTarget("f2.sit").size(), 3);
    EXPECT_EQ(browser.Pages().Files.SelectedCount(), 3);
    // Cancelled at the first question; then with the notes inside.
    Script& second = Answering(browser, "c");
    Click(browser, "Command8");
    EXPECT_EQ(second.Told.size(), 1u);
    QDir(Target()).removeRecursively();
    QDir().mkpath(Target());
    In<QCheckBox>(browser, "chkEmbed").click();
    Answering(browser, "y");
    Click(browser, "Command8");
    EXPECT_EQ(NamesIn(Target()), "f1.sit f2.sit f3.sit");
    EXPECT_GT(AtTarget("f1.sit").size(), static_cast<qsizetype>(image_.size()));
  });
  EXPECT_EQ(QDir(Images()).entryList(QDir::Files).size(), 13);
}

TEST_F(TransferWindow, MovedAndDeletedFilesLeaveThePageOrTheLastOne) {
  Browse([&](BrowserWindow& browser) {
    Click(browser, "Command6");
    Pick(browser, {0});  // f11
    Script& moving = Answering(browser, "y");
    Click(browser, "Command9");
    EXPECT_EQ(NamesIn(Target()), "f1.sit f11.sit f2.sit SND1.AIF");
    EXPECT_THAT(moving.Told, ElementsAre(StartsWith("Transfer Results|1 Files")));
    EXPECT_EQ(browser.Pages().CurrentPage, 2);
    EXPECT_EQ(browser.Pages().Files.SelectedCount(), 0);
    Pick(browser, {0});  // f12, the only one of its page
    Script& keeping = Answering(browser, "n");
    Click(browser, "Command10");
    EXPECT_EQ(keeping.Told.size(), 1u);
    EXPECT_EQ(browser.Pages().Files.Count(), 11);
    Script& deleting = Answering(browser, "yy");
    Click(browser, "Command10");
    EXPECT_THAT(deleting.Told, ElementsAre(StartsWith("Delete Images|Are you sure"),
                                           StartsWith("Delete Results|1 Files Deleted From /")));
    EXPECT_EQ(browser.Pages().CurrentPage, 1);
    EXPECT_TRUE(Grid(browser).Tile(9).isVisible());
    EXPECT_FALSE(IsOn(browser, "Command10") || IsOn(browser, "Command5"));
    EXPECT_EQ(browser.focusWidget(), &In<QPushButton>(browser, "Command2"));
  });
  EXPECT_FALSE(QFile::exists(Images() + QStringLiteral("/f12.sit")));
  EXPECT_TRUE(QFile::exists(Images() + QStringLiteral("/SND1.AIF"))) << "ten images name it";
}

TEST_F(TransferWindow, EscapeAndQuittingStopARunBetweenTwoFiles) {
  Browse([&](BrowserWindow& browser) {
    Pick(browser, {0, 1, 2});
    Script& script = Answering(browser, "yy");
    script.Asked = [&](const Message&) { QTest::keyClick(&browser, Qt::Key_Escape); };
    Click(browser, "Command8");
    EXPECT_THAT(script.Told, ElementsAre(HasSubstr("f1.sit"), StartsWith("Copy Results|1 ")));
    EXPECT_TRUE(browser.isVisible());
    QTest::mouseClick(&Grid(browser).Tile(0), Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_EQ(browser.Pages().Files.SelectedCount(), 2) << "clicks count again";
    Script& quit = Answering(browser, "y");
    quit.Asked = [](const Message&) {
      QEvent event(QEvent::Quit);
      QCoreApplication::sendEvent(QCoreApplication::instance(), &event);
    };
    Click(browser, "Command8");
    EXPECT_EQ(quit.Told.size(), 1u) << "nobody is there to read results";
  });
  EXPECT_EQ(NamesIn(Target()), "f1.sit f2.sit SND1.AIF");
}

}  // namespace
}  // namespace tessa::testing
