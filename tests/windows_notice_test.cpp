#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include "core/tell.h"
#include "formats/sit.h"
#include "test_files.h"
#include "windows/main_window.h"
#include "windows/view_pict.h"

namespace tessa::testing {
namespace {

class NoticeWindowTest : public ::testing::Test {
 protected:
  NoticeWindowTest()
      : session_(BuiltProgramFolder()), user_(folder_.Path(QStringLiteral("settings.ini"))) {
    PrepareSession(session_);
    ApplySettings(session_);
    session_.Words.ReadTable(ReadAll(QStringLiteral(TESSA_SOURCE_FOLDER "/resources/strings.tsv")));
    window_ = std::make_unique<MainWindow>(session_, user_);
    window_->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  }
  template <typename Widget>
  Widget& Find(const char* name) {
    auto* const found = window_->findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }
  bool IsShown(const char* name) { return Find<QWidget>(name).isVisible(); }
  QString Open(const char* name, std::size_t bytes) {
    SitFields fields;
    fields.Counts.assign(static_cast<std::size_t>(kSitWidth) * kSitHeight, 100);
    const Bytes file = EncodeSit(fields);
    const QString path =
        folder_.Write(QString::fromUtf8(name), std::span(file).first(std::min(bytes, file.size())));
    window_->OpenFile(path);
    return path;
  }
  static constexpr std::size_t kWhole = 1000000;

  TestFolder folder_;
  Session session_;
  UserSettings user_;
  std::unique_ptr<MainWindow> window_;
};

TEST_F(NoticeWindowTest, AUselessFileHasItsOwnPageAndTheNextImageTakesItsPlace) {
  Open("Gut.sit", kWhole);
  Open("<b>Übel.sit", 500);
  EXPECT_FALSE(IsShown("Picbuf1") || IsShown("SSPanel8") || IsShown("SSPanel1") ||
               IsShown("SSPanel9") || IsShown("NoticeStrip"));
  EXPECT_TRUE(IsShown("NoPicturePanel") && IsShown("NoPictureFolder"));
  EXPECT_EQ(Find<QLabel>("NoPictureName").accessibleName(), QStringLiteral("<b>Übel.sit"));
  EXPECT_EQ(Find<QLabel>("NoPictureName").textFormat(), Qt::PlainText);
  EXPECT_EQ(Find<QLabel>("NoPictureReason").text(), QStringLiteral("The file is incomplete."));
  EXPECT_TRUE(Find<QAction>("mnuReload").isEnabled() && Find<QAction>("mnuClose").isEnabled());
  session_.Words.SetLanguage(1);
  window_->SetWindowLanguage();
  EXPECT_EQ(Find<QLabel>("NoPictureReason").text(), QStringLiteral("Die Datei ist unvollständig."));
  Find<QAction>("mnuSave").trigger();
  EXPECT_TRUE(IsShown("NoticeStrip"));
  Find<QAction>("mnuClose").trigger();
  EXPECT_TRUE(IsShown("SSPanel9") && !IsShown("NoPicturePanel") && !IsShown("NoticeStrip"));
  Open("Gut.sit", kWhole);
  EXPECT_TRUE(IsShown("Picbuf1") && !IsShown("NoPicturePanel"));
}

TEST_F(NoticeWindowTest, TheStripClosesByButtonAndEscapeAndShowsMarkupAsText) {
  Open("Kurz.sit", 100001);
  EXPECT_TRUE(IsShown("NoticeStrip") && IsShown("Picbuf1"));
  EXPECT_FALSE(IsShown("NoticeFurther"));
  auto& close = Find<QToolButton>("NoticeClose");
  close.click();
  EXPECT_FALSE(IsShown("NoticeStrip"));
  Tell(NoticeKind::kFailed, QStringLiteral("<img src='x'>\nend"), session_.View);
  session_.View.Notice.Further = 2;
  window_->BringIntoLine();
  EXPECT_EQ(Find<QLabel>("NoticeText").text(), QStringLiteral("<img src='x'>\uFFFDend"));
  EXPECT_FALSE(Find<QLabel>("NoticeText").toolTip().contains(QStringLiteral("<img")));
  EXPECT_EQ(Find<QLabel>("NoticeFurther").text(), QStringLiteral("and 2 more"));
  close.setFocus();
  QTest::keyClick(&close, Qt::Key_Escape);
  EXPECT_FALSE(IsShown("NoticeStrip"));
}

}  // namespace
}  // namespace tessa::testing
