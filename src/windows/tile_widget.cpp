#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QStyleOptionFrame>

#include "browser/tile_picture.h"
#include "widgets/icons.h"
#include "windows/tile_grid.h"

namespace tessa {
namespace {

constexpr int kMargin = 5;
constexpr int kMarkSize = 16;
const QColor kSelected(255, 255, 0);
const QColor kBlue(0, 0, 255);

bool IsDark(const QColor& colour) {
  constexpr int kMiddle = 128;
  return colour.lightness() < kMiddle;
}

}  // namespace

TilePart::TilePart(const QString& name, std::function<void(QPainter&)> paint, QWidget* parent)
    : QWidget(parent), paint_(std::move(paint)) {
  setObjectName(name);
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void TilePart::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.translate(-pos());  // In the tile's own places.
  paint_(painter);
}

TileWidget::TileWidget(int number, QWidget* parent)
    : QWidget(parent),
      picturePart_(new TilePart(
          QStringLiteral("Picbuf3_%1").arg(number),
          [this](QPainter& painter) { PaintPicture(painter); }, this)),
      mark_(new TilePart(
          QStringLiteral("Image1_%1").arg(number),
          [this](QPainter& painter) { PaintMark(painter); }, this)) {
  setObjectName(QStringLiteral("SSPanel3_%1").arg(number));
}

void TileWidget::Show(const ThumbnailPages::Place& place, const ColourTable& palette,
                      const QString& tip, const QString& missing) {
  caption_ = place.Caption;
  missing_ = missing;
  picture_ = place.Content.Picture;
  palette_ = palette;
  scaled_ = {};
  marked_ = place.Marked;
  isBlue_ = place.Content.IsBlueCaption;
  hasSound_ = !place.Content.SoundReference.isEmpty();
  mark_->setVisible(hasSound_);
  isBroken_ = place.Content.SequenceFrames == 0;
  setToolTip(tip);
  setAccessibleName(place.Caption);
  setAccessibleDescription(tip);
  update();
}

void TileWidget::SetMarked(bool marked) {
  if (marked_ != marked) {
    marked_ = marked;
    update();
  }
}

/// What the name leaves.
QRect TileWidget::PictureRoom() const {
  return rect().adjusted(kMargin, kMargin, -kMargin, -kMargin - fontMetrics().height() - 2);
}

QRect TileWidget::PictureArea() const {
  if (picture_.Width == 0) {
    return PictureRoom();
  }
  const QSize size =
      QSize(picture_.Width, picture_.Height).scaled(PictureRoom().size(), Qt::KeepAspectRatio);
  return QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, size, PictureRoom());
}

void TileWidget::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QColor face = palette().color(QPalette::Button);
  QStyleOptionFrame frame;
  frame.initFrom(this);
  frame.lineWidth = 1;
  frame.state |= marked_ ? QStyle::State_Sunken : QStyle::State_Raised;
  painter.fillRect(rect(), marked_ ? kSelected : face);
  style()->drawPrimitive(QStyle::PE_Frame, &frame, &painter, this);
  PaintCaption(painter);
  if (hasFocus()) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
  }
}

/// In the screen's own pixels, so that nothing is scaled twice.
void TileWidget::PaintPicture(QPainter& painter) {
  if (picture_.Width == 0) {
    painter.setPen(marked_ ? QColor(Qt::black) : palette().color(QPalette::ButtonText));
    QRect words = PictureRoom();
    if (isBroken_) {
      // A picture frame with a crack through it.
      const QRect sign = QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, QSize(48, 36),
                                             words.adjusted(0, 0, 0, -fontMetrics().height()));
      painter.drawRect(sign);
      painter.setPen(QPen(QColor(200, 40, 40), 2));
      painter.drawPolyline(
          QPolygon({sign.topLeft() + QPoint(16, 0), sign.center() + QPoint(4, -6),
                    sign.center() + QPoint(-6, 6), sign.bottomLeft() + QPoint(30, 0)}));
      painter.setPen(marked_ ? QColor(Qt::black) : palette().color(QPalette::ButtonText));
      words.setTop(sign.bottom() + 2);
      painter.drawText(words, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, missing_);
    } else {
      painter.drawText(words, Qt::AlignCenter | Qt::TextWordWrap, missing_);
    }
    return;
  }
  const QRect area = PictureArea();
  const QSize pixels = area.size() * devicePixelRatioF();
  if (scaled_.size() != pixels) {
    scaled_ = QPixmap::fromImage(FittedImage(picture_, palette_, pixels));
    scaled_.setDevicePixelRatio(devicePixelRatioF());
  }
  painter.drawPixmap(area, scaled_);
}

QColor TileWidget::Ink() const {
  const bool isDark = !marked_ && IsDark(palette().color(QPalette::Button));
  if (isBlue_) {
    return isDark ? kBlue.lighter(170) : kBlue;
  }
  return isDark ? palette().color(QPalette::ButtonText) : QColor(Qt::black);
}

QRect TileWidget::CaptionLine() const {
  const int height = fontMetrics().height() + 2;
  return {kMargin, rect().bottom() - kMargin - height + 2, width() - 2 * kMargin, height};
}

/// Left of the mark where there is one, so that both have room.
void TileWidget::PaintCaption(QPainter& painter) {
  painter.setPen(Ink());
  painter.drawText(
      CaptionLine(),
      (hasSound_ ? Qt::AlignLeft : Qt::AlignHCenter) | Qt::AlignVCenter | Qt::TextSingleLine,
      caption_);
}

void TileWidget::PaintMark(QPainter& painter) {
  ToolIcon(QStringLiteral("play_sound"), Ink()).paint(&painter, mark_->geometry());
}

void TileWidget::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  const QRect line = CaptionLine();
  picturePart_->setGeometry(PictureRoom());
  mark_->setGeometry(line.right() - kMarkSize, line.center().y() - kMarkSize / 2, kMarkSize,
                     kMarkSize);
}

void TileWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && hasSound_ && mark_->geometry().contains(event->pos())) {
    Q_EMIT MenuAsked(false, event->globalPosition().toPoint());
  } else if (event->button() == Qt::LeftButton) {
    Q_EMIT Picked();
  } else {
    QWidget::mousePressEvent(event);
  }
}

void TileWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    Q_EMIT DoubleClicked();
  }
}

void TileWidget::contextMenuEvent(QContextMenuEvent* event) {
  const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
  Q_EMIT MenuAsked(byMouse && picture_.Width > 0 && PictureArea().contains(event->pos()),
                   event->globalPos());
}

void TileWidget::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  Q_EMIT Focused();
  update();
}

void TileWidget::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  update();
}

}  // namespace tessa
