#include "core/tell.h"
#include "test_main_window.h"

namespace tessa::testing {
namespace {

class NoticeWindowTest : public MainWindowTest {
 protected:
  NoticeWindowTest() { session_.Words.ReadTable(WordTable()); }
  void Open(const char* name, const Bytes& file) {
    window_->OpenFile(folder_.Write(QString::fromUtf8(name), file));
  }
};

TEST_F(NoticeWindowTest, AUselessFileHasItsOwnPageAndTheNextImageTakesItsPlace) {
  Open("Gut.sit", EncodedScene());
  Open("<b>Übel.sit", First(EncodedScene(), 500));
  EXPECT_FALSE(IsShown("Picbuf1") || IsShown("SSPanel8") || IsShown("SSPanel1") ||
               IsShown("SSPanel9") || IsShown("NoticeStrip"));
  EXPECT_TRUE(IsShown("NoPicturePanel") && IsShown("NoPictureFolder"));
  EXPECT_EQ(Find<QLabel>("NoPictureName").accessibleName(), u"<b>Übel.sit"_s);
  EXPECT_EQ(Find<QLabel>("NoPictureName").textFormat(), Qt::PlainText);
  EXPECT_EQ(Find<QLabel>("NoPictureReason").text(), u"The file is incomplete."_s);
  EXPECT_TRUE(Find<QAction>("mnuReload").isEnabled() && Find<QAction>("mnuClose").isEnabled());
  session_.Words.SetLanguage(1);
  window_->SetWindowLanguage();
  EXPECT_EQ(Find<QLabel>("NoPictureReason").text(), u"Die Datei ist unvollständig."_s);
  Find<QAction>("mnuSave").trigger();
  EXPECT_TRUE(IsShown("NoticeStrip"));
  Find<QAction>("mnuClose").trigger();
  EXPECT_TRUE(IsShown("SSPanel9") && !IsShown("NoPicturePanel") && !IsShown("NoticeStrip"));
  Open("Gut.sit", EncodedScene());
  EXPECT_TRUE(IsShown("Picbuf1") && !IsShown("NoPicturePanel"));
}

TEST_F(NoticeWindowTest, TheStripClosesByButtonAndEscapeAndShowsMarkupAsText) {
  Open("Kurz.sit", First(EncodedScene(), 100001));
  EXPECT_TRUE(IsShown("NoticeStrip") && IsShown("Picbuf1"));
  EXPECT_FALSE(IsShown("NoticeFurther"));
  auto& close = Find<QToolButton>("NoticeClose");
  close.click();
  EXPECT_FALSE(IsShown("NoticeStrip"));
  Tell(NoticeKind::kFailed, u"<img src='x'>\nend"_s, session_.View);
  session_.View.Notice.Further = 2;
  window_->BringIntoLine();
  EXPECT_EQ(Find<QLabel>("NoticeText").text(), u"<img src='x'>\uFFFDend"_s);
  EXPECT_FALSE(Find<QLabel>("NoticeText").toolTip().contains(u"<img"_s));
  EXPECT_EQ(Find<QLabel>("NoticeFurther").text(), u"and 2 more"_s);
  close.setFocus();
  QTest::keyClick(&close, Qt::Key_Escape);
  EXPECT_FALSE(IsShown("NoticeStrip"));
}

}  // namespace
}  // namespace tessa::testing
