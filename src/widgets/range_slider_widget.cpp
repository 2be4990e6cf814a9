#include "widgets/range_slider_widget.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "core/units.h"

namespace tessa {
namespace {

constexpr int kThumbHeight = 12;
constexpr int kTrackWidth = 16;
constexpr int kMarkWidth = 7;
constexpr int kWidth = 52;
constexpr int kEdge = kThumbHeight / 2 + 3;  // Room for half a thumb at either end.

}  // namespace

/// One handle of the slider: takes focus, keys and drags; its owner knows what they mean.
class RangeThumb : public QWidget {
 public:
  RangeThumb(RangeSliderWidget& owner, bool upper) : QWidget(&owner), owner_(owner), upper_(upper) {
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::SizeVerCursor);
    resize(kWidth, kThumbHeight);
  }

  void ShowBubble() {
    QToolTip::showText(mapToGlobal(QPoint(width(), -height())),
                       owner_.ValueText(owner_.Value(upper_)), this);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body = QRectF(rect()).adjusted(8.5, 1.5, -8.5, -1.5);
    const bool lively = isEnabled() && (hasFocus() || underMouse());
    painter.setPen(QPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Shadow),
                        hasFocus() ? 2.0 : 1.0));
    painter.setBrush(palette().color(lively ? QPalette::Light : QPalette::Button));
    painter.drawRoundedRect(body, 3, 3);
    painter.setPen(QPen(palette().color(QPalette::ButtonText), 1));
    painter.drawLine(QPointF(body.left() + 9, body.center().y()),
                     QPointF(body.right() - 9, body.center().y()));
  }
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton) {
      raise();
      pressedAt_ = mapToParent(event->position().toPoint()).y();
      // Where the thumbs lie over each other, the first movement tells which is meant.
      undecided_ = owner_.ThumbsOverlap();
      Take(*this);
      ShowBubble();
    }
  }
  void mouseMoveEvent(QMouseEvent* event) override {
    if (!event->buttons().testFlag(Qt::LeftButton)) {
      return;
    }
    const qreal y = mapToParent(event->position().toPoint()).y();
    if (undecided_ && y != pressedAt_) {
      undecided_ = false;
      Take(*owner_.thumbs_[y < pressedAt_ ? 1 : 0]);
    }
    if (owner_.MoveThumb(taken_->upper_, owner_.CelsiusAt(y - grip_))) {
      moved_ = true;
      taken_->ShowBubble();
      Q_EMIT owner_.ThumbMoving();
    }
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    QToolTip::hideText();
    if (event->button() == Qt::LeftButton && std::exchange(moved_, false)) {
      Q_EMIT owner_.ThumbAtRest();
    }
  }
  void mouseDoubleClickEvent(QMouseEvent* /*event*/) override { Q_EMIT owner_.ThumbReset(upper_); }
  void keyPressEvent(QKeyEvent* event) override {
    switch (event->key()) {
      case Qt::Key_Up:
        owner_.StepThumb(upper_, 1, false);
        break;
      case Qt::Key_Down:
        owner_.StepThumb(upper_, -1, false);
        break;
      case Qt::Key_PageUp:
        owner_.StepThumb(upper_, 1, true);
        break;
      case Qt::Key_PageDown:
        owner_.StepThumb(upper_, -1, true);
        break;
      case Qt::Key_Home:
        Q_EMIT owner_.ThumbReset(upper_);
        break;
      default:
        QWidget::keyPressEvent(event);
        return;
    }
    ShowBubble();
  }
  bool event(QEvent* event) override {
    // The window's own keys for zooming must not take the thumb's.
    if (event->type() == QEvent::ShortcutOverride) {
      const int key = static_cast<QKeyEvent*>(event)->key();
      if (key == Qt::Key_PageUp || key == Qt::Key_PageDown || key == Qt::Key_Home) {
        event->accept();
        return true;
      }
    }
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave) {
      update();
    }
    return QWidget::event(event);
  }

 private:
  /// The drag that began here moves `thumb`.
  void Take(RangeThumb& thumb) {
    taken_ = &thumb;
    grip_ = pressedAt_ - thumb.geometry().center().y();
    thumb.setFocus(Qt::MouseFocusReason);
  }

  RangeSliderWidget& owner_;
  bool upper_;
  bool moved_ = false;
  bool undecided_ = false;
  RangeThumb* taken_ = this;
  int pressedAt_ = 0;  // Of a drag, in the slider.
  qreal grip_ = 0.0;   // Where the thumb was taken, from its middle.
};

