#include <QTreeView>

#include "test_main_window.h"
#include "windows/download_window.h"

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
    folder_.Write(Text("App/Download.ini"), {});  // Else that of the built program counts.
    folder_.Write(Text("card/A.SIT"), EncodedScene());
    user_.SetCardFolder(folder_.Path(Text("card")));
    Open();
  }
  static QString Text(const char* text) { return QString::fromUtf8(text); }
  void Open() {
    window_ = std::make_unique<DownloadWindow>(session_, user_, CardLink::Search(), nullptr);
    window_->Engine().BarPause = std::chrono::milliseconds(1);
    window_->show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return Shown("sspImgCount") == "1"; }));
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

  TestFolder folder_;
  Session session_;
  UserSettings user_;
  std::unique_ptr<DownloadWindow> window_;
};

TEST_F(DownloadFaultsTest, ATargetThatVanishesStaysTheTargetAndIsRefusedInWords) {
  const QString one = folder_.Path(Text("to/one"));
  window_->UseTarget(one);
  auto& tree = Find<QTreeView>("Dir2");
  const auto hasBoth = [&] { return tree.model()->rowCount(tree.currentIndex().parent()) == 2; };
  ASSERT_TRUE(QTest::qWaitFor(hasBoth));
  Press("chkSIT", Qt::Key_Space);
  QDir(one).removeRecursively();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !Shown("TargetFault").empty(); }));
  tree.setFocus();  // Nor does the tree's own first line become the target.
  QTest::qWait(400);
  EXPECT_EQ(Shown("TargetPath"), one.toStdString());
  EXPECT_EQ(Find<QComboBox>("Drive2").currentData().toString(), one);
  Press("cmdDownload", Qt::Key_Enter);
  EXPECT_EQ(Shown("sspStatus"), "The target folder is not there.");
  QDir().mkpath(one);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Shown("TargetFault").empty(); }));
  Press("cmdDownload", Qt::Key_Return);
  EXPECT_EQ(Shown("Fault"), "Images: 1 brought, 0 left out");
  EXPECT_EQ(QDir(one).entryList(QDir::Files), QStringList(Text("A.SIT")));
}

TEST_F(DownloadFaultsTest, LimitsThatMakeNoScaleAreToldWhileTheyCount) {
  Press("chkBMP", Qt::Key_Space);
  EXPECT_EQ(Shown("LimitWords"), "");
  Press("optGain_2", Qt::Key_Space);
  EXPECT_NE(Shown("LimitWords"), "");
  QTest::keyClicks(&Find("txtMaxTemp"), Text("4"));
  EXPECT_EQ(Shown("LimitWords"), "An empty box counts as 0.");
}

TEST_F(DownloadFaultsTest, CaptionsHaveLettersOfTheirOwn) {
  for (const int language : {0, 1, 2}) {
    session_.Words.SetLanguage(language);
    Open();
    QSet<QString> letters = {QString()};
    for (const QCheckBox* const box : window_->findChildren<QCheckBox*>()) {
      EXPECT_FALSE(letters.contains(box->shortcut().toString())) << box->text().toStdString();
      letters += box->shortcut().toString();
    }
    EXPECT_FALSE(letters.contains(Find<QPushButton>("Command1").shortcut().toString()));
  }
}

}  // namespace
}  // namespace tessa::testing
