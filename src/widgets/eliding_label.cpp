#include "widgets/eliding_label.h"

#include <QPainter>

namespace tessa {

ElidingLabel::ElidingLabel(Qt::TextElideMode mode, QWidget* parent)
    : PlainLabel(parent), mode_(mode) {}

QSize ElidingLabel::minimumSizeHint() const {
  constexpr int kLeast = 20;
  return {kLeast, QLabel::minimumSizeHint().height()};
}

void ElidingLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(rect(), static_cast<int>(Qt::AlignVCenter | Qt::AlignLeft),
                   fontMetrics().elidedText(text(), mode_, width()));
}

}  // namespace tessa
