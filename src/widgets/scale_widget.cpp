#include "widgets/scale_widget.h"

#include <QPainter>
#include <algorithm>

namespace tessa {
namespace {

constexpr int kMargin = 12;
constexpr int kMarkerWidth = 9;
constexpr int kStripWidth = 26;
constexpr int kStrokeLength = 6;
constexpr int kGap = 4;
constexpr int kStripTopTwips = 195;
constexpr qreal kStripTwips = 3825.0;

/// Height of label `index` above the foot of the scale, 0 to 1.
qreal LabelFraction(std::size_t index) {
  if (index <= 2) {
    return static_cast<qreal>(index) / 2.0;
  }
  return index <= 6 ? 0.5 + static_cast<qreal>(index - 2) * 0.1
                    : static_cast<qreal>(index - 6) * 0.1;
}

bool IsMajor(std::size_t index) {
  return index <= 2;
}

}  // namespace

ScaleWidget::ScaleWidget(const Picbuf& strip, QWidget* parent) : QWidget(parent), strip_(strip) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

void ScaleWidget::ShowScale(const ViewState& view, const QString& unit) {
  labels_ = view.ScaleLabel;
  strokesVisible_ = view.ScaleStrokesVisible;
  extremes_ = view.ExtremesLine;
  maximum_ = view.MaximumStroke;
  minimum_ = view.MinimumStroke;
  unit_ = unit;
  if (const int width = WidestLabel(); width != labelWidth_) {
    labelWidth_ = width;
    updateGeometry();
  }
  setAccessibleDescription(
      strokesVisible_ ? labels_[0] + QStringLiteral(" \u2013 ") + labels_[2] + unit : QString());
  update();
}

int ScaleWidget::WidestLabel() const {
  QFont bold = font();
  bold.setBold(true);
  const QFontMetrics metrics(bold);
  int widest = fontMetrics().horizontalAdvance(QStringLiteral("-1888.8"));
  for (const QString& label : labels_) {
    widest = std::max(widest, metrics.horizontalAdvance(label));
  }
  return widest;
}

QSize ScaleWidget::sizeHint() const {
  return {2 * kMargin + kMarkerWidth + kStripWidth + kStrokeLength + kGap + WidestLabel(), 220};
}

qreal ScaleWidget::MarkerY(int twips, const QRectF& strip) const {
  return strip.top() + (twips - kStripTopTwips) / kStripTwips * strip.height();
}

void ScaleWidget::PaintStrip(QPainter& painter, const QRectF& strip) const {
  // One colour per device row, taken from the middle column of the strip buffer.
  const int rows = std::max(1, static_cast<int>(strip.height() * devicePixelRatioF()));
  QImage gradient(1, rows, QImage::Format_RGB32);
  for (int row = 0; row < rows; ++row) {
    const int source = row * strip_.BufHeight() / rows;
    const std::uint8_t index = strip_.Pixels()[static_cast<std::size_t>(source) * strip_.Stride()];
    const Colour colour = strip_.Palette()[index];
    gradient.setPixel(0, row, qRgb(RedOf(colour), GreenOf(colour), BlueOf(colour)));
  }
  painter.drawImage(strip, gradient);
  QColor frame = palette().color(QPalette::WindowText);
  frame.setAlpha(90);
  painter.setPen(QPen(frame, 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(strip.adjusted(-0.5, -0.5, 0.5, 0.5));
}

void ScaleWidget::PaintLabels(QPainter& painter, const QRectF& strip) const {
  if (!strokesVisible_) {
    return;
  }
  const int lineHeight = fontMetrics().height();
  // Fifths of a half of the scale; too close together, only the three main labels stay.
  const bool crowded = strip.height() * 0.1 < lineHeight;
  const qreal strokeLeft = strip.right() + 1;
  for (std::size_t i = 0; i < labels_.size(); ++i) {
    if (crowded && !IsMajor(i)) {
      continue;
    }
    QColor ink = palette().color(QPalette::WindowText);
    if (!IsMajor(i)) {
      ink.setAlpha(190);
    }
    const qreal y = strip.bottom() - LabelFraction(i) * strip.height();
    // A wedge that stands on the strip: a stroke beside the number would read as its minus sign.
    const qreal length = IsMajor(i) ? kStrokeLength : kStrokeLength - 2;
    const qreal half = length / 2 + 0.5;
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawPolygon(QPolygonF({QPointF(strokeLeft, y - half), QPointF(strokeLeft, y + half),
                                   QPointF(strokeLeft + length, y)}));
    painter.setPen(ink);
    QFont labelFont = font();
    labelFont.setBold(IsMajor(i));
    painter.setFont(labelFont);
    const QRectF box(strokeLeft + kStrokeLength + kGap, y - lineHeight / 2.0,
                     width() - strokeLeft - kStrokeLength - kGap - 2, lineHeight);
    painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter, labels_[i]);
  }
}

void ScaleWidget::PaintMarkers(QPainter& painter, const QRectF& strip) const {
  if (!extremes_.Visible) {
    return;
  }
  painter.setPen(QPen(palette().color(QPalette::WindowText), 1.6));
  const qreal right = strip.left() - 4;
  const qreal left = right - kMarkerWidth + 3;
  const qreal spine = (left + right) / 2;
  const qreal top = MarkerY(extremes_.Y1, strip);
  const qreal foot = MarkerY(extremes_.Y2, strip);
  painter.drawLine(QPointF(spine, top), QPointF(spine, foot));
  for (const MarkerLine& stroke : {maximum_, minimum_}) {
    if (stroke.Visible) {
      const qreal y = MarkerY(stroke.Y1, strip);
      painter.drawLine(QPointF(left, y), QPointF(right, y));
    }
  }
}

void ScaleWidget::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const int lineHeight = fontMetrics().height();
  const int top = kMargin + lineHeight + lineHeight / 2;
  const QRectF strip(kMargin + kMarkerWidth, top, kStripWidth,
                     std::max(10, height() - top - kMargin - lineHeight / 2));
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(QRectF(strip.left(), kMargin / 2.0, kStripWidth, lineHeight), Qt::AlignCenter,
                   unit_);
  if (strip_.BufHeight() > 0) {
    PaintStrip(painter, strip);
  }
  painter.setRenderHint(QPainter::Antialiasing);
  PaintLabels(painter, strip);
  PaintMarkers(painter, strip);
}

}  // namespace tessa
