#include "windows/bottom_line.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>
#include <algorithm>

#include "widgets/eliding_label.h"
#include "widgets/icons.h"
#include "widgets/plain_text.h"

namespace tessa {
namespace {

constexpr int kMargin = 8;
constexpr int kNarrowestZoom = 48;
constexpr int kWidestZoom = 120;

}  // namespace

BottomLine::BottomLine(const Session& session, QWidget* parent)
    : QWidget(parent), session_(session) {
  setObjectName(QStringLiteral("SSPanel1"));
  setMinimumWidth(1);  // A small screen cuts it off rather than the window.
  comment_ = new ElidingLabel(Qt::ElideRight, this);
  comment_->setObjectName(QStringLiteral("ssComment"));
  memo_ = new ElidingLabel(Qt::ElideRight, this);
  memo_->setObjectName(QStringLiteral("ssMemo"));
  taken_ = new ElidingLabel(Qt::ElideRight, this);
  taken_->setObjectName(QStringLiteral("Taken"));
  zoomOut_ = MakeStepButton(-1);
  zoomIn_ = MakeStepButton(1);
  info_ = new QToolButton(this);
  info_->setObjectName(QStringLiteral("InfoButton"));
  info_->setAutoRaise(true);
  connect(info_, &QToolButton::clicked, this, &BottomLine::InfoRequested);
  zoom_ = new QSlider(Qt::Horizontal, this);
  zoom_->setObjectName(QStringLiteral("ZoomAdj"));
  zoom_->setPageStep(1);
  zoom_->installEventFilter(this);
  connect(zoom_, &QSlider::valueChanged, this, &BottomLine::LevelChosen);
  zoomText_ = new PlainLabel(this);
  zoomText_->setObjectName(QStringLiteral("SSPanel26"));
  zoomText_->setMinimumWidth(
      zoomText_->fontMetrics().horizontalAdvance(QStringLiteral("Zoom: 88 %")));

  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(kMargin, 2, kMargin, 2);
  layout->addWidget(comment_, 1);
  layout->addSpacing(kMargin);
  layout->addWidget(memo_);
  layout->addSpacing(kMargin);
  layout->addWidget(taken_);
  layout->addWidget(info_);
  layout->addSpacing(2 * kMargin);
  layout->addWidget(zoomText_);
  layout->addWidget(zoomOut_);
  layout->addWidget(zoom_);
  layout->addWidget(zoomIn_);
}

QToolButton* BottomLine::MakeStepButton(int step) {
  auto* const button = new QToolButton(this);
  button->setAutoRaise(true);
  connect(button, &QToolButton::clicked, this, [this, step] { Q_EMIT ZoomStepped(step); });
  return button;
}

void BottomLine::BringIntoLine() {
  const ViewState& view = session_.View;
  const OpenImage& image = session_.Image;
  setVisible(view.BottomPanelVisible);
  const QString comment = OneLine(view.Comment.simplified());
  comment_->setText(comment);
  comment_->setToolTip(PlainToolTip(comment));
  memo_->setText(MemoText());
  taken_->setText((image.ImageDate + QStringLiteral("  ") + image.ImageTime).trimmed());
  const QSignalBlocker blocker(zoom_);
  zoom_->setRange(view.Zoom.ZoomMin, view.Zoom.ZoomMax);
  zoom_->setValue(view.Zoom.ZoomLevel);
}

/// A sequence has the number of its frames for a memo.
QString BottomLine::MemoText() const {
  const OpenImage& image = session_.Image;
  const QString memo = OneLine(session_.View.Memo.simplified());
  // A conversion of frames leaves the kind of what it wrote, but the row of frame buttons stays.
  const bool isSequence =
      session_.View.FrameRowVisible || image.ImageKind == KindRti || image.ImageKind == KindRtv;
  const bool isFrameCount = isSequence && memo == QString::number(image.FrameCount);
  return isFrameCount ? session_.Words.LangString(290, "Frame Count") + QStringLiteral(": ") + memo
                      : memo;
}

void BottomLine::ShowZoom() {
  const Picbuf& buffer = session_.Buffers.Picbuf1;
  const ZoomState& zoom = session_.View.Zoom;
  QString text = session_.Words.LangString(284, "Zoom") + QStringLiteral(": ");
  if (zoom.FitsWindow) {
    constexpr double kPercent = 100.0;
    text += QString::number(kPercent * buffer.ZoomNumerator / buffer.ZoomDenominator, 'g', 2) +
            QStringLiteral(" %");
  } else {
    text += QString::number(zoom.ZoomLevel);
  }
  zoomText_->setText(text);
}

void BottomLine::FitTo(int pictureWidth) {
  zoom_->setFixedWidth(std::clamp(pictureWidth / 5, kNarrowestZoom, kWidestZoom));
}

void BottomLine::SetWindowLanguage() {
  const Strings& words = session_.Words;
  comment_->setAccessibleName(words.LangString(116, "Comment"));
  memo_->setAccessibleName(words.LangString(187, "Memo"));
  taken_->setAccessibleName(words.LangString(137, "Date"));
  const auto name = [&](QWidget* control, int id, const char* text) {
    control->setToolTip(words.LangString(id, text));
    control->setAccessibleName(control->toolTip());
  };
  name(zoom_, 284, "Zoom");
  name(zoomIn_, 401, "Zoom In");
  name(zoomOut_, 402, "Zoom Out");
  name(info_, 174, "Image Info");
}

void BottomLine::ShowIcons() {
  const QColor ink = palette().color(QPalette::WindowText);
  zoomOut_->setIcon(ToolIcon(QStringLiteral("zoom_out"), ink));
  zoomIn_->setIcon(ToolIcon(QStringLiteral("zoom_in"), ink));
  info_->setIcon(ToolIcon(QStringLiteral("image_info"), ink));
}

bool BottomLine::eventFilter(QObject* watched, QEvent* event) {
  if (watched == zoom_ && event->type() == QEvent::MouseButtonDblClick) {
    Q_EMIT FitRequested();
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace tessa
