#include <gmock/gmock.h>

#include <QCheckBox>
#include <QImage>
#include <QListWidget>
#include <QPainter>

#include "formats/if_sound.h"
#include "test_browser_window.h"
#include "windows/printer_dialog.h"

namespace tessa::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

const Bytes kOther = {1, 2, 3};

/// Answers with one letter a message (y, n, c) and with one path for a file.
class Script : public ScriptedDialogs {
 public:
  Script() : ScriptedDialogs(QString()) {}
  Answer ShowMessage(const Message& message) override {
    Told.push_back((message.Title + QLatin1Char('|') + message.Text).toStdString());
    Asked(message);
    const QChar answer = Told.size() <= static_cast<std::size_t>(Answers.size())
                             ? Answers[static_cast<qsizetype>(Told.size()) - 1]
                             : QLatin1Char('y');
    return answer == QLatin1Char('y')   ? Answer::kYes
           : answer == QLatin1Char('n') ? Answer::kNo
                                        : Answer::kCancel;
  }
  std::optional<QString> AskSaveFile(const SaveFileQuestion& question) override {
    AskedSave = question.Suggestion;
    return SaveTo;
  }
  QString Answers;
  std::optional<QString> SaveTo;
  std::vector<std::string> Told;
  std::function<void(const Message&)> Asked = [](const Message&) {};
};

/// Prints pages on a picture.
class PaperPrinter : public SheetPrinter {
 public:
  explicit PaperPrinter(QImage& paper) : paper_(paper) {}
  QStringList Names() const override { return {QStringLiteral("Laser"), QStringLiteral("Ink")}; }
  QString DefaultName() const override { return QStringLiteral("Ink"); }
  QString Print(const QString& name, const QString& title,
                const std::function<void(QPaintDevice&)>& paint) override {
    paper_.fill(Qt::white);
    paper_.setText(QStringLiteral("job"), name + QLatin1Char('|') + title);
    paint(paper_);
    return name == QLatin1String("Laser") ? QStringLiteral("out of <toner>") : QString();
  }

 private:
  QImage& paper_;
};

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
  static Script& Answering(BrowserWindow& browser, const char* answers) {
    auto script = std::make_unique<Script>();
    Script& kept = *script;
    kept.Answers = QString::fromLatin1(answers);
    browser.SetDialogs(std::move(script));
    return kept;
  }
  static void Pick(BrowserWindow& browser, std::initializer_list<int> tiles) {
    for (const int tile : tiles) {
      QTest::mouseClick(&Grid(browser).Tile(tile), Qt::LeftButton, {}, QPoint(8, 8));
    }
  }
  static void Click(BrowserWindow& browser, const char* button) {
    In<QPushButton>(browser, button).click();
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

TEST_F(TransferWindow, PagesGoToTheChosenPrinterOrIntoAFile) {
  Browse([&](BrowserWindow& browser) {
    QImage paper(1650, 1200, QImage::Format_RGB32);
    paper.setDotsPerMeterX(5906);
    paper.setDotsPerMeterY(5906);
    browser.SetPrinters(std::make_unique<PaperPrinter>(paper));
    Script& script = Answering(browser, "");
    const auto print = [&](int row, const char* button, const char* preselected) {
      QTimer::singleShot(0, &browser, [&, row, button, preselected] {
        auto* const dialog = qobject_cast<PrinterDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        auto& list = In<QListWidget>(*dialog, "List1");
        EXPECT_EQ(list.currentItem()->text().toStdString(), preselected);
        list.setCurrentRow(row);
        In<QPushButton>(*dialog, button).click();
      });
      Click(browser, "Command7");
    };
    print(0, "Command2", "Ink");
    EXPECT_EQ(paper.text(QStringLiteral("job")), QString());
    print(1, "Command1", "Ink");
    EXPECT_EQ(paper.text(QStringLiteral("job")), QStringLiteral("Ink|") + Images());
    EXPECT_NE(paper.pixel(200, 400), qRgb(255, 255, 255));
    EXPECT_EQ(script.Told.size(), 0u);
    print(0, "Command1", "Ink");
    EXPECT_THAT(script.Told, ElementsAre("Print|Could not print: out of <toner>"));
    script.SaveTo = Target() + QStringLiteral("/page.pdf");
    print(2, "Command1", "Laser");
    EXPECT_EQ(script.AskedSave, Target() + QStringLiteral("/images.pdf"));
    EXPECT_TRUE(AtTarget("page.pdf").startsWith("%PDF-"));
    EXPECT_THAT(In<QLabel>(browser, "Counts").text().toStdString(), HasSubstr("page.pdf"));
    script.SaveTo = Target() + QStringLiteral("/none/page.pdf");
    print(2, "Command1", "PDF file");
    EXPECT_THAT(script.Told.back(), HasSubstr("No such file"));
    EXPECT_FALSE(In<QLabel>(browser, "SSPanel5").isVisible());
  });
}

}  // namespace
}  // namespace tessa::testing
