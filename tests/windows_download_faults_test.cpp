#include <QTreeView>

#include "core/path_bytes.h"
#include "test_main_window.h"
#include "windows/download_window.h"
#include "windows/overwrite_dialog.h"

namespace tessa::testing {
namespace {

class DownloadFaultsTest : public ::testing::Test {
 protected:
  DownloadFaultsTest()
      : session_({folder_.Path(Text("App")), Text(TESSA_BINARY_FOLDER)}),
        user_(folder_.Path(Text("user.ini"))) {
    PrepareSession(session_);
    for (const char* folder : {"App", "card", "to/one", "to/two"}) {
      QDir().mkpath(folder_.Path(Text(folder)));
    }
    folder_.Write(Text("card/A.SIT"), EncodedScene());
    user_.SetCardFolder(folder_.Path(Text("card")));
    Open();
  }
  static QString Text(const char* text) { return QString::fromUtf8(text); }
  void Open() {
    window_ = std::make_unique<DownloadWindow>(session_, user_, CardLink::Search(), nullptr);
    window_->Engine().BarPause = std::chrono::milliseconds(1);
    window_->show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return Shown("sspImgCount") == "1"; }, 5000));
  }
  template <typename Widget = QWidget>
  Widget& Find(const char* name) {
    return *window_->findChild<Widget*>(Text(name));
  }
  std::string Shown(const char* label) { return Find<QLabel>(label).text().toStdString(); }
  void Press(const char* button, Qt::Key key) {
    Find(button).setFocus();
    QTest::keyClick(&Find(button), key);
  }
  QStringList Files(const char* folder) {
    return QDir(folder_.Path(Text(folder))).entryList(QDir::Files);
  }

  TestFolder folder_;
  Session session_;
  UserSettings user_;
  std::unique_ptr<DownloadWindow> window_;
};

TEST_F(DownloadFaultsTest, ATargetThatVanishesStaysTheTargetAndIsRefusedInWords) {
  const QString one = folder_.Path(Text("to/one"));
  window_->UseTarget(one);
  auto& tree = Find<QTreeView>("Dir2");
  ASSERT_TRUE(
      QTest::qWaitFor([&] { return tree.model()->rowCount(tree.currentIndex().parent()) == 2; }));
  Find<QCheckBox>("chkSIT").click();
  QDir(one).removeRecursively();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !Shown("TargetFault").empty(); }));
  tree.setFocus();  // Nor does the tree's own first line become the target.
  QTest::qWait(400);
  EXPECT_EQ(Shown("TargetPath"), one.toStdString());
  EXPECT_EQ(Find<QComboBox>("Drive2").currentData().toString(), one);
  Press("cmdDownload", Qt::Key_Enter);
  EXPECT_EQ(Shown("sspStatus"), "The target folder is not there.");
  EXPECT_TRUE(Files("to/two").isEmpty() && Files("to").isEmpty());
  QDir().mkpath(one);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Shown("TargetFault").empty(); }));
  Press("cmdDownload", Qt::Key_Return);
  EXPECT_EQ(Shown("sspStatus"), "Download Complete");
  EXPECT_EQ(Shown("Fault"), "Images: 1 brought, 0 left out");
  EXPECT_EQ(Files("to/one"), QStringList(Text("A.SIT")));
}

TEST_F(DownloadFaultsTest, ADeleteThatFailedReadsTheCardAnewAndKeepsItsWords) {
  folder_.Write(Text("card/B.SIT"), EncodedScene());  // Not listed; stays.
  QFile(folder_.Path(Text("card/A.SIT"))).remove();
  QDir().mkpath(folder_.Path(Text("card/A.SIT/in")));  // Cannot be removed as a file.
  QTimer::singleShot(50, [] {
    qobject_cast<QMessageBox*>(QApplication::activeModalWidget())->button(QMessageBox::Ok)->click();
  });
  Find<QPushButton>("cmdDeleteAll").click();
  EXPECT_EQ(Shown("sspStatus"), "Error Deleting Images");
  EXPECT_EQ(Find<QComboBox>("cboCamFolders").itemText(0).toStdString(), "ROOT  - 1 Images");
}

TEST_F(DownloadFaultsTest, LimitsThatMakeNoScaleAreToldWhileTheyCount) {
  Find<QCheckBox>("chkBMP").click();
  EXPECT_EQ(Shown("LimitWords"), "");
  Find<QRadioButton>("optGain_2").click();
  QTest::keyClicks(&Find("txtMinTemp"), Text("30"));
  EXPECT_EQ(Shown("LimitWords"),
            "An empty box counts as 0.\nThe lower limit is not below the upper one.");
  QTest::keyClicks(&Find("txtMaxTemp"), Text("40"));
  EXPECT_EQ(Shown("LimitWords"), "");
}

TEST_F(DownloadFaultsTest, EachCaptionHasALetterOfItsOwnAndTheQuestionTakesItsOwn) {
  for (const int language : {0, 1, 2}) {
    session_.Words.SetLanguage(language);
    Open();
    QSet<QString> letters;
    for (const QAbstractButton* const button : window_->findChildren<QAbstractButton*>()) {
      const QString letter = button->shortcut().toString();
      const bool isSpare = letter.isEmpty() && (button->text().size() <= 1 ||
                                                qobject_cast<const QRadioButton*>(button));
      EXPECT_TRUE(isSpare || (!letter.isEmpty() && !letters.contains(letter)))
          << language << button->text().toStdString();
      letters += letter;
    }
    OverwriteDialog dialog(Text("A.SIT"), session_.Words, nullptr);
    dialog.show();
    const auto& yes = *dialog.findChild<QPushButton*>(Text("cmdYesAll"));
    QTest::keyClick(&dialog, yes.shortcut()[0].key());
    EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.Reply() == 2; })) << language;
  }
}

}  // namespace
}  // namespace tessa::testing
