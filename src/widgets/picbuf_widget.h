#pragma once

#include <QWidget>

#include "view/picbuf.h"

namespace tessa {

/// Shows a buffer at its zoom and pan, pixel for pixel: every screen pixel has the colour of
/// exactly one buffer pixel, also on screens of fractional density. Paints what is exposed and no
/// more. Does not own the buffer, which must live longer.
class PicbufWidget : public QWidget {
  Q_OBJECT

 public:
  PicbufWidget(Picbuf& buffer, QWidget* parent);
  ~PicbufWidget() override;

 Q_SIGNALS:
  /// Position in logical pixels from the corner of the widget.
  void PointerMoved(QPoint position);
  void PointerLeft();
  void Clicked(Qt::MouseButton button, QPoint position);
  /// Drag with the middle button, or with the left one while the space bar is held; logical pixels
  /// since the last signal.
  void Dragged(QPoint distance);
  /// The space bar was pressed and let go without a drag, with the pointer over the picture.
  void SpaceTapped();
  /// Positive steps: away from the user.
  void ZoomWheel(int steps, QPoint position);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void ShowPointer();
  QImage Scaled(const QRect& deviceArea, qreal density) const;

  Picbuf& buffer_;
  QPoint dragStart_;
  bool dragging_ = false;
  bool spaceHeld_ = false;
  bool spaceDragged_ = false;  // Since it was pressed.
  int wheelRest_ = 0;          // Eighths of a degree not yet worth a step.
};

}  // namespace tessa
