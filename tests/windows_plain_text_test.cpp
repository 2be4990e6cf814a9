#include <QTextDocument>

#include "test_main_window.h"
#include "widgets/plain_text.h"
#include "windows/about_dialog.h"
#include "windows/ask_dialogs.h"
#include "windows/preferences_dialog.h"
#include "windows/save_sequence_dialog.h"
#include "windows/splash_window.h"

namespace tessa::testing {
namespace {

/// Would make the window read a device without end, draw large, and forge a line.
const char* const kMarkup = "<img src=/dev/zero><h1>x</h1>";

/// No label of the window lays out markup, and no tip does.
void ExpectPlain(const QWidget& window) {
  const auto expectPlainTip = [](const QString& tip, const QString& owner) {
    EXPECT_FALSE(Qt::mightBeRichText(tip) && (tip.contains(u"<img"_s) || tip.contains(u"<h1"_s)))
        << owner.toStdString() << ": " << tip.toStdString();
    EXPECT_LT(tip.size(), 6000) << owner.toStdString();
  };
  const QList<QLabel*> labels = window.findChildren<QLabel*>();
  EXPECT_FALSE(labels.isEmpty());
  for (const QLabel* label : labels) {
    if (label->objectName() == u"qtooltip_label"_s) {
      continue;  // The toolkit's own, for tips, which are looked at below.
    }
    EXPECT_EQ(label->textFormat(), Qt::PlainText)
        << window.objectName().toStdString() << ": " << label->objectName().toStdString();
  }
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    expectPlainTip(widget->toolTip(), widget->objectName());
  }
  for (const QAction* action : window.findChildren<QAction*>()) {
    expectPlainTip(action->toolTip(), action->text());
  }
  for (const QChar character : window.windowTitle()) {
    EXPECT_TRUE(character.isPrint() || character == QChar::ReplacementCharacter);
  }
}

class PlainTextTest : public MainWindowTest {
 protected:
  /// A path that reads as markup, with `name` at its end.
  QString HostilePath(const QString& name) {
    const QString folder = folder_.Path(u"<img src=/dev"_s);
    EXPECT_TRUE(QDir().mkpath(folder));
    return u"<img src=/dev/zero><h1>&\t"_s + name;
  }
  /// Runs `inspect` on the next modal dialog, which it has to close.
  void WhenAsked(std::function<void(QDialog&)> inspect) {
    QTimer::singleShot(0, window_.get(), [inspect = std::move(inspect)] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      inspect(*dialog);
    });
  }
};

TEST_F(PlainTextTest, NoWindowTakesTextFromAFileOrAPathForMarkup) {
  SitFields fields = SceneFields();
  fields.Comment = kMarkup + std::string("\n\x1b[31m");
  fields.Memo = "<h1>m</h1>";
  const Bytes scene = EncodeSit(fields);
  const QString path = folder_.Write(HostilePath(u"\n[*].sit"_s), scene);
  window_->OpenFile(path);
  ASSERT_TRUE(session_.View.Comment.contains(u"<img"_s));
  ExpectPlain(*window_);
  EXPECT_TRUE(Find<QLabel>("ssComment").text().startsWith(QString::fromLatin1(kMarkup)));
  EXPECT_EQ(Find<QLabel>("ssMemo").text(), u"<h1>m</h1>"_s);
  EXPECT_TRUE(window_->windowTitle().contains(u"[*][*]"_s)) << "shown as [*]";
  QTextDocument shown;
  shown.setHtml(Find<QLabel>("ssComment").toolTip());
  EXPECT_TRUE(shown.toPlainText().startsWith(QString::fromLatin1(kMarkup)));

  // What stands under the cursor goes the same way.
  session_.View.PictureTip.clear();
  Hover(20, 20);
  EXPECT_FALSE(Qt::mightBeRichText(QToolTip::text()));

  auto& recent = Find<QMenu>("mnuRecent");
  Q_EMIT recent.aboutToShow();
  ASSERT_EQ(recent.actions().size(), 1);
  const QString entry = recent.actions().constFirst()->text();
  EXPECT_FALSE(entry.contains(QLatin1Char('\t')) || entry.contains(QLatin1Char('\n')));
  EXPECT_TRUE(entry.contains(u"<h1>&&"_s)) << entry.toStdString();

  window_->OpenFile(folder_.Write(HostilePath(u"frames.rti"_s), ThreeFrames()));
  session_.Image.ImageDate = QString::fromLatin1(kMarkup);
  window_->BringIntoLine();
  ExpectPlain(*window_);
  ExpectPlain(SaveSequenceDialog(session_, quiet_, window_.get()));
  session_.Settings.LastFolder = session_.Settings.TargetFolder = path;
  ExpectPlain(PreferencesDialog(session_, user_, window_.get()));
  ExpectPlain(AboutDialog(session_.Words, window_.get()));
  ExpectPlain(SplashWindow(session_.Words));
}

TEST_F(PlainTextTest, QuestionsShowTheirTextLetterForLetterInThePresentLanguage) {
  session_.Words.ReadTable("281\tYes\tJa\n110\tCancel\tAbbrechen\n");
  session_.Words.SetLanguage(1);
  WindowDialogs dialogs(window_.get(), session_.Words);
  const QString markup = QString::fromLatin1(kMarkup);
  WhenAsked([&](QDialog& dialog) {
    auto& box = dynamic_cast<QMessageBox&>(dialog);
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    EXPECT_EQ(box.text(), markup);
    EXPECT_EQ(box.button(QMessageBox::Cancel)->text().remove(QLatin1Char('&')), u"Abbrechen"_s);
    box.button(QMessageBox::Yes)->click();
  });
  EXPECT_EQ(dialogs.AskYesNoCancel(markup), Answer::kYes);
  WhenAsked([&](QDialog& dialog) {
    ExpectPlain(dialog);
    dialog.reject();
  });
  EXPECT_EQ(dialogs.AskText(markup), std::nullopt);

  // A file that is there is replaced only after a question of our own.
  const QString target = folder_.Write(u"<h1>there.BMP"_s, Bytes{1});
  QTimer later;
  int questions = 0;
  QObject::connect(&later, &QTimer::timeout, window_.get(), [&] {
    auto* const modal = QApplication::activeModalWidget();
    if (auto* const box = qobject_cast<QMessageBox*>(modal)) {
      EXPECT_EQ(box->textFormat(), Qt::PlainText);
      EXPECT_TRUE(box->text().contains(u"<h1>there.BMP"_s));
      box->button(questions++ == 0 ? QMessageBox::No : QMessageBox::Yes)->click();
    } else if (auto* const chooser = qobject_cast<QFileDialog*>(modal)) {
      static_cast<QDialog*>(chooser)->accept();
    }
  });
  later.start(20);
  EXPECT_EQ(dialogs.AskSaveFile({target, {u"Bitmap (*.BMP)"_s}, {}, {}}), target);
  EXPECT_EQ(questions, 2);
}

TEST(PlainText, TipsAndLinesKeepWhatIsHarmlessAndBoundWhatIsNot) {
  EXPECT_EQ(PlainToolTip(u" 20.5 \u00B0C "_s), u" 20.5 \u00B0C "_s);
  EXPECT_LE(PlainToolTip(QString(100000, QLatin1Char('x'))).size(), 1001);
  EXPECT_EQ(OneLine(u"a\nb\u202Ec"_s), u"a\uFFFDb\uFFFDc"_s);
  EXPECT_EQ(PlainMenuText(u"A&B12345"_s, 4), u"A&&\u202645"_s);
}

}  // namespace
}  // namespace tessa::testing
