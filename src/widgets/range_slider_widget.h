#pragma once

#include <QWidget>
#include <array>

#include "formats/bmp.h"
#include "view/range_slider.h"

namespace tessa {

class RangeThumb;

/// The vertical range control: an outer scale, marks at the image's extremes, two thumbs and the
/// palette between them. Shows a RangeSlider and changes it; owns neither it nor the palette. All
/// values are degrees Celsius; only texts are in the unit of display.
class RangeSliderWidget : public QWidget {
  Q_OBJECT

 public:
  RangeSliderWidget(RangeSlider& model, QWidget* parent);

  /// Shows the model anew, with these colours, and texts in this unit ('C' or 'F').
  void ShowRange(const ColourTable& palette, char displayUnits);
  /// What the thumbs are called by assistive technology.
  void SetThumbNames(const QString& upper, const QString& lower);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  void ThumbMoving();
  void ThumbAtRest();
  /// A thumb was double-clicked: it wants to go to the image's extreme.
  void ThumbReset(bool upper);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  friend class RangeThumb;

  qreal YOf(double celsius) const;
  double CelsiusAt(qreal y) const;
  double Value(bool upper) const;
  /// Moves a thumb as far as the other thumb and the limits allow. False when it stayed.
  bool MoveThumb(bool upper, double celsius);
  /// A step of the keyboard or the wheel: a hundredth of the scale, or a tenth for a page.
  void StepThumb(bool upper, int steps, bool page);
  void PlaceThumbs();
  QString ValueText(double celsius) const;
  RangeThumb& NearestThumb(qreal y) const;
  /// True when the thumbs lie over each other, in part at least.
  bool ThumbsOverlap() const;

  RangeSlider& model_;
  ColourTable palette_{};
  char displayUnits_ = 'C';
  std::array<RangeThumb*, 2> thumbs_{};  // Lower, upper.
};

}  // namespace tessa