RangeSliderWidget::RangeSliderWidget(RangeSlider& model, QWidget* parent)
    : QWidget(parent), model_(model) {
  thumbs_ = {new RangeThumb(*this, false), new RangeThumb(*this, true)};
  setTabOrder(thumbs_[1], thumbs_[0]);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

QSize RangeSliderWidget::sizeHint() const {
  return {kWidth, 200};
}

QSize RangeSliderWidget::minimumSizeHint() const {
  return {kWidth, 80};
}

void RangeSliderWidget::SetThumbNames(const QString& upper, const QString& lower) {
  thumbs_[1]->setAccessibleName(upper);
  thumbs_[0]->setAccessibleName(lower);
}

void RangeSliderWidget::ShowRange(const ColourTable& palette, char displayUnits) {
  palette_ = palette;
  displayUnits_ = displayUnits;
  PlaceThumbs();
  update();
}

QString RangeSliderWidget::ValueText(double celsius) const {
  return TemperatureText(celsius, displayUnits_) +
         (displayUnits_ == 'F' ? QStringLiteral(" \u00B0F") : QStringLiteral(" \u00B0C"));
}

double RangeSliderWidget::Value(bool upper) const {
  return upper ? model_.RangeMaxValue() : model_.RangeMinValue();
}

qreal RangeSliderWidget::YOf(double celsius) const {
  const double span = model_.ScaleMaxLimit() - model_.ScaleMinLimit();
  const double fraction = span > 0.0 ? (celsius - model_.ScaleMinLimit()) / span : 0.0;
  return height() - kEdge - std::clamp(fraction, 0.0, 1.0) * (height() - 2 * kEdge);
}

double RangeSliderWidget::CelsiusAt(qreal y) const {
  const double track = std::max(1, height() - 2 * kEdge);
  const double fraction = std::clamp((height() - kEdge - y) / track, 0.0, 1.0);
  return model_.ScaleMinLimit() + fraction * (model_.ScaleMaxLimit() - model_.ScaleMinLimit());
}

bool RangeSliderWidget::MoveThumb(bool upper, double celsius) {
  const double low = upper ? model_.RangeMinValue()
                           : std::clamp(celsius, model_.ScaleMinLimit(), model_.RangeMaxValue());
  const double high = upper ? std::clamp(celsius, model_.RangeMinValue(), model_.ScaleMaxLimit())
                            : model_.RangeMaxValue();
  if (low == model_.RangeMinValue() && high == model_.RangeMaxValue()) {
    return false;
  }
  const bool taken = model_.SetRangeValues(true, high, low);
  PlaceThumbs();
  update();
  return taken;
}

void RangeSliderWidget::StepThumb(bool upper, int steps, bool page) {
  const double span = model_.ScaleMaxLimit() - model_.ScaleMinLimit();
  if (MoveThumb(upper, Value(upper) + steps * span / (page ? 10.0 : 100.0))) {
    Q_EMIT ThumbMoving();
    Q_EMIT ThumbAtRest();
  }
}

void RangeSliderWidget::PlaceThumbs() {
  for (const bool upper : {false, true}) {
    RangeThumb* const thumb = thumbs_[upper ? 1 : 0];
    thumb->move((width() - thumb->width()) / 2,
                static_cast<int>(std::lround(YOf(Value(upper)) - kThumbHeight / 2.0)));
    thumb->setAccessibleDescription(ValueText(Value(upper)));
  }
}

RangeThumb& RangeSliderWidget::NearestThumb(qreal y) const {
  const qreal upper = YOf(Value(true));
  const qreal lower = YOf(Value(false));
  return y <= (upper + lower) / 2.0 ? *thumbs_[1] : *thumbs_[0];
}

bool RangeSliderWidget::ThumbsOverlap() const {
  return YOf(Value(false)) - YOf(Value(true)) < kThumbHeight;
}

void RangeSliderWidget::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  PlaceThumbs();
}

void RangeSliderWidget::mousePressEvent(QMouseEvent* event) {
  // A click beside the thumbs brings the nearer one.
  const qreal y = event->position().y();
  RangeThumb& thumb = NearestThumb(y);
  thumb.setFocus();
  if (event->button() == Qt::LeftButton && MoveThumb(&thumb == thumbs_[1], CelsiusAt(y))) {
    Q_EMIT ThumbMoving();
    Q_EMIT ThumbAtRest();
  }
}

void RangeSliderWidget::wheelEvent(QWheelEvent* event) {
  const int turn = event->angleDelta().y();
  if (turn != 0) {
    const bool upper =
        ThumbsOverlap() ? turn > 0 : &NearestThumb(event->position().y()) == thumbs_[1];
    StepThumb(upper, turn > 0 ? 1 : -1, false);
  }
  event->accept();
}

void RangeSliderWidget::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF track((width() - kTrackWidth) / 2.0, kEdge, kTrackWidth, height() - 2 * kEdge);
  const auto colourOf = [&](std::size_t index) {
    const Colour colour = palette_[index];
    return QColor(RedOf(colour), GreenOf(colour), BlueOf(colour));
  };
  const qreal top = YOf(model_.RangeMaxValue());
  const qreal foot = YOf(model_.RangeMinValue());
  QPainterPath outline;
  outline.addRoundedRect(track, 4, 4);
  painter.save();
  painter.setClipPath(outline);
  // What lies outside the range has the palette's end colours, as in the picture.
  painter.fillRect(QRectF(track.left(), track.top(), track.width(), top - track.top()),
                   colourOf(255));
  painter.fillRect(QRectF(track.left(), foot, track.width(), track.bottom() - foot), colourOf(0));
  if (foot > top) {
    QLinearGradient gradient(0, foot, 0, top);
    constexpr std::size_t kStops = 32;
    for (std::size_t i = 0; i < kStops; ++i) {
      gradient.setColorAt(static_cast<qreal>(i) / (kStops - 1), colourOf(i * 255 / (kStops - 1)));
    }
    painter.fillRect(QRectF(track.left(), top, track.width(), foot - top), gradient);
  }
  painter.restore();
  QColor frame = palette().color(QPalette::WindowText);
  frame.setAlpha(110);
  painter.setPen(QPen(frame, 1));
  painter.drawPath(outline);

  // Marks at the extremes of the image: arrow heads that point at the track from both sides.
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().color(QPalette::WindowText));
  for (const double mark : {model_.MarkMinimum(), model_.MarkMaximum()}) {
    const qreal y = YOf(mark);
    for (const qreal side : {-1.0, 1.0}) {
      const qreal tip = track.center().x() + side * (kTrackWidth / 2.0 + 1.5);
      const QPolygonF arrow({QPointF(tip, y), QPointF(tip + side * kMarkWidth, y - 4),
                             QPointF(tip + side * kMarkWidth, y + 4)});
      painter.drawPolygon(arrow);
    }
  }
}

}  // namespace tessa
