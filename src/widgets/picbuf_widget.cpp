#include "widgets/picbuf_widget.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace tessa {

PicbufWidget::PicbufWidget(Picbuf& buffer, QWidget* parent) : QWidget(parent), buffer_(buffer) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setCursor(Qt::CrossCursor);
  buffer_.Changed = [this] { update(); };
}

PicbufWidget::~PicbufWidget() {
  buffer_.Changed = nullptr;
}

/// The part of the view that `deviceArea` (physical pixels) covers, nearest neighbour.
QImage PicbufWidget::Scaled(const QRect& deviceArea, qreal density) const {
  QImage target(deviceArea.size(), QImage::Format_RGB32);
  target.fill(Qt::black);
  if (buffer_.BufWidth() == 0) {
    return target;
  }
  const double imagePixels = buffer_.ZoomDenominator / buffer_.ZoomNumerator / density;
  const auto source = [imagePixels](int position, int pan) {
    return pan + static_cast<int>(std::floor(position * imagePixels));
  };
  const bool indexed = buffer_.BufDepth() == 8;
  std::array<QRgb, 256> colours{};
  for (std::size_t i = 0; i < colours.size(); ++i) {
    const Colour colour = buffer_.Palette()[i];
    colours[i] = qRgb(RedOf(colour), GreenOf(colour), BlueOf(colour));
  }
  std::vector<int> columns;
  columns.reserve(static_cast<std::size_t>(deviceArea.width()));
  for (int x = deviceArea.left(); x <= deviceArea.right(); ++x) {
    columns.push_back(std::clamp(source(x, buffer_.Xpan), 0, buffer_.BufWidth() - 1));
  }
  int lastRow = -1;
  for (int y = 0; y < deviceArea.height(); ++y) {
    const int row =
        std::clamp(source(deviceArea.top() + y, buffer_.Ypan), 0, buffer_.BufHeight() - 1);
    auto* const line = reinterpret_cast<QRgb*>(target.scanLine(y));
    if (row == lastRow) {
      std::copy_n(reinterpret_cast<const QRgb*>(target.constScanLine(y - 1)), columns.size(), line);
      continue;
    }
    lastRow = row;
    const std::uint8_t* const pixels =
        buffer_.Pixels().data() + static_cast<std::size_t>(row) * buffer_.Stride();
    for (std::size_t x = 0; x < columns.size(); ++x) {
      const auto column = static_cast<std::size_t>(columns[x]);
      line[x] = indexed ? colours[pixels[column]]
                        : qRgb(pixels[3 * column], pixels[3 * column + 1], pixels[3 * column + 2]);
    }
  }
  return target;
}

void PicbufWidget::paintEvent(QPaintEvent* event) {
  const qreal density = devicePixelRatioF();
  const QRect exposed = event->rect();
  const QRect deviceArea(QPoint(static_cast<int>(std::floor(exposed.left() * density)),
                                static_cast<int>(std::floor(exposed.top() * density))),
                         QPoint(static_cast<int>(std::ceil((exposed.right() + 1) * density)) - 1,
                                static_cast<int>(std::ceil((exposed.bottom() + 1) * density)) - 1));
  QImage picture = Scaled(deviceArea, density);
  picture.setDevicePixelRatio(density);
  QPainter painter(this);
  painter.drawImage(QPointF(deviceArea.left() / density, deviceArea.top() / density), picture);
}

void PicbufWidget::mouseMoveEvent(QMouseEvent* event) {
  const QPoint position = event->position().toPoint();
  if (dragging_) {
    Q_EMIT Dragged(position - dragStart_);
    dragStart_ = position;
  }
  Q_EMIT PointerMoved(position);
}

void PicbufWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::MiddleButton || (event->button() == Qt::LeftButton && spaceHeld_)) {
    dragging_ = true;
    spaceDragged_ = spaceHeld_;
    dragStart_ = event->position().toPoint();
    ShowPointer();
    return;
  }
  Q_EMIT Clicked(event->button(), event->position().toPoint());
}

void PicbufWidget::mouseReleaseEvent(QMouseEvent* /*event*/) {
  dragging_ = false;
  ShowPointer();
}

void PicbufWidget::ShowPointer() {
  setCursor(dragging_ ? Qt::ClosedHandCursor : spaceHeld_ ? Qt::OpenHandCursor : Qt::CrossCursor);
}

void PicbufWidget::enterEvent(QEnterEvent* event) {
  QWidget::enterEvent(event);
  // The space bar is looked for wherever the focus is, while the cursor is over the picture.
  QCoreApplication::instance()->installEventFilter(this);
}

void PicbufWidget::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  QCoreApplication::instance()->removeEventFilter(this);
  spaceHeld_ = false;
  ShowPointer();
  Q_EMIT PointerLeft();
}

bool PicbufWidget::eventFilter(QObject* watched, QEvent* event) {
  const bool isPress = event->type() == QEvent::KeyPress;
  if ((isPress || event->type() == QEvent::KeyRelease) &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
    // A key comes to the native window first and to what is in focus after that: only there it is
    // taken. What is in focus, and every other window, keeps a space bar of its own.
    const QWidget* const focus = QApplication::focusWidget();
    const QWidget* const receiver = focus != nullptr ? focus : window();
    if (watched != receiver || receiver->window() != window()) {
      return false;
    }
    const bool isFree = qobject_cast<const QAbstractButton*>(focus) == nullptr &&
                        qobject_cast<const QLineEdit*>(focus) == nullptr &&
                        qobject_cast<const QComboBox*>(focus) == nullptr &&
                        qobject_cast<const QAbstractItemView*>(focus) == nullptr;
    if (!static_cast<QKeyEvent*>(event)->isAutoRepeat()) {
      const bool tapped = spaceHeld_ && !isPress && !spaceDragged_ && isFree;
      spaceHeld_ = isPress;
      spaceDragged_ = false;
      ShowPointer();
      if (tapped) {
        Q_EMIT SpaceTapped();
      }
    }
    return isFree;
  }
  return QWidget::eventFilter(watched, event);
}

/// The right button zooms here; the menu comes by its key alone.
void PicbufWidget::contextMenuEvent(QContextMenuEvent* event) {
  event->setAccepted(event->reason() == QContextMenuEvent::Mouse);
}

void PicbufWidget::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) {
    event->ignore();  // The scroll bars take it.
    return;
  }
  constexpr int kEighthsPerStep = 120;
  wheelRest_ += event->angleDelta().y();
  const int steps = wheelRest_ / kEighthsPerStep;
  wheelRest_ -= steps * kEighthsPerStep;
  if (steps != 0) {
    Q_EMIT ZoomWheel(steps, event->position().toPoint());
  }
  event->accept();
}

}  // namespace tessa
