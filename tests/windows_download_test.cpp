#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>

#include "core/path_bytes.h"
#include "test_main_window.h"
#include "windows/download_preview.h"
#include "windows/download_window.h"
#include "windows/overwrite_dialog.h"

namespace tessa::testing {
namespace {

class DownloadWindowTest : public ::testing::Test {
 protected:
  DownloadWindowTest()
      : session_({folder_.Path(Text("App")), Text(TESSA_BINARY_FOLDER)}),
        user_(folder_.Path(Text("user.ini"))) {
    PrepareSession(session_);
    for (const char* folder : {"App", "card/101TRIP", "card/EMPTY", "target"}) {
      QDir().mkpath(folder_.Path(Text(folder)));
    }
    folder_.Write(Text("App/Download.ini"), {});  // Else that of the built program counts.
    folder_.Write(Text("card/A.SIT"), EncodedSceneWithPhotograph());
    folder_.Write(Text("card/B.sit"), EncodedScene());
    folder_.Write(Text("card/101TRIP/C.SIT"), EncodedScene());
  }
  static QString Text(const char* text) { return QString::fromUtf8(text); }
  /// Opens the window anew; the one before is closed.
  void Open(const char* card = "card") {
    window_.reset();
    if (card != nullptr) {
      user_.SetCardFolder(folder_.Path(Text(card)));
    }
    window_ = std::make_unique<DownloadWindow>(session_, user_, CardLink::Search(), nullptr);
    window_->Engine().BarPause = std::chrono::milliseconds(1);
    window_->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return Shown("sspStatus") != "Initializing Camera..."; }, 5000));
  }
  template <typename Widget = QWidget>
  Widget& Find(const char* name) {
    auto* const found = window_->findChild<Widget*>(Text(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }
  std::string Shown(const char* label) { return Find<QLabel>(label).text().toStdString(); }
  void Click(const char* button) { Find<QAbstractButton>(button).click(); }
  bool Enabled(const char* name) { return Find(name).isEnabled(); }
  QStringList InTarget() const { return QDir(folder_.Path(Text("target"))).entryList(QDir::Files); }
  QSize Preview() {
    QTest::qWait(60);
    return Find<DownloadPreview>("PicBuf2").Picture().size();
  }
  /// Does something in the next dialog that comes up.
  void InDialog(std::function<void(QWidget&)> act) {
    auto* const timer = new QTimer(window_.get());
    QObject::connect(timer, &QTimer::timeout, window_.get(), [timer, act = std::move(act)] {
      if (QWidget* const dialog = QApplication::activeModalWidget()) {
        timer->deleteLater();
        timer->stop();
        act(*dialog);
      }
    });
    timer->start(1);
  }

  TestFolder folder_;
  Session session_;
  UserSettings user_;
  std::unique_ptr<DownloadWindow> window_;
};

TEST_F(DownloadWindowTest, ACardIsListedAndTheFormatsSayWhatCanBeDone) {
  Open();
  const auto& list = Find<QComboBox>("cboCamFolders");
  EXPECT_EQ(list.count(), 3);
  EXPECT_EQ(list.itemText(0).toStdString(), "ROOT  - 2 Images");
  EXPECT_EQ(list.itemText(1).toStdString(), "     101TRIP  - 1 Images");
  EXPECT_EQ(Shown("sspImgCount") + Shown("sspSelImgCount"), "32");
  EXPECT_EQ(Shown("sspStatus"), "Select Image Format");
  EXPECT_TRUE(!Enabled("cmdDownload") && !Enabled("cmdDownloadAll") && Enabled("cmdDeleteAll"));
  Click("chkSIT");
  EXPECT_EQ(Shown("sspStatus"), "Ready");
  EXPECT_TRUE(Enabled("cmdDownload") && Enabled("cmdDownloadAll"));
  QTest::keyClick(&Find<QComboBox>("cboCamFolders"), Qt::Key_End);  // The empty folder.
  EXPECT_EQ(Shown("sspSelImgCount"), "0");
  EXPECT_TRUE(!Enabled("cmdDownload") && Enabled("cmdDownloadAll"));
}

TEST_F(DownloadWindowTest, WithoutACardTheWindowSaysSoAndReconnectsToOneThatCame) {
  Open("later");
  EXPECT_EQ(Shown("sspStatus"), "Error Initializing Camera");
  EXPECT_NE(Shown("Fault"), "");
  EXPECT_FALSE(Enabled("cmdDownload") || Enabled("cmdDownloadAll") || Enabled("cmdDeleteAll"));
  QDir().rename(folder_.Path(Text("card")), folder_.Path(Text("later")));
  Click("cmdReconnect");
  EXPECT_EQ(Shown("sspImgCount"), "3");
  EXPECT_EQ(Shown("Fault"), "");
}

TEST_F(DownloadWindowTest, PicturesUnfoldTheirOptionsAndThePreviewFollowsThem) {
  Open();
  const int folded = window_->width();
  EXPECT_FALSE(Find("sspImageOptions").isVisible() || Find("txtJPGQuality").isVisible());
  Click("chkJPEG");
  EXPECT_TRUE(Find("sspImageOptions").isVisible() && Find("txtJPGQuality").isVisible());
  EXPECT_GT(window_->width(), folded);
  EXPECT_EQ(Preview(), QSize(320, 240));
  Click("chkOvlOptions_5");
  EXPECT_EQ(Preview(), QSize(320 + 5 + 320, 240));
  Click("chkOvlOptions_0");
  EXPECT_EQ(Preview().height(), 240 + MeasureText(Text("X")).height() + 2);
  const QImage before = Find<DownloadPreview>("PicBuf2").Picture();
  QTest::keyClick(&Find("Combo1"), Qt::Key_Down);
  QTest::qWait(60);
  EXPECT_NE(Find<DownloadPreview>("PicBuf2").Picture(), before);
  Click("chkJPEG");
  EXPECT_FALSE(Find("sspImageOptions").isVisible());
  EXPECT_EQ(window_->width(), folded);
}

TEST_F(DownloadWindowTest, ChoicesAreThereAgainAfterARestart) {
  Open();
  window_->UseTarget(folder_.Path(Text("target")));
  Click("chkJPEG");
  Click("optGain_2");
  QTest::keyClicks(&Find("txtJPGQuality"), Text("70"));
  QTest::keyClicks(&Find("txtMinTemp"), Text("-5"));
  Click("Option1_1");
  EXPECT_EQ(Find<QLineEdit>("txtMinTemp").text().toStdString(), "23.0");
  Click("chkPalBar");
  Open(nullptr);
  EXPECT_EQ(Shown("sspImgCount"), "3") << "the card's folder is remembered";
  EXPECT_EQ(Shown("TargetPath"), folder_.Path(Text("target")).toStdString());
  EXPECT_EQ(Find<QLineEdit>("txtJPGQuality").text().toStdString(), "70");
  EXPECT_EQ(Find<QLineEdit>("txtMinTemp").text().toStdString(), "23.0");
  for (const char* ticked : {"chkJPEG", "optGain_2", "Option1_1", "chkPalBar"}) {
    EXPECT_TRUE(Find<QAbstractButton>(ticked).isChecked()) << ticked;
  }
}

TEST_F(DownloadWindowTest, ADownloadAsksForWhatIsThere) {
  Open();
  window_->UseTarget(folder_.Path(Text("target")));
  folder_.Write(Text("target/A.SIT"), Bytes{1});
  Click("chkSIT");
  InDialog([&](QWidget& dialog) {
    EXPECT_EQ(dialog.objectName(), Text("frmOverWrite"));
    EXPECT_EQ(dialog.findChild<QLabel*>(Text("lblFName"))->text(), Text("A.SIT"));
    EXPECT_FALSE(Enabled("cmdDownload") || Enabled("cboCamFolders"));
    dialog.findChild<QPushButton*>(Text("cmdNo"))->click();
  });
  Click("cmdDownload");
  EXPECT_EQ(Shown("sspStatus"), "Download Complete");
  EXPECT_EQ(InTarget(), QStringList({Text("A.SIT"), Text("B.sit")}));
  EXPECT_EQ(ReadAll(folder_.Path(Text("target/A.SIT"))).size(), 1);
}

TEST_F(DownloadWindowTest, AnAbortAndTheWindowsCloseButtonEndTheDownloadAlone) {
  Open();
  window_->UseTarget(folder_.Path(Text("target")));
  Click("chkSIT");
  QTimer::singleShot(0, &Find("cmdAbort"), [&] { Click("cmdAbort"); });
  Click("cmdDownload");
  EXPECT_EQ(Shown("sspStatus"), "Download Aborted");
  EXPECT_LT(InTarget().size(), 2);
  EXPECT_TRUE(window_->isVisible());
  QTimer::singleShot(0, window_.get(), [&] { window_->close(); });
  Click("cmdDownload");
  EXPECT_EQ(Shown("sspStatus"), "Download Aborted");
  EXPECT_TRUE(window_->isVisible());
  EXPECT_LT(InTarget().size(), 2);
}

TEST_F(DownloadWindowTest, EachButtonOfTheQuestionGivesItsReply) {
  const QString name = QString(300, QLatin1Char('n')) + Text("<b>.SIT");
  const std::array<const char*, 6> buttons = {nullptr, "cmdYes",   "cmdYesAll",
                                              "cmdNo", "cmdNoAll", "cmdCancel"};
  for (std::size_t reply = 1; reply < buttons.size(); ++reply) {
    OverwriteDialog dialog(name, session_.Words, nullptr);
    EXPECT_EQ(dialog.Reply(), -1);
    dialog.show();
    EXPECT_LT(dialog.width(), 900);
    dialog.findChild<QPushButton*>(Text(buttons.at(reply)))->click();
    EXPECT_EQ(dialog.Reply(), static_cast<int>(reply));
    EXPECT_FALSE(dialog.isVisible());
  }
}

}  // namespace
}  // namespace tessa::testing
