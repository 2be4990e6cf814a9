#include "windows/no_picture_panel.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

namespace tessa {
namespace {

constexpr int kMargin = 24;
constexpr int kGap = 8;
constexpr qsizetype kLongestShown = 400;  // Characters; a name ends before, a sentence may not.

/// A text of any origin as one that may be broken into lines anywhere.
QString Breakable(const QString& text) {
  QString result;
  for (const QChar letter : text.left(kLongestShown)) {
    result +=
        letter.category() == QChar::Other_Control ? QChar(QChar::ReplacementCharacter) : letter;
    if (!letter.isHighSurrogate()) {
      result += QChar(0x200B);  // A break of no width.
    }
  }
  return result;
}

}  // namespace

NoPicturePanel::NoPicturePanel(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("NoPicturePanel"));
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kGap);
  layout->addStretch();
  const auto line = [&](const char* name) {
    auto* const label = new QLabel(this);
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    layout->addWidget(label);
    return label;
  };
  name_ = line("NoPictureName");
  QFont font = name_->font();
  font.setBold(true);
  font.setPointSizeF(font.pointSizeF() * 1.3);
  name_->setFont(font);
  reason_ = line("NoPictureReason");
  detail_ = line("NoPictureDetail");
  layout->addSpacing(kGap);
  advice_ = line("NoPictureAdvice");
  open_ = new QPushButton(this);
  open_->setObjectName(QStringLiteral("NoPictureOpen"));
  showFolder_ = new QPushButton(this);
  showFolder_->setObjectName(QStringLiteral("NoPictureFolder"));
  connect(open_, &QPushButton::clicked, this, &NoPicturePanel::OpenRequested);
  connect(showFolder_, &QPushButton::clicked, this, &NoPicturePanel::ShowFolder);
  for (QPushButton* const button : {open_, showFolder_}) {
    button->setMinimumHeight(button->fontMetrics().height() + 2 * kGap);
  }
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(open_);
  buttons->addWidget(showFolder_);
  buttons->addStretch();
  layout->addSpacing(kGap);
  layout->addLayout(buttons);
  layout->addStretch();
  hide();
}

void NoPicturePanel::ShowReason(const NoPicture& reason, const Strings& words) {
  setVisible(reason.Shown);
  if (!reason.Shown) {
    return;
  }
  name_->setText(Breakable(reason.FileName));
  name_->setAccessibleName(reason.FileName);
  reason_->setText(reason.Reason);
  detail_->setText(reason.Detail.left(kLongestShown));
  detail_->setVisible(!reason.Detail.isEmpty());
  advice_->setText(reason.Advice);
  const auto caption = [](QPushButton* button, const QString& text) {
    button->setText(text);
    button->setMinimumWidth(button->fontMetrics().horizontalAdvance(text) + 4 * kGap);
  };
  caption(open_, words.LangString(430, "Open Another Image") + QStringLiteral("\u2026"));
  caption(showFolder_, words.LangString(431, "Show Folder"));
  folder_ = reason.Folder;
  showFolder_->setVisible(!folder_.isEmpty());
}

void NoPicturePanel::ShowFolder() {
  QDesktopServices::openUrl(QUrl::fromLocalFile(folder_));
}

}  // namespace tessa
