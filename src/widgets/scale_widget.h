#pragma once

#include <QWidget>

#include "core/view_state.h"
#include "view/picbuf.h"

namespace tessa {

/// The palette strip with its scale: eleven labels beside their strokes, and on the other side the
/// line that spans the image's extremes. Shows ViewState and the strip buffer; owns neither.
class ScaleWidget : public QWidget {
  Q_OBJECT

 public:
  ScaleWidget(const Picbuf& strip, QWidget* parent);

  /// `unit`: what the numbers are ("°C"), empty for palette entries.
  void ShowScale(const ViewState& view, const QString& unit);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  /// Room for usual temperatures, and for longer ones where the scale has such.
  int WidestLabel() const;
  /// Vertical position of a marker given in twips of the scale's frame.
  qreal MarkerY(int twips, const QRectF& strip) const;
  void PaintStrip(QPainter& painter, const QRectF& strip) const;
  void PaintLabels(QPainter& painter, const QRectF& strip) const;
  void PaintMarkers(QPainter& painter, const QRectF& strip) const;

  const Picbuf& strip_;
  int labelWidth_ = 0;
  std::array<QString, ViewState::kScaleLabels> labels_;
  bool strokesVisible_ = false;
  MarkerLine extremes_;
  MarkerLine maximum_;
  MarkerLine minimum_;
  QString unit_;
};

}  // namespace tessa
