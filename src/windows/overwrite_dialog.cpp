#include "windows/overwrite_dialog.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QResizeEvent>
#include <QScreen>
#include <QSet>
#include <QVBoxLayout>
#include <algorithm>

#include "widgets/eliding_label.h"
#include "widgets/mnemonics.h"
#include "widgets/plain_text.h"

namespace tessa {
namespace {

constexpr int kNameGap = 2;
constexpr int kMargin = 16;
/// A longer name loses its middle.
constexpr int kMostNameWidth = 320;
constexpr int kNo = 3;

}  // namespace

OverwriteDialog::OverwriteDialog(const QString& fileName, const Strings& words, QWidget* parent)
    : QDialog(parent),
      line_(new QWidget(this)),
      label_(new PlainLabel(line_)),
      name_(new ElidingLabel(Qt::ElideMiddle, line_)) {
  setObjectName(QStringLiteral("frmOverWrite"));
  setWindowTitle(words.LangString(117, "Confirm File Replace"));
  label_->setObjectName(QStringLiteral("Label2"));
  label_->setText(words.LangString(259, "This folder already contains a file named") +
                  QLatin1Char(':'));
  name_->setObjectName(QStringLiteral("lblFName"));
  QFont bold = name_->font();
  bold.setBold(true);
  name_->setFont(bold);
  auto* const question = new PlainLabel(
      words.LangString(567, "Would you like to replace the existing file with the downloaded one?"),
      this);
  question->setObjectName(QStringLiteral("Label1"));
  question->setAlignment(Qt::AlignCenter);
  auto* const buttons = new QHBoxLayout;
  QSet<QChar> used;
  const auto add = [&](const char* name, int textId, const char* text, int reply) {
    buttons->addWidget(MakeButton(name, WithMnemonic(words.LangString(textId, text), used), reply));
  };
  buttons->addStretch();
  add("cmdYes", 281, "Yes", 1);
  add("cmdYesAll", 282, "Yes to All", 2);
  add("cmdNo", 196, "No", kNo);
  add("cmdNoAll", 197, "No to All", 4);
  add("cmdCancel", 110, "Cancel", 5);
  buttons->addStretch();
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kMargin / 2);
  layout->addWidget(line_);
  layout->addWidget(question);
  layout->addSpacing(kMargin / 2);
  layout->addLayout(buttons);
  SetFileName(fileName);
  setAttribute(Qt::WA_KeyboardFocusChange);  // The focus is seen before the first key.
}

/// The marked letters alone choose too, as in any question.
void OverwriteDialog::keyPressEvent(QKeyEvent* event) {
  for (QPushButton* const button : findChildren<QPushButton*>()) {
    const QKeySequence letter = button->shortcut();
    if (!letter.isEmpty() && (event->modifiers() & ~Qt::ShiftModifier) == Qt::NoModifier &&
        letter[0].key() == event->key()) {
      button->animateClick();
      return;
    }
  }
  QDialog::keyPressEvent(event);
}

QPushButton* OverwriteDialog::MakeButton(const char* name, const QString& caption, int reply) {
  auto* const button = new QPushButton(caption, this);
  button->setObjectName(QString::fromLatin1(name));
  // Return must not replace anything that the user did not look at.
  if (reply == kNo) {
    button->setDefault(true);
    button->setFocus(Qt::TabFocusReason);
  }
  connect(button, &QPushButton::clicked, this, [this, reply] {
    reply_ = reply;
    accept();
  });
  return button;
}

void OverwriteDialog::SetFileName(const QString& name) {
  name_->setText(OneLine(name));
  name_->setToolTip(PlainToolTip(name));
  setAccessibleDescription(label_->text() + QLatin1Char(' ') + name_->text());
  const int nameWidth = std::min(name_->sizeHint().width(), kMostNameWidth);
  line_->setMinimumSize(label_->sizeHint().width() + kNameGap + nameWidth,
                        std::max(label_->sizeHint().height(), name_->sizeHint().height()));
  CentreName();
}

/// Both labels are as wide as their texts and stand in the middle together.
void OverwriteDialog::CentreName() {
  const int labelWidth = label_->sizeHint().width();
  const int nameWidth =
      std::min(name_->sizeHint().width(), std::max(0, line_->width() - labelWidth - kNameGap));
  const int left = (line_->width() - (labelWidth + nameWidth + kNameGap)) / 2;
  label_->setGeometry(left, 0, labelWidth, line_->height());
  name_->setGeometry(left + labelWidth + kNameGap, 0, nameWidth, line_->height());
}

void OverwriteDialog::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  layout()->activate();
  CentreName();
}

}  // namespace tessa
