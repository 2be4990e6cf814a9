#include "widgets/notice_strip.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>

#include "core/tell.h"
#include "widgets/eliding_label.h"

namespace tessa {
namespace {

constexpr int kDarkBelow = 128;

/// One line: ends of lines and control characters from a file's name do not tear the strip.
QString OnOneLine(QString text) {
  for (QChar& letter : text) {
    if (letter.category() == QChar::Other_Control || letter == QChar::LineSeparator ||
        letter == QChar::ParagraphSeparator) {
      letter = QChar::ReplacementCharacter;
    }
  }
  return text;
}

}  // namespace

NoticeStrip::NoticeStrip(QWidget* parent) : QFrame(parent) {
  setObjectName(QStringLiteral("NoticeStrip"));
  setAutoFillBackground(true);
  text_ = new ElidingLabel(Qt::ElideRight, this);
  text_->setObjectName(QStringLiteral("NoticeText"));
  text_->setTextFormat(Qt::PlainText);
  further_ = new QLabel(this);
  further_->setObjectName(QStringLiteral("NoticeFurther"));
  further_->setTextFormat(Qt::PlainText);
  close_ = new QToolButton(this);
  close_->setObjectName(QStringLiteral("NoticeClose"));
  close_->setAutoRaise(true);
  close_->setText(QStringLiteral("\u00D7"));
  connect(close_, &QToolButton::clicked, this, &NoticeStrip::Dismissed);
  auto* const layout = new QHBoxLayout(this);
  constexpr int kSide = 8;
  layout->setContentsMargins(kSide, 2, 2, 2);
  layout->addWidget(text_, 1);
  layout->addWidget(further_);
  layout->addWidget(close_);
  ShowColours();
  hide();
}

void NoticeStrip::ShowNotice(const Notice& notice, const Strings& words) {
  const QString text = OnOneLine(notice.Text);
  if (text_->text() != text) {
    text_->setText(text);
    // A tip that looked like markup would be laid out as such.
    text_->setToolTip(QStringLiteral("<qt>") + text.toHtmlEscaped() + QStringLiteral("</qt>"));
  }
  further_->setText(FurtherText(notice, words));
  further_->setVisible(notice.Further > 0);
  close_->setToolTip(words.LangString(433, "Close this notice"));
  close_->setAccessibleName(close_->toolTip());
  if (kind_ != notice.Kind) {
    kind_ = notice.Kind;
    ShowColours();
  }
  setVisible(!text.isEmpty());
  if (generation_ != notice.Generation) {
    generation_ = notice.Generation;
    if (!text.isEmpty()) {
      // Read out even when the words are those of the notice before.
      QAccessibleEvent alert(text_, QAccessible::Alert);
      QAccessible::updateAccessibility(&alert);
    }
  }
}

/// The desktop's own colours, a little towards amber for what failed.
void NoticeStrip::ShowColours() {
  QPalette colours = parentWidget()->palette();
  const bool dark = colours.color(QPalette::Window).lightness() < kDarkBelow;
  const QColor quiet = dark ? QColor(0x2B, 0x3A, 0x4A) : QColor(0xE3, 0xEE, 0xF8);
  const QColor failed = dark ? QColor(0x55, 0x3A, 0x16) : QColor(0xFD, 0xEB, 0xC8);
  const QColor ink = dark ? QColor(0xEC, 0xEF, 0xF4) : QColor(0x20, 0x24, 0x2A);
  colours.setColor(QPalette::Window, kind_ == NoticeKind::kFailed ? failed : quiet);
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
    colours.setColor(role, ink);
  }
  setPalette(colours);
}

void NoticeStrip::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::ApplicationPaletteChange) {
    ShowColours();
  }
}

void NoticeStrip::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    Q_EMIT Dismissed();
  } else {
    QFrame::keyPressEvent(event);
  }
}

}  // namespace tessa
