#include "windows/frame_row.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <array>

#include "widgets/icons.h"
#include "widgets/plain_text.h"

namespace tessa {
namespace {

constexpr int kMargin = 8;

/// The buttons of the row: control, command, icon and words.
struct FrameButton {
  const char* Name;
  CommandId Command;
  const char* Icon;
  int TextId;
  const char* DefaultText;
};
constexpr std::array<FrameButton, 5> kFrameButtons = {
    {{"SSCommand5", CommandId::kFirstFrame, "frame_first", 292, "First"},
     {"SSCommand6", CommandId::kPreviousFrame, "frame_previous", 293, "Previous"},
     {"SSCommand7", CommandId::kNextFrame, "frame_next", 294, "Next"},
     {"SSCommand8", CommandId::kLastFrame, "frame_last", 295, "Last"},
     {"SSCommand9", CommandId::kSaveFrames, "save_image", 229, "Save Sequence Frames"}}};

}  // namespace

FrameRow::FrameRow(const Session& session, QWidget* parent) : QWidget(parent), session_(session) {
  setObjectName(QStringLiteral("Frame1"));
  frameText_ = new PlainLabel(this);
  frameText_->setObjectName(QStringLiteral("Label7"));
  frameText_->setAlignment(Qt::AlignCenter);
  frameText_->setMinimumWidth(
      frameText_->fontMetrics().horizontalAdvance(QStringLiteral("88888 of 88888")));
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(kMargin, 2, kMargin, 2);
  layout->addStretch();
  for (const FrameButton& entry : kFrameButtons) {
    auto* const button = new QToolButton(this);
    button->setObjectName(QString::fromLatin1(entry.Name));
    button->setAutoRaise(true);
    connect(button, &QToolButton::clicked, this,
            [this, command = entry.Command] { Q_EMIT Pressed(command); });
    layout->addWidget(button);
    buttons_.push_back(button);
    if (buttons_.size() == 2) {
      layout->addWidget(frameText_);
    }
  }
  layout->addStretch();
}

void FrameRow::BringIntoLine() {
  const OpenImage& image = session_.Image;
  setVisible(session_.View.FrameRowVisible);
  frameText_->setText(session_.View.FrameText);
  buttons_[1]->setEnabled(image.CurrentFrame > 1);
  buttons_[2]->setEnabled(image.CurrentFrame < image.FrameCount);
}

void FrameRow::SetWindowLanguage() {
  for (std::size_t i = 0; i < kFrameButtons.size(); ++i) {
    buttons_[i]->setToolTip(
        session_.Words.LangString(kFrameButtons[i].TextId, kFrameButtons[i].DefaultText));
    buttons_[i]->setAccessibleName(buttons_[i]->toolTip());
  }
}

void FrameRow::ShowIcons() {
  const QColor ink = palette().color(QPalette::WindowText);
  for (std::size_t i = 0; i < kFrameButtons.size(); ++i) {
    buttons_[i]->setIcon(ToolIcon(QString::fromLatin1(kFrameButtons[i].Icon), ink));
  }
}

}  // namespace tessa
