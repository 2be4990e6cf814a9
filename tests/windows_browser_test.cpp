#include <sys/stat.h>
#include <unistd.h>

#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>

#include "core/path_bytes.h"
#include "formats/if_sound.h"
#include "test_browser_window.h"
#include "windows/folder_panel.h"
#include "windows/image_info_dialog.h"

namespace tessa::testing {
namespace {

class BrowserWindowTest : public BrowserTest {
 protected:
  BrowserWindowTest() {
    for (int i = 1; i <= 12; ++i) {
      folder_.Write(QStringLiteral("images/f%1.sit").arg(i), EncodedScene());
    }
    folder_.Write(QStringLiteral("images/f13.rti"), ThreeFrames());
    folder_.Write(QStringLiteral("images/f14.jpg"), {});
    LegacyFields old;
    old.Comment = "old <b>";
    old.Values.assign(std::size_t{255} * 207, 100);
    folder_.Write(QStringLiteral("images/f15.tmp"), EncodeLegacyTmp(old));
  }
};

TEST_F(BrowserWindowTest, PagingThroughAllKindsLeavesTheOpenImageAsItWas) {
  window_->OpenFile(scene_);
  const std::vector<float> grid(session_.Image.TempGrid.Cells().begin(),
                                session_.Image.TempGrid.Cells().end());
  const auto pixels = session_.Buffers.Picbuf1.Pixels();
  const std::vector<std::uint8_t> before(pixels.begin(), pixels.end());
  const QJsonObject report = ReportAsJson(session_);
  const SitHeader header = session_.Image.SitHeader;
  Browse([&](BrowserWindow& browser) {
    EXPECT_EQ(session_.Image.ThumbBrowserActive, 99);
    In<QPushButton>(browser, "Command6").click();
    EXPECT_EQ(In<QComboBox>(browser, "Combo3").currentText(), QStringLiteral("2 of 2"));
    EXPECT_TRUE(Grid(browser).Tile(4).isVisible());
    EXPECT_FALSE(Grid(browser).Tile(5).isVisible());
    EXPECT_TRUE(Grid(browser).Tile(3).toolTip().contains(QStringLiteral("empty")));
    Grid(browser).Tile(3).grab();  // The broken one paints too.
    In<QPushButton>(browser, "Command3").click();
    EXPECT_FALSE(In<QPushButton>(browser, "Command4").isEnabled());
  });
  const OpenImage& image = session_.Image;
  EXPECT_FALSE(image.UiLocked || image.ImageBusy || session_.View.SuppressEvents);
  EXPECT_EQ(image.ThumbBrowserActive, 0);
  EXPECT_EQ(ReportAsJson(session_), report);
  EXPECT_EQ(image.SitHeader.Record, header.Record);
  EXPECT_TRUE(std::equal(grid.begin(), grid.end(), image.TempGrid.Cells().begin(),
                         image.TempGrid.Cells().end()));
  EXPECT_TRUE(std::equal(before.begin(), before.end(), session_.Buffers.Picbuf1.Pixels().begin()));
}

TEST_F(BrowserWindowTest, KeysAloneSelectTurnPagesAndOpen) {
  Browse([&](BrowserWindow& browser) {
    QTest::keyClick(&In<QPushButton>(browser, "Command2"), Qt::Key_Right);
    EXPECT_EQ(browser.focusWidget(), &Grid(browser).Tile(0));
    QTest::keyClick(browser.focusWidget(), Qt::Key_Right);
    QTest::keyClick(browser.focusWidget(), Qt::Key_Space);
    EXPECT_EQ(BackgroundOf(Grid(browser).Tile(1)), qRgb(255, 255, 0));
    EXPECT_NE(BackgroundOf(Grid(browser).Tile(0)), qRgb(255, 255, 0));
    QTest::keyClick(browser.focusWidget(), Qt::Key_PageDown);
    EXPECT_EQ(browser.Pages().CurrentPage, 2);
    EXPECT_NE(BackgroundOf(Grid(browser).Tile(1)), qRgb(255, 255, 0));
    QTest::keyClick(browser.focusWidget(), Qt::Key_PageUp);
    EXPECT_EQ(BackgroundOf(Grid(browser).Tile(1)), qRgb(255, 255, 0));
    QTest::keyClick(browser.focusWidget(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(browser.Pages().Files.SelectedCount(), 15);
    QTest::keyClick(browser.focusWidget(), Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(browser.Pages().Files.SelectedCount(), 0);
    folder_.Write(QStringLiteral("images/f0.sit"), EncodedScene());
    QTest::keyClick(browser.focusWidget(), Qt::Key_F5);
    EXPECT_EQ(browser.Pages().Files.Count(), 16);
    In<QComboBox>(browser, "Combo1").setCurrentIndex(3);
    QTest::keyClick(browser.focusWidget(), Qt::Key_Return);
  });
  EXPECT_EQ(session_.Image.CurrentFilePath, Images() + QStringLiteral("/f1.sit"));
  EXPECT_EQ(session_.View.PaletteSelection, 3);
  EXPECT_TRUE(session_.View.HasImage);
  EXPECT_FALSE(session_.Image.UiLocked);
}

TEST_F(BrowserWindowTest, SelectAllThenLoadFindsNoFile) {
  Browse([&](BrowserWindow& browser) {
    In<QPushButton>(browser, "Command11").click();
    In<QPushButton>(browser, "Command1").click();
  });
  EXPECT_TRUE(session_.View.NoPicture.Shown);
  EXPECT_EQ(session_.View.NoPicture.Reason, QStringLiteral("The file is not there."));
}

TEST_F(BrowserWindowTest, AnEmptyFolderAndAGoneFileSaySo) {
  Browse([&](BrowserWindow& browser) {
    QFile::remove(Images() + QStringLiteral("/f2.sit"));
    QTest::mouseClick(&Grid(browser).Tile(1), Qt::LeftButton, {}, QPoint(8, 8));
    auto& filters = In<QComboBox>(browser, "Combo2");
    filters.setCurrentIndex(5);
    Q_EMIT filters.activated(5);
    EXPECT_FALSE(Grid(browser).Tile(0).isVisible());
    EXPECT_FALSE(In<QComboBox>(browser, "Combo3").isVisible());
    In<QPushButton>(browser, "Command1").click();  // What was picked is gone.
  });
  EXPECT_EQ(session_.View.NoPicture.FileName, QStringLiteral("f2.sit"));
}

TEST_F(BrowserWindowTest, TheTargetFolderIsMadeAndRenamed) {
  Browse([&](BrowserWindow& browser) {
    auto dialogs = std::make_unique<ScriptedDialogs>(QString());
    ScriptedDialogs& script = *dialogs;
    browser.SetDialogs(std::move(dialogs));
    const auto choose = [&](const char* entry) {
      QTimer::singleShot(0, &browser, [&browser, entry] {
        auto* const menu = browser.findChild<QMenu*>(QStringLiteral("mnuCreateDir"));
        ASSERT_NE(menu, nullptr);
        menu->setActiveAction(menu->findChild<QAction*>(QString::fromLatin1(entry)));
        QTest::keyClick(menu, Qt::Key_Return);
      });
      for (FolderPanel* const panel : browser.findChildren<FolderPanel*>()) {
        if (panel->findChild<QWidget*>(QStringLiteral("Dir2")) != nullptr) {
          Q_EMIT panel->MenuAsked(QPoint(100, 100));
        }
      }
    };
    script.Text = QStringLiteral("new & old");
    choose("mnuCreateFolder");
    EXPECT_TRUE(QDir(folder_.Path(script.Text)).exists());
    EXPECT_EQ(browser.Pages().TargetFolder, folder_.Path(script.Text));
    script.Text = QStringLiteral("other");
    choose("mnuRename");
    EXPECT_TRUE(QDir(folder_.Path(script.Text)).exists());
    EXPECT_FALSE(QDir(folder_.Path(QStringLiteral("new & old"))).exists());
  });
}

TEST_F(BrowserWindowTest, TheInformationSaysWhatEachKindHas) {
  Browse([&](BrowserWindow& browser) {
    browser.Pages().ShowLast();
    const auto info = [&](int tile) { return InfoOfTile(browser.Pages(), tile, session_.Words); };
    ImageInfoDialog old(info(4), session_.Words, &browser);
    EXPECT_EQ(In<QLabel>(old, "lblType").text(), QStringLiteral("3303 Image"));
    EXPECT_EQ(In<QLabel>(old, "lblSize").text(), QStringLiteral(" 255 x 207 Pixels"));
    EXPECT_EQ(In<QLabel>(old, "lblEmissivity").text(), QStringLiteral("0.95"));
    EXPECT_EQ(info(4).Comment, QStringLiteral("old <b>"));
    EXPECT_EQ(info(4).CommentLimit, 832);
    EXPECT_EQ(info(2).Type, QStringLiteral("SnapShot Image"));
    EXPECT_FALSE(info(2).Date.isEmpty());
    const ImageInfo broken = info(3);
    EXPECT_EQ(broken.Comment + broken.Memo + broken.Size + broken.Origin,
              QStringLiteral("NoneNone"));
    session_.Words.SetLanguage(1);
    EXPECT_TRUE(info(2).Date.isEmpty());  // Only the English word tells a snapshot.
    session_.Words.SetLanguage(0);
  });
  window_->OpenFile(scene_);
  EXPECT_EQ(InfoOfOpenImage(session_).Origin, QStringLiteral("-1"));
  window_->OpenFile(Images() + QStringLiteral("/f13.rti"));
  const ImageInfo sequence = InfoOfOpenImage(session_);
  EXPECT_EQ(sequence.Frames + sequence.Memo, QStringLiteral("3None"));
}

TEST_F(BrowserWindowTest, FoldersWithNamesThatAreNoTextAreAmongThePlaces) {
  const QString odd = PathFromBytes(QFile::encodeName(Images()) + "/caf\xE9");
  ASSERT_EQ(::mkdir(PathToBytes(odd).constData(), 0755), 0);
  WriteWholeFile(JoinPath(odd, QStringLiteral("a.sit")), EncodedScene(), Overwrite::kRefuse);
  Browse([&](BrowserWindow& browser) {
    auto& places = In<QComboBox>(browser, "Drive1");
    const int at = places.findText(QStringLiteral("caf\uFFFD"));
    ASSERT_GE(at, 0);
    places.setCurrentIndex(at);
    Q_EMIT places.activated(at);
    EXPECT_EQ(browser.Pages().SourceFolder, odd);
    EXPECT_TRUE(Grid(browser).Tile(0).isVisible());
    EXPECT_EQ(places.currentText(), QStringLiteral("caf\uFFFD"));
    Q_EMIT Grid(browser).DoubleClicked(0);
  });
  EXPECT_EQ(session_.Image.CurrentFilePath, JoinPath(odd, QStringLiteral("a.sit")));
  ::unlink(PathToBytes(JoinPath(odd, QStringLiteral("a.sit"))).constData());
  ::rmdir(PathToBytes(odd).constData());
}

TEST_F(BrowserWindowTest, AFileThatWasWrittenMeanwhileIsReadAgainWhenTheUserComesBack) {
  Browse([&](BrowserWindow& browser) {
    const auto comeBack = [&] {
      QEvent event(QEvent::WindowActivate);
      QApplication::sendEvent(&browser, &event);
      return browser.Pages().Places[0].Content.Picture.Pixels.empty();
    };
    EXPECT_FALSE(comeBack());
    folder_.Write(QStringLiteral("images/f1.sit"), {});
    EXPECT_TRUE(comeBack());
  });
}

TEST_F(BrowserWindowTest, AClickOnTheSoundMarkOpensTheMenuInsteadOfSelecting) {
  SitFields fields = SceneFields();
  fields.Signature = "SIT V2.9A ";
  fields.SoundName = "SND1    ";
  fields.SoundExt = "AIF";
  folder_.Write(QStringLiteral("images/f1.sit"), EncodeSit(fields));
  folder_.Write(QStringLiteral("images/SND1.AIF"),
                EncodeIfSound(8000, std::vector<std::uint16_t>(300, 700)));
  Browse([&](BrowserWindow& browser) {
    EXPECT_FALSE(In<TilePart>(browser, "Image1_1").isVisible());
    const auto& mark = In<TilePart>(browser, "Image1_0");
    bool hadMenu = false;
    QTimer::singleShot(0, &browser, [&] {
      if (auto* const menu = browser.findChild<QMenu*>(QStringLiteral("mnuPopUp"))) {
        hadMenu = true;
        menu->close();
      }
    });
    QTest::mouseClick(&Grid(browser).Tile(0), Qt::LeftButton, {}, mark.geometry().center());
    EXPECT_TRUE(hadMenu);
    EXPECT_EQ(browser.Pages().Files.SelectedCount(), 0);
  });
}

/// Types into the information dialog that `open` shows and clicks its hidden "Save".
void SaveHidden(const QString& comment, const QString& memo, const std::function<void()>& open) {
  QTimer waiting;
  QObject::connect(&waiting, &QTimer::timeout, qApp, [&] {
    auto* const dialog = qobject_cast<ImageInfoDialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr) {
      return;
    }
    waiting.stop();
    auto* const save = dialog->findChild<QPushButton*>(QStringLiteral("Command2"));
    auto* const text = dialog->findChild<QPlainTextEdit*>(QStringLiteral("txtComment"));
    text->setPlainText(QStringLiteral("typed"));
    EXPECT_FALSE(save->isVisible() || save->isEnabled());
    save->show();
    text->setPlainText(comment);
    dialog->findChild<QPlainTextEdit*>(QStringLiteral("txtMemo"))->setPlainText(memo);
    save->click();
  });
  waiting.start(5);
  open();
}

TEST_F(BrowserWindowTest, TheHiddenSaveWritesTheFieldsOfTheRecordThatTheTypeTextNames) {
  const QString first = Images() + QStringLiteral("/f1.sit");
  const QString old = Images() + QStringLiteral("/f15.tmp");
  const QByteArray zeros(1000, '\0');
  window_->OpenFile(first);
  QFile::setPermissions(first, QFile::ReadOwner | QFile::ReadUser);
  Browse([&](BrowserWindow& browser) {
    const auto save = [&](int tile, const QString& comment, const QString& memo) {
      SaveHidden(comment, memo, [&] {
        QTimer::singleShot(0, &browser, [&] {
          auto* const menu = browser.findChild<QMenu*>(QStringLiteral("mnuPopUp"));
          menu->setActiveAction(menu->findChild<QAction*>(QStringLiteral("mnuPUInfo")));
          QTest::keyClick(menu, Qt::Key_Return);
        });
        Q_EMIT Grid(browser).Tile(tile).MenuAsked(true, QPoint(10, 10));
      });
    };
    QByteArray expected = ReadAll(first);
    save(0, QStringLiteral(" W\u00E4rme "), QStringLiteral("nONE"));
    expected.replace(214, 638, QByteArray("W\xE4rme") + zeros.left(633));
    expected.replace(982, 20, zeros.left(20));
    EXPECT_EQ(ReadAll(first), expected);
    EXPECT_TRUE(QFile::permissions(first).testFlag(QFile::WriteOwner));
    EXPECT_EQ(InfoOfTile(browser.Pages(), 0, session_.Words).Memo, QStringLiteral("None"));
    EXPECT_EQ(session_.View.Comment, QStringLiteral("W\u00E4rme")) << "the same file is open";
    browser.Pages().ShowLast();
    expected = ReadAll(old);
    save(4, QString(), QStringLiteral("north"));
    expected.replace(128, 832, zeros.left(832)).replace(960, 5, "north");
    EXPECT_EQ(ReadAll(old), expected);
    session_.Words.SetLanguage(1);  // The type is told by the English words alone.
    save(4, QStringLiteral("x"), QString());
    expected.replace(214, 768, 'x' + zeros.left(767)).replace(982, 20, zeros.left(20));
    EXPECT_EQ(ReadAll(old), expected);
    session_.Words.SetLanguage(0);
  });
  SaveHidden(QString(700, QLatin1Char('y')), QString(), [&] { Trigger("SSCommand10"); });
  EXPECT_EQ(ReadAll(first).mid(214, 640), QByteArray(638, 'y') + ReadAll(first).mid(852, 2));
  EXPECT_EQ(session_.View.Memo, QStringLiteral("None"));
}

}  // namespace
}  // namespace tessa::testing
